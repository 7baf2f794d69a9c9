#include "analysis/delineation/QrsAxis.h"

#include "analysis/signals/TDoubleVector.h"

#include <QtTest>

Q_DECLARE_METATYPE(TDoubleVector)

using velantor::noQrsAxis;
using velantor::qrsAxis;

namespace {

/// A QRS between the samples 2 and 6 that begins at `base`, rises by `up` and falls by `down` below it. What
/// lies outside of it must not count.
TDoubleVector lead(double up, double down, double base = 0.0)
{
    return {900, -900, base, base + up, base, base - down, base, 900, -900};
}

} // namespace

class QrsAxisTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theAxisFollowsFromTheNetDeflections_data()
    {
        QTest::addColumn<TDoubleVector>("one");
        QTest::addColumn<TDoubleVector>("three");
        QTest::addColumn<double>("degrees");
        QTest::newRow("III at zero") << lead(100, 0) << lead(0, 0) << 30.0;
        QTest::newRow("III at zero, I has a Q") << lead(100, 40) << lead(0, 0) << 30.0;
        QTest::newRow("I at zero, III up") << lead(0, 0) << lead(100, 0) << 90.0;
        QTest::newRow("I at zero, III down") << lead(0, 0) << lead(0, 100) << -90.0;
        QTest::newRow("equal") << lead(100, 0) << lead(100, 0) << 60.0;
        QTest::newRow("opposed") << lead(100, 0) << lead(0, 100) << -30.0;
        QTest::newRow("I down, III at zero") << lead(0, 100) << lead(0, 0) << -150.0;
        QTest::newRow("to the right") << lead(0, 100) << lead(50, 0) << 180.0;
        QTest::newRow("not from zero") << lead(100, 20, 50) << lead(90, 10, -70) << 60.0;
        QTest::newRow("as high as deep") << lead(50, 50) << lead(30, 30) << 0.0;
    }

    void theAxisFollowsFromTheNetDeflections()
    {
        QFETCH(TDoubleVector, one);
        QFETCH(TDoubleVector, three);
        QFETCH(double, degrees);
        QVERIFY(std::abs(qrsAxis(one, three, 2, 6) - degrees) < 1e-9);
    }

    void theOffsetIsIncluded()
    {
        const TDoubleVector rising{0, 0, 10, 30};
        const TDoubleVector flat{0, 0, 0, 0};
        QVERIFY(std::abs(qrsAxis(rising, flat, 1, 3) - 30.0) < 1e-9);
        QVERIFY(std::abs(qrsAxis(flat, rising, 2, 3) - 90.0) < 1e-9);
    }

    void withoutBordersOrLeadsThereIsNoAxis()
    {
        const TDoubleVector any = lead(100, 0);
        QCOMPARE(qrsAxis(any, any, 0, 6), noQrsAxis);
        QCOMPARE(qrsAxis(any, any, 2, 0), noQrsAxis);
        QCOMPARE(qrsAxis(any, any, 3, 3), noQrsAxis);
        QCOMPARE(qrsAxis(any, any, 4, 3), noQrsAxis);
        QCOMPARE(qrsAxis(any, any, -999999999, -999999998), noQrsAxis);
        QCOMPARE(qrsAxis(TDoubleVector(), any, 2, 6), -999.0);
        QCOMPARE(qrsAxis(any, TDoubleVector(), 2, 6), -999.0);
    }

    void whatLiesBehindTheEndIsLeftOut()
    {
        const TDoubleVector one{0, 0, 100};
        const TDoubleVector three{0, 0, 0};
        QVERIFY(std::abs(qrsAxis(one, three, 1, 500) - 30.0) < 1e-9);
        QCOMPARE(qrsAxis(one, three, 3, 500), noQrsAxis);
    }
};

QTEST_GUILESS_MAIN(QrsAxisTest)
#include "QrsAxisTest.moc"
