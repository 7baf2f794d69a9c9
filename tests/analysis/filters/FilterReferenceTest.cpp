#include "analysis/filters/TOfflineFilterChain.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

namespace {

constexpr int stride = 37;

/// The input from which the reference values were made.
std::vector<std::vector<short>> referenceSamples(int count)
{
    std::vector<std::vector<short>> samples(1);
    for (qint64 i = 0; i < count; ++i)
        samples[0].push_back(
            static_cast<short>((i * i * 7 + i * 131) % 2003 - 1000 + i / 4 - 700 + i / 400 % 2 * 3000));
    return samples;
}

QList<int> everyStride(TSignal& signal)
{
    QList<int> values;
    for (int i = 0; i < signal.sampleCount(); i += stride)
        values << signal.sample(0, i);
    return values;
}

QList<int> realtimeValues(int rate, int count, int blockSize)
{
    TInt16Signal input(blockSize, count, 1, rate);
    TRealtimeFilterChain chain(&input);
    chain.apply(true, true, true);
    cutAtRandom(count, 51, 1, [&, samples = referenceSamples(count)](int from, int n) {
        append(input, samples, from, n);
        chain.update();
    });
    return everyStride(*chain.current());
}

QList<int> offlineValues(int rate, int count, int blockSize)
{
    TStoredSignal source(blockSize, referenceSamples(count), rate);
    TOfflineFilterChain chain(&source);
    chain.apply(true, true, true);
    return everyStride(*chain.current());
}

} // namespace

class FilterReferenceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bothChainsAgreeWithAnotherProgram_data()
    {
        QTest::addColumn<QStringList>("words");
        QFile file(QStringLiteral(VELANTOR_FILTER_REFERENCE));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QStringList lines =
            QString::fromLatin1(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 8);
        for (const QString& line : lines) {
            const QStringList words = line.split(QLatin1Char(' '));
            QTest::newRow(qPrintable(words.mid(0, 4).join(QLatin1Char(' ')))) << words;
        }
    }

    void bothChainsAgreeWithAnotherProgram()
    {
        QFETCH(QStringList, words);
        const int rate = words.at(1).toInt();
        const int count = words.at(2).toInt();
        const int blockSize = words.at(3).toInt();
        const QList<int> values = words.at(0) == QLatin1String("realtime")
                                      ? realtimeValues(rate, count, blockSize)
                                      : offlineValues(rate, count, blockSize);
        const QStringList expected = words.mid(4);
        QCOMPARE(values.size(), expected.size());
        int swing = 0;
        for (int i = 0; i < values.size(); ++i) {
            // Rounding on the other side of a whole number in one stage moves a sample of the next by one.
            QVERIFY2(std::abs(values.at(i) - expected.at(i).toInt()) <= 1,
                     qPrintable(QStringLiteral("%1: %2").arg(i).arg(values.at(i))));
            swing = std::max(swing, std::abs(values.at(i)));
        }
        QVERIFY(swing > 500);
    }
};

QTEST_GUILESS_MAIN(FilterReferenceTest)
#include "FilterReferenceTest.moc"
