#include "simulators/heart/ExactMath.h"

#include <QtTest>

#include <cmath>

using namespace heart;

class ExactMathTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gaussianFollowsTheExponential()
    {
        for (double x = -9; x <= 9; x += 0.01)
            QVERIFY2(std::abs(gaussian(x) - std::exp(-x * x / 2)) < 1e-13, qPrintable(QString::number(x)));
        QCOMPARE(gaussian(0), 1.0);
    }

    void gaussianEndsBeyondNineDeviations()
    {
        QVERIFY(gaussian(8.9) > 0);
        QCOMPARE(gaussian(9.1), 0.0);
        QCOMPARE(gaussian(-1e6), 0.0);
    }

    void sineFollowsTheSine()
    {
        for (double turns = -2; turns <= 2; turns += 0.001)
            QVERIFY2(std::abs(sineOfTurns(turns) - std::sin(2 * M_PI * turns)) < 1e-12,
                     qPrintable(QString::number(turns)));
    }

    void sineIsExactlyPeriodic()
    {
        QCOMPARE(sineOfTurns(12000.375), sineOfTurns(0.375));
        QCOMPARE(sineOfTurns(12000), 0.0);
    }

    void smoothStepRisesFromZeroToOne()
    {
        QCOMPARE(smoothStep(-3), 0.0);
        QCOMPARE(smoothStep(0), 0.0);
        QCOMPARE(smoothStep(0.5), 0.5);
        QCOMPARE(smoothStep(1), 1.0);
        QCOMPARE(smoothStep(7), 1.0);
        QVERIFY(smoothStep(0.01) < 0.001);
    }

    void theNearestIntegerOfAHalfIsAbove()
    {
        QCOMPARE(nearestInteger(2.5), 3);
        QCOMPARE(nearestInteger(-2.5), -2);
        QCOMPARE(nearestInteger(-2.6), -3);
        QCOMPARE(nearestInteger(2.4), 2);
    }
};

QTEST_GUILESS_MAIN(ExactMathTest)

#include "ExactMathTest.moc"
