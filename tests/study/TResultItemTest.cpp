#include "study/TResultItem.h"

#include <QtTest>

#include <limits>

namespace {

using Numbers = std::vector<double>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double endless = std::numeric_limits<double>::infinity();

void addAll(TResultTrend& trend, const Numbers& times)
{
    for (const double time : times)
        trend.add(time, time * 10.0);
}

} // namespace

class TResultItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aValueHoldsOneNumber()
    {
        TResultValue value("maxBPM");
        QCOMPARE(value.name(), QByteArray("maxBPM"));
        QCOMPARE(value.kind(), TResultKind::Value);
        QCOMPARE(value.value(), 0.0);
        value.setValue(171.5);
        QCOMPARE(value.value(), 171.5);
        QCOMPARE(TResultValue("QRSAxis", -999.0).value(), -999.0);
    }

    void aListGrowsWithZeros()
    {
        TResultList list("BPMPerStage");
        list.setValue(3, 4.0);
        QCOMPARE(list.values(), (Numbers{0.0, 0.0, 0.0, 4.0}));
        list.setValue(0, 1.0);
        list.append(5.0);
        QCOMPARE(list.values(), (Numbers{1.0, 0.0, 0.0, 4.0, 5.0}));
        QCOMPARE(list.count(), 5);
    }

    void readingPastTheEndOfAListGivesZero()
    {
        TResultList list("BPMPerStage");
        QCOMPARE(list.value(0), 0.0);
        list.append(7.0);
        QCOMPARE(list.value(0), 7.0);
        QCOMPARE(list.value(1), 0.0);
        QCOMPARE(list.value(-1), 0.0);
        QCOMPARE(list.count(), 1);
    }

    void anImpossibleIndexOfAListIsIgnored()
    {
        TResultList list("BPMPerStage");
        list.setValue(-1, 1.0);
        list.setValue(1000000, 1.0);
        list.setValue(std::numeric_limits<int>::max(), 1.0);
        QCOMPARE(list.count(), 0);
        list.setValue(999999, 1.0);
        QCOMPARE(list.count(), 1000000);
        list.clear();
        QCOMPARE(list.count(), 0);
    }

    void theGreatestOfAListMayBeNegative()
    {
        TResultList list("STLevelPerStage(0)");
        QCOMPARE(list.maxValue(), 0.0);
        list.setValues({-3.0, -1.0, -2.0});
        QCOMPARE(list.maxValue(), -1.0);
        list.append(4.0);
        QCOMPARE(list.maxValue(), 4.0);
    }

    void aTrendSortsWhatComesLate_data()
    {
        QTest::addColumn<Numbers>("times");
        QTest::addColumn<Numbers>("sorted");
        QTest::newRow("in order") << Numbers{1, 2, 3} << Numbers{1, 2, 3};
        QTest::newRow("one late") << Numbers{1, 3, 2} << Numbers{1, 2, 3};
        QTest::newRow("to the front") << Numbers{2, 3, 1} << Numbers{1, 2, 3};
        QTest::newRow("backwards") << Numbers{4, 3, 2, 1} << Numbers{1, 2, 3, 4};
        QTest::newRow("before the start") << Numbers{0, -1} << Numbers{-1, 0};
    }

    void aTrendSortsWhatComesLate()
    {
        QFETCH(Numbers, times);
        QFETCH(Numbers, sorted);
        TResultTrend trend("BPMTrend");
        addAll(trend, times);
        QCOMPARE(trend.times(), sorted);
        for (int i = 0; i < trend.count(); ++i)
            QCOMPARE(trend.valueAtIndex(i), trend.timeAt(i) * 10.0);
    }

    void ofEqualTimesTheLaterCallStandsLater()
    {
        TResultTrend trend("BPMTrend");
        trend.add(1.0, 1.0);
        trend.add(2.0, 2.0);
        trend.add(1.0, 3.0);
        trend.add(1.0, 4.0);
        QCOMPARE(trend.times(), (Numbers{1.0, 1.0, 1.0, 2.0}));
        QCOMPARE(trend.values(), (Numbers{1.0, 3.0, 4.0, 2.0}));
    }

    void pairsThatAreNotFiniteArePassedOver()
    {
        TResultTrend trend("BPMTrend");
        for (const double bad : {notANumber, endless, -endless}) {
            trend.add(bad, 1.0);
            trend.add(1.0, bad);
        }
        QCOMPARE(trend.count(), 0);
    }

    void theNearestPairIsRead_data()
    {
        QTest::addColumn<double>("time");
        QTest::addColumn<double>("value");
        QTest::newRow("long before") << -5.0 << 10.0;
        QTest::newRow("first") << 1.0 << 10.0;
        QTest::newRow("nearer to the earlier") << 1.4 << 10.0;
        QTest::newRow("a tie goes to the earlier") << 1.5 << 10.0;
        QTest::newRow("nearer to the later") << 1.6 << 20.0;
        QTest::newRow("on a pair") << 2.0 << 20.0;
        QTest::newRow("tie in a wide gap") << 3.0 << 20.0;
        QTest::newRow("beyond the tie") << 3.0001 << 40.0;
        QTest::newRow("last") << 4.0 << 40.0;
        QTest::newRow("long after") << 1e9 << 40.0;
    }

    void theNearestPairIsRead()
    {
        QFETCH(double, time);
        QFETCH(double, value);
        TResultTrend trend("BPMTrend");
        addAll(trend, {1.0, 2.0, 4.0});
        QCOMPARE(trend.valueAt(time), value);
    }

    void anEmptyTrendReadsAsZero()
    {
        TResultTrend trend("BPMTrend");
        QCOMPARE(trend.valueAt(0.0), 0.0);
        QCOMPARE(trend.timeAt(0), 0.0);
        QCOMPARE(trend.valueAtIndex(0), 0.0);
        QCOMPARE(trend.maxValue(), 0.0);
        addAll(trend, {1.0});
        QCOMPARE(trend.timeAt(1), 0.0);
        QCOMPARE(trend.valueAtIndex(-1), 0.0);
        trend.clear();
        QCOMPARE(trend.count(), 0);
    }

    void theGreatestOfATrendIsNeverBelowZero()
    {
        TResultTrend trend("STLevelTrend(0)");
        trend.add(1.0, -0.2);
        QCOMPARE(trend.maxValue(), 0.0);
        trend.add(2.0, 0.3);
        trend.add(3.0, 0.1);
        QCOMPARE(trend.maxValue(), 0.3);
    }

    void pointsAreCutToTheShorterAndSorted()
    {
        TResultTrend trend("BPMTrend");
        trend.add(99.0, 99.0);
        trend.setPoints({3.0, 1.0, 2.0, 1.0}, {30.0, 10.0, 20.0});
        QCOMPARE(trend.times(), (Numbers{1.0, 2.0, 3.0}));
        QCOMPARE(trend.values(), (Numbers{10.0, 20.0, 30.0}));
        trend.setPoints({2.0, 1.0}, {1.0, 2.0, 3.0});
        QCOMPARE(trend.times(), (Numbers{1.0, 2.0}));
        QCOMPARE(trend.values(), (Numbers{2.0, 1.0}));
        trend.setPoints({}, {1.0});
        QCOMPARE(trend.count(), 0);
    }

    void sortingPointsKeepsTheOrderOfEqualTimes()
    {
        TResultTrend trend("BPMTrend");
        trend.setPoints({2.0, 1.0, 1.0, 1.0}, {4.0, 1.0, 2.0, 3.0});
        QCOMPARE(trend.values(), (Numbers{1.0, 2.0, 3.0, 4.0}));
    }
};

QTEST_GUILESS_MAIN(TResultItemTest)
#include "TResultItemTest.moc"
