#include "analysis/filters/IirTables.h"
#include "analysis/filters/NaiveIir.h"
#include "analysis/signals/TFilteredSignal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

#include <complex>
#include <numbers>

Q_DECLARE_METATYPE(TIirCoefficients)

namespace {

double gainOf(const TIirCoefficients& table, int rate, double frequency)
{
    std::complex<double> numerator;
    std::complex<double> denominator = 1.0;
    const double angle = 2.0 * std::numbers::pi * frequency / rate;
    for (std::size_t k = 0; k < table.b.size(); ++k)
        numerator += table.b[k] * std::polar(1.0, -angle * double(k));
    for (std::size_t k = 0; k < table.a.size(); ++k)
        denominator -= table.a[k] * std::polar(1.0, -angle * double(k + 1));
    return std::abs(numerator / denominator);
}

/// An order, and a recursion of that order that dies away.
TIirCoefficients stable(int order)
{
    TIirCoefficients table;
    for (int k = 0; k <= order; ++k)
        table.b.push_back(0.3 - 0.11 * k);
    for (int k = 1; k <= order; ++k)
        table.a.push_back(0.5 / (order * k));
    return table;
}

} // namespace

class IirBlockFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachBlockIsThatOfTheRecursion_data()
    {
        QTest::addColumn<TIirCoefficients>("table");
        QTest::addColumn<int>("margin");
        QTest::addColumn<int>("blockSize");
        QTest::addColumn<bool>("backward");
        QTest::addColumn<int>("passes");
        const auto* high = velantor::highPassRecursion(500);
        const auto* baseline = velantor::baselineRecursion(500);
        const auto* baseline1000 = velantor::baselineRecursion(1000);
        const auto* notch = velantor::notchRecursion(500);
        const auto* notch1000 = velantor::notchRecursion(1000);
        QTest::newRow("high-pass") << high->coefficients << 2000 << 1024 << true << 1;
        QTest::newRow("notch 500") << notch->coefficients << 500 << 1024 << true << 1;
        QTest::newRow("notch 1000") << notch1000->coefficients << 2000 << 1024 << true << 1;
        QTest::newRow("baseline 500") << baseline->coefficients << 3000 << 1024 << true << 1;
        QTest::newRow("baseline 1000") << baseline1000->coefficients << 3000 << 1024 << true << 1;
        QTest::newRow("blocks far smaller than the margin") << notch->coefficients << 500 << 64 << true << 1;
        QTest::newRow("blocks of one sample") << notch->coefficients << 20 << 1 << true << 1;
        QTest::newRow("forward only") << notch->coefficients << 500 << 1024 << false << 1;
        QTest::newRow("three passes") << notch->coefficients << 300 << 512 << true << 3;
        QTest::newRow("three passes forward") << notch->coefficients << 300 << 512 << false << 3;
        QTest::newRow("no margin") << notch->coefficients << 0 << 512 << true << 1;
        QTest::newRow("order 0") << stable(0) << 10 << 512 << true << 2;
        QTest::newRow("order 1") << stable(1) << 10 << 512 << true << 2;
        QTest::newRow("order 5") << stable(5) << 30 << 512 << true << 2;
    }

    void eachBlockIsThatOfTheRecursion()
    {
        QFETCH(TIirCoefficients, table);
        QFETCH(int, margin);
        QFETCH(int, blockSize);
        QFETCH(bool, backward);
        QFETCH(int, passes);
        TStoredSignal source(blockSize, randomSamples(1, std::min(5 * blockSize - 3, 4500), 8));
        source.trimBlocks(true);
        TIirBlockFilter filter(table, margin, backward, passes);
        const TNaiveIir naive(table, margin);
        TSignalWindow window(&source);
        std::vector<short> out(blockSize);
        for (int block = 0; block < source.blockCount(); ++block) {
            window.move(block, 0);
            filter.process(window, out.data());
            const auto expected = naive.block(window, backward, passes);
            for (int i = 0; i < blockSize; ++i)
                QVERIFY2(isTruncated(out[i], expected[i]),
                         qPrintable(QStringLiteral("block %1, sample %2: %3 for %4")
                                        .arg(block)
                                        .arg(i)
                                        .arg(out[i])
                                        .arg(expected[i], 0, 'f', 9)));
        }
    }

    void theInputHistoryIsTheTrueSignal()
    {
        // y[i] = x[i - 1]: without a margin the first sample of a block is the last one of the block before.
        TStoredSignal source(4, {{1, 2, 3, 4, 5, 6, 7, 8}});
        TIirBlockFilter filter({{0.0, 1.0}, {0.0}}, 0, false);
        TFilteredSignal view(&source, &filter);
        for (int i = 0; i < 8; ++i)
            QCOMPARE(view.sample(0, i), i);
    }

    void theOutputHistoryStartsAtZeroWhereTheMarginBegins()
    {
        // y[i] = x[i] + y[i - 1]: sums from the beginning of the margin.
        TStoredSignal source(4, {std::vector<short>(12, 1)});
        TIirBlockFilter filter({{1.0}, {1.0}}, 3, false);
        TFilteredSignal view(&source, &filter);
        const int expected[] = {1, 2, 3, 4, 4, 5, 6, 7, 4, 5, 6, 7};
        for (int i = 0; i < 12; ++i)
            QCOMPARE(view.sample(0, i), expected[i]);
    }

    void backwardItStartsAtTheEndOfTheLaterMargin()
    {
        // Forward nothing but the sample, backward sums: y[i] = x[i] / 1 with a recursion only of the past.
        TStoredSignal source(4, {{1, 0, 0, 0, 0, 0, 0, 0}});
        TIirBlockFilter filter({{1.0}, {1.0}}, 2, true);
        TFilteredSignal view(&source, &filter);
        // Forward: 1 from sample 0 to the end of the margin (sample 5), backward the sums of that.
        const int expected[] = {6, 5, 4, 3};
        for (int i = 0; i < 4; ++i)
            QCOMPARE(view.sample(0, i), expected[i]);
    }

    void theResultIsClamped()
    {
        TStoredSignal source(4, {{30000, -30000, 100, -100}});
        TIirBlockFilter filter({{1.5}, {}}, 0, false);
        TFilteredSignal view(&source, &filter);
        const int expected[] = {32767, -32768, 150, -150};
        for (int i = 0; i < 4; ++i)
            QCOMPARE(view.sample(0, i), expected[i]);
    }

    void orderAndMarginAreToldAndKeptInRange()
    {
        const TIirBlockFilter filter(velantor::notchRecursion(500)->coefficients, 500, true);
        QCOMPARE(filter.order(), 4);
        QCOMPARE(filter.margin(), 500);
        QCOMPARE(TIirBlockFilter({{1.0}, {}}, -3, true, 0).margin(), 0);
        QCOMPARE(TIirBlockFilter({{}, {0.5}}, 1, true).order(), 1);
    }

    void aFilterGoesByItsRate()
    {
        using namespace velantor;
        for (const int rate : {0, 250, 360, 2000}) {
            QVERIFY(!highPassRecursion(rate));
            QVERIFY(!notchRecursion(rate));
            QVERIFY(!baselineRecursion(rate));
        }
        QVERIFY(!highPassRecursion(1000));
        QCOMPARE(highPassRecursion(500)->margin, 2000);
        QCOMPARE(notchRecursion(500)->margin, 500);
        QCOMPARE(notchRecursion(1000)->margin, 2000);
        QCOMPARE(baselineRecursion(500)->margin, 3000);
        QCOMPARE(baselineRecursion(1000)->margin, 3000);
        QCOMPARE(highPassRecursion(500)->coefficients.a.size(), std::size_t(2));
        QCOMPARE(notchRecursion(500)->coefficients.a.size(), std::size_t(4));
        QCOMPARE(notchRecursion(1000)->coefficients.a.size(), std::size_t(4));
        QCOMPARE(baselineRecursion(500)->coefficients.a.size(), std::size_t(4));
        QCOMPARE(baselineRecursion(1000)->coefficients.a.size(), std::size_t(3));
    }

    void halfThePowerPassesWhereItShould()
    {
        const double half = std::sqrt(0.5);
        const auto& high = velantor::highPassRecursion(500)->coefficients;
        QVERIFY(std::abs(gainOf(high, 500, 0.25) - half) < 0.005);
        QVERIFY(gainOf(high, 500, 0.0) < 1e-6);
        QVERIFY(std::abs(gainOf(high, 500, 5.0) - 1.0) < 0.001);
        for (const int rate : {500, 1000}) {
            const auto& notch = velantor::notchRecursion(rate)->coefficients;
            QVERIFY(gainOf(notch, rate, 50.0) < 0.02);
            QVERIFY(std::abs(gainOf(notch, rate, 48.0) - half) < 0.02);
            QVERIFY(std::abs(gainOf(notch, rate, 52.0) - half) < 0.02);
            QVERIFY(std::abs(gainOf(notch, rate, 10.0) - 1.0) < 0.001);
            const auto& baseline = velantor::baselineRecursion(rate)->coefficients;
            QVERIFY(std::abs(gainOf(baseline, rate, 10.0) - 1.0) < 0.001);
        }
        QVERIFY(std::abs(gainOf(velantor::baselineRecursion(500)->coefficients, 500, 0.75) - half) < 0.02);
    }
};

QTEST_GUILESS_MAIN(IirBlockFilterTest)
#include "IirBlockFilterTest.moc"
