#include "analysis/detection/TRrAverager.h"

#include <QtTest>

class RrAveragerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theMeanRunsOneIntervalBehind()
    {
        TRrAverager averager;
        QCOMPARE(averager.value(), 0.0);
        averager.put(0.5);
        QCOMPARE(averager.value(), 0.0);
        averager.put(1.0);
        QCOMPARE(averager.value(), 0.5);
        averager.put(1.5);
        QCOMPARE(averager.value(), 0.75);
    }

    void theOldestOfEightGivesWay()
    {
        TRrAverager averager;
        for (int i = 0; i < 8; ++i)
            averager.put(1.0);
        QCOMPARE(averager.filledCount(), 8);
        averager.put(9.0);
        QCOMPARE(averager.value(), 1.0);
        averager.put(1.0);
        QCOMPARE(averager.value(), 2.0);
        for (int i = 0; i < 7; ++i)
            averager.put(1.0);
        QCOMPARE(averager.value(), 2.0);
        averager.put(1.0);
        QCOMPARE(averager.value(), 1.0);
        QCOMPARE(averager.filledCount(), 8);
    }

    void onlyPositiveIntervalsCount()
    {
        TRrAverager averager;
        averager.put(1.0);
        averager.put(0.0);
        averager.put(-3.0);
        QCOMPARE(averager.filledCount(), 1);
        averager.put(2.0);
        QCOMPARE(averager.value(), 1.0);
        averager.put(1.0);
        QCOMPARE(averager.value(), 1.5);
        QCOMPARE(averager.filledCount(), 3);
    }

    void clearForgetsEverything()
    {
        TRrAverager averager;
        for (int i = 0; i < 5; ++i)
            averager.put(1.0);
        averager.clear();
        QCOMPARE(averager.filledCount(), 0);
        QCOMPARE(averager.value(), 0.0);
        averager.put(0.5);
        QCOMPARE(averager.value(), 0.0);
    }
};

QTEST_GUILESS_MAIN(RrAveragerTest)
#include "RrAveragerTest.moc"
