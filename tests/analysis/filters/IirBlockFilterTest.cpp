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
        // y[i] = x[i] + y[i - 1]: sums in both directions.
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
        QCOMPARE(baselineRecursion(1000)->coefficients.a.size(), std::size_t(2));
    }

    void theBaselineFilterAt1000IsThatOfOrderThreeWithoutItsCommonFactor()
    {
        const TIirCoefficients& reduced = velantor::baselineRecursion(1000)->coefficients;
        const auto timesOneMinusDelay = [](std::vector<double> row) {
            row.push_back(0.0);
            for (std::size_t i = row.size() - 1; i > 0; --i)
                row[i] -= row[i - 1];
            return row;
        };
        std::vector<double> denominator{1.0};
        for (const double a : reduced.a)
            denominator.push_back(-a);
        const std::vector<double> b{0.997131, -2.991393, 2.991393, -0.997131};
        const std::vector<double> a{1.0, -2.994254, 2.988525, -0.994271};
        const std::vector<double> numerator = timesOneMinusDelay(reduced.b);
        denominator = timesOneMinusDelay(denominator);
        for (std::size_t i = 0; i < b.size(); ++i) {
            QVERIFY(std::abs(numerator[i] - b[i]) < 1e-12);
            QVERIFY(std::abs(denominator[i] - a[i]) < 1e-12);
        }
    }

    void theHighPassHasHalfThePowerAtAQuarterOfAHertz()
    {
        const double half = std::sqrt(0.5);
        const auto& high = velantor::highPassRecursion(500)->coefficients;
        QVERIFY(std::abs(gainOf(high, 500, 0.25) - half) < 0.005);
        QVERIFY(gainOf(high, 500, 0.0) < 1e-6);
        QVERIFY(std::abs(gainOf(high, 500, 5.0) - 1.0) < 0.001);
    }

    void theNotchStopsTheMainsAndTheirDouble_data()
    {
        gainColumns();
        const double half = std::sqrt(0.5);
        for (const int rate : {500, 1000}) {
            const auto& notch = velantor::notchRecursion(rate)->coefficients;
            for (const auto& [frequency, gain] : {std::pair(10.0, 1.0),
                                                  {48.0, half},
                                                  {52.0, half},
                                                  {75.0, 0.993},
                                                  {98.0, 0.706},
                                                  {102.0, 0.706},
                                                  {150.0, 0.999}})
                QTest::addRow("%g Hz at %d", frequency, rate) << notch << rate << frequency << gain;
        }
        const auto& at500 = velantor::notchRecursion(500)->coefficients;
        const auto& at1000 = velantor::notchRecursion(1000)->coefficients;
        QTest::newRow("50 Hz at 500") << at500 << 500 << 50.0 << 0.017;
        QTest::newRow("50 Hz at 1000") << at1000 << 1000 << 50.0 << 0.019;
        QTest::newRow("100 Hz at 500") << at500 << 500 << 100.0 << 0.004;
        QTest::newRow("100 Hz at 1000") << at1000 << 1000 << 100.0 << 0.009;
    }

    void theNotchStopsTheMainsAndTheirDouble() { compareGain(); }

    void theBaselineFilterStopsWhatIsSlow_data()
    {
        gainColumns();
        const auto& at500 = velantor::baselineRecursion(500)->coefficients;
        const auto& at1000 = velantor::baselineRecursion(1000)->coefficients;
        QTest::newRow("0.25 Hz at 500") << at500 << 500 << 0.25 << 0.012;
        QTest::newRow("0.5 Hz at 500") << at500 << 500 << 0.5 << 0.194;
        QTest::newRow("0.75 Hz at 500") << at500 << 500 << 0.75 << 0.707;
        QTest::newRow("10 Hz at 500") << at500 << 500 << 10.0 << 1.0;
        QTest::newRow("0.25 Hz at 1000") << at1000 << 1000 << 0.25 << 0.144;
        QTest::newRow("0.5 Hz at 1000") << at1000 << 1000 << 0.5 << 0.508;
        QTest::newRow("0.75 Hz at 1000") << at1000 << 1000 << 0.75 << 0.806;
        QTest::newRow("10 Hz at 1000") << at1000 << 1000 << 10.0 << 1.0;
    }

    void theBaselineFilterStopsWhatIsSlow() { compareGain(); }

private:
    static void gainColumns()
    {
        QTest::addColumn<TIirCoefficients>("table");
        QTest::addColumn<int>("rate");
        QTest::addColumn<double>("frequency");
        QTest::addColumn<double>("gain");
    }

    static void compareGain()
    {
        QFETCH(TIirCoefficients, table);
        QFETCH(int, rate);
        QFETCH(double, frequency);
        QFETCH(double, gain);
        QVERIFY(std::abs(gainOf(table, rate, frequency) - gain) < 0.001);
    }
};

QTEST_GUILESS_MAIN(IirBlockFilterTest)
#include "IirBlockFilterTest.moc"
