#include "analysis/filters/FirTables.h"
#include "analysis/filters/IirTables.h"
#include "analysis/filters/NaiveIir.h"
#include "analysis/filters/TOfflineFilterChain.h"
#include "analysis/signals/TStoredSignal.h"
#include "base/Error.h"

#include <QtTest>

namespace {

using TRow = std::vector<short>;

short clampedShort(double value)
{
    return static_cast<short>(std::clamp(value, -32768.0, 32767.0));
}

double mean(const TRow& x, int from, int count)
{
    double sum = 0.0;
    for (int i = from; i < from + count; ++i)
        sum += x[i];
    return sum / count;
}

/// The parabola by Lagrange's formula, subtracted and truncated.
TRow detrended(const TRow& x, int rate)
{
    const int n = static_cast<int>(x.size());
    const int window = std::min(3 * rate, n);
    const double px[] = {window / 2.0, n / 2.0, n - window / 2.0};
    const double first = mean(x, 0, window);
    const double last = mean(x, n - window, window);
    const double py[] = {first, (first + last) / 2, last};
    TRow y;
    for (int i = 0; i < n; ++i) {
        double value = 0.0;
        for (int k = 0; k < 3; ++k) {
            const double a = px[(k + 1) % 3];
            const double b = px[(k + 2) % 3];
            value += py[k] * (i - a) * (i - b) / ((px[k] - a) * (px[k] - b));
        }
        y.push_back(clampedShort(x[i] - (n <= 3 * rate ? first : value)));
    }
    return y;
}

/// Blocks of a row, the last one filled up, each filtered by the recursion.
TRow recursed(const TRow& x, int blockSize, const velantor::TIirTable* table)
{
    if (!table)
        return x;
    TStoredSignal source(blockSize, {x});
    source.trimBlocks(true);
    TSignalWindow window(&source);
    TRow y;
    for (int block = 0; block < source.blockCount(); ++block) {
        window.move(block, 0);
        for (const double value : TNaiveIir(table->coefficients, table->margin).block(window, true, 1))
            y.push_back(clampedShort(value));
    }
    return y;
}

TRow convolved(const TRow& x, const std::vector<double>& h)
{
    TRow y;
    for (int p = 0; p < static_cast<int>(x.size()); ++p) {
        double sum = 0.0;
        for (int i = 0; i < static_cast<int>(h.size()); ++i) {
            const int at = static_cast<int>(h.size()) / 2 - i + p;
            sum += h[i] * (at >= 0 && at < static_cast<int>(x.size()) ? x[at] : 0);
        }
        y.push_back(clampedShort(sum));
    }
    return y;
}

TRow naiveChain(const TRow& x, int rate, int blockSize, int switches)
{
    using namespace velantor;
    TRow y = detrended(x, rate);
    y.resize((y.size() + blockSize - 1) / blockSize * blockSize);
    y = recursed(y, blockSize, highPassRecursion(rate));
    if (switches & 1)
        y = recursed(y, blockSize, notchRecursion(rate));
    if (switches & 2)
        y = convolved(y, *muscleTable("40hz", rate));
    if (switches & 4)
        y = recursed(y, blockSize, baselineRecursion(rate));
    y.resize(x.size());
    return y;
}

std::vector<TRow> driftingSamples(int channels, int count)
{
    auto samples = randomSamples(channels, count, 20);
    for (auto& row : samples) {
        for (int i = 0; i < count; ++i)
            row[i] = static_cast<short>(row[i] / 8 + 9000 - i);
    }
    return samples;
}

} // namespace

class OfflineFilterChainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsTheNaiveFormOfItsStages_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("blockSize");
        QTest::addColumn<int>("switches");
        for (const int rate : {250, 500, 1000}) {
            for (int switches = 0; switches < 8; ++switches)
                QTest::addRow("%d, switches %d", rate, switches) << rate << 7 * rate + 13 << 1024 << switches;
            QTest::addRow("%d, the windows overlap", rate) << rate << 5 * rate << 1024 << 7;
            QTest::addRow("%d, exactly one window", rate) << rate << 3 * rate << 1024 << 7;
            QTest::addRow("%d, one sample more than a window", rate) << rate << 3 * rate + 1 << 1024 << 7;
            QTest::addRow("%d, shorter than a second", rate) << rate << rate / 3 << 1024 << 7;
            QTest::addRow("%d, one sample", rate) << rate << 1 << 1024 << 7;
            QTest::addRow("%d, blocks smaller than the margins", rate) << rate << 7 * rate << 100 << 7;
            QTest::addRow("%d, one block beyond all margins", rate) << rate << 7 * rate << 8192 << 7;
        }
    }

    void itIsTheNaiveFormOfItsStages()
    {
        QFETCH(int, rate);
        QFETCH(int, count);
        QFETCH(int, blockSize);
        QFETCH(int, switches);
        const auto samples = driftingSamples(1, count);
        TStoredSignal source(blockSize, samples, rate);
        TOfflineFilterChain chain(&source);
        chain.apply((switches & 1) != 0, (switches & 2) != 0, (switches & 4) != 0);
        const TRow expected = naiveChain(samples[0], rate, blockSize, switches);
        int greatest = 0;
        int different = 0;
        for (int i = 0; i < count; ++i) {
            const int difference = std::abs(chain.current()->sample(0, i) - expected[i]);
            greatest = std::max(greatest, difference);
            different += difference != 0 ? 1 : 0;
        }
        // A sum that rounds to the other side of a whole number moves a sample by one count.
        QVERIFY2(greatest <= 1, qPrintable(QString::number(greatest)));
        QVERIFY2(different <= count / 200, qPrintable(QString::number(different)));
    }

    void outsideTheRecordingTheOutputIsZero()
    {
        TStoredSignal source(512, driftingSamples(1, 3000));
        TOfflineFilterChain chain(&source);
        chain.apply(true, true, true);
        QCOMPARE(chain.current()->sampleCount(), 3000);
        QVERIFY(chain.current()->sample(0, 2999) != 0);
        QCOMPARE(chain.current()->sample(0, 3000), 0);
        QCOMPARE(chain.current()->sample(0, -1), 0);
        QCOMPARE(chain.current()->sample(1, 5), 0);
    }

    void anEmptyRecordingGivesNothing()
    {
        TStoredSignal source(512, {TRow()});
        TOfflineFilterChain chain(&source);
        chain.apply(true, true, true);
        QCOMPARE(chain.current()->sampleCount(), 0);
        QCOMPARE(chain.current()->sample(0, 0), 0);
    }

    void eachChannelHasItsOwnParabola()
    {
        std::vector<TRow> samples(16, TRow(4000));
        for (int channel = 0; channel < 16; ++channel) {
            for (int i = 0; i < 4000; ++i)
                samples[channel][i] = static_cast<short>((channel - 8) * 100 + channel * i / 8);
        }
        TStoredSignal source(1024, samples, 250);
        TOfflineFilterChain chain(&source);
        for (int channel = 0; channel < 16; ++channel) {
            for (int i = 0; i < 4000; i += 9)
                QVERIFY(std::abs(chain.current()->sample(channel, i)) <= 1);
        }
    }

    void theOutputLooksLikeTheSource()
    {
        TStoredSignal source(512, driftingSamples(3, 2000));
        source.setResolutionBits(14);
        source.setRange(-450.0, 300.0);
        source.channel(2)->setName("V2");
        TOfflineFilterChain chain(&source);
        chain.apply(true, true, true);
        const TSignal& output = *chain.current();
        QCOMPARE(output.channelCount(), 3);
        QCOMPARE(output.channel(2)->name(), QByteArray("V2"));
        QCOMPARE(output.resolutionBits(), 14);
        QCOMPARE(output.rangeMin(), -450.0);
        QCOMPARE(output.rangeMax(), 300.0);
        QCOMPARE(output.samplingRate(), 500);
        QCOMPARE(output.sampleCount(), 2000);
        QCOMPARE(output.blockCount(), 4);
    }

    void theChainStartsWithItsNamesAndNothingOn()
    {
        TStoredSignal source(512, driftingSamples(1, 2000));
        const TOfflineFilterChain chain(&source);
        QCOMPARE(chain.notchName(), QByteArray("50hz"));
        QCOMPARE(chain.muscleName(), QByteArray("40hz"));
        QVERIFY(!chain.notchOn() && !chain.muscleOn() && !chain.baselineOn());
        QVERIFY(chain.current() != &source);
    }

    void anotherNameOfTheNotchIsAnError_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<bool>("isError");
        QTest::newRow("250") << 250 << false;
        QTest::newRow("360") << 360 << false;
        QTest::newRow("500") << 500 << true;
        QTest::newRow("1000") << 1000 << true;
    }

    void anotherNameOfTheNotchIsAnError()
    {
        QFETCH(int, rate);
        QFETCH(bool, isError);
        TStoredSignal source(512, driftingSamples(1, 2000), rate);
        TOfflineFilterChain chain(&source);
        chain.apply(false, true, false);
        const TSignal* const before = chain.current();
        chain.setNotchName("60hz");
        QByteArray text;
        try {
            chain.apply(true, false, true);
        } catch (const std::exception& error) {
            text = error.what();
            QCOMPARE(chain.current(), before);
            QVERIFY(!chain.notchOn() && chain.muscleOn() && !chain.baselineOn());
        }
        QCOMPARE(text, isError ? QByteArray("pendiente - filtro no definido") : QByteArray());
        chain.apply(false, false, true); // the name does not matter while the notch is off
        QVERIFY(chain.baselineOn());
    }

    void theMuscleFilterGoesByItsName()
    {
        const auto samples = driftingSamples(1, 2000);
        TStoredSignal source(512, samples, 1000);
        TOfflineFilterChain chain(&source);
        chain.setMuscleName("25hz");
        chain.apply(false, true, false);
        const TRow plain = detrended(samples[0], 1000);
        const TRow expected = convolved(plain, *velantor::muscleTable("25hz", 1000));
        for (int i = 0; i < 2000; i += 3)
            QVERIFY(std::abs(chain.current()->sample(0, i) - expected[i]) <= 1);
        chain.setMuscleName("30hz");
        chain.apply(false, true, false);
        QCOMPARE(chain.current()->sample(0, 700), 0);
    }

    void aTableForAnyNameServesAt250()
    {
        TStoredSignal source(512, driftingSamples(1, 2000), 250);
        TOfflineFilterChain chain(&source);
        chain.apply(false, true, false);
        const int sample = chain.current()->sample(0, 700);
        chain.setMuscleName("30hz");
        chain.apply(false, true, false);
        QVERIFY(sample != 0);
        QCOMPARE(chain.current()->sample(0, 700), sample);
    }

    void switchesCanBeTurnedAgainAndAgain()
    {
        TStoredSignal source(512, driftingSamples(2, 3000));
        TOfflineFilterChain chain(&source);
        chain.apply(true, true, true);
        const int all = chain.current()->sample(1, 1500);
        chain.apply(false, false, false);
        const int none = chain.current()->sample(1, 1500);
        QVERIFY(all != none);
        chain.apply(true, true, true);
        QCOMPARE(chain.current()->sample(1, 1500), all);
    }

    void blocksMayBeAskedForInAnyOrder()
    {
        TStoredSignal source(512, driftingSamples(1, 4000));
        TOfflineFilterChain forward(&source);
        TOfflineFilterChain backward(&source);
        forward.apply(true, true, true);
        backward.apply(true, true, true);
        TRow rows[2] = {TRow(4000), TRow(4000)};
        for (int i = 0; i < 4000; ++i) {
            rows[0][i] = static_cast<short>(forward.current()->sample(0, i));
            rows[1][3999 - i] = static_cast<short>(backward.current()->sample(0, 3999 - i));
        }
        QVERIFY(rows[0] == rows[1]);
    }
};

QTEST_GUILESS_MAIN(OfflineFilterChainTest)
#include "OfflineFilterChainTest.moc"
