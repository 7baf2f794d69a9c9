#include "analysis/delineation/ChannelDelineation.h"
#include "analysis/DrawnEcg.h"
#include "analysis/detection/TWaveletTransform.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

namespace {

constexpr int rate = 250;
constexpr int r = 375;
constexpr int absent = TChannelBeat::absent;

/// A beat drawn in the middle of three seconds, through the real transform.
TChannelBeat delineateDrawn(const ecg::TShape& shape, bool waves = true)
{
    const ecg::TRow row = ecg::row(3.0, rate, {1.5}, shape);
    TInt16Signal signal(4096, 8192, 1, rate);
    ecg::append(signal, {row}, 0, int(row.size()));
    TWaveletTransform transform(&signal, 0);
    transform.run();
    TWaveletSpan span;
    transform.read(0, 0, 3 * rate, span);
    constexpr double factors[] = {1.0, 1.25, 1.25, 0.5};
    TWaveletThresholds thresholds;
    for (int scale = 1; scale <= 4; ++scale) {
        double sum = 0.0;
        for (int i = 0; i < span.size(); ++i)
            sum += span.data(scale)[i] * span.data(scale)[i];
        thresholds.values[scale - 1] = factors[scale - 1] * std::sqrt(sum / span.size());
    }
    TDelineationTask task;
    task.samplingRate = rate;
    task.r = r;
    task.nextR = r + rate;
    task.meanRR = 1.0;
    task.waves = waves;
    return delineateChannelBeat(span, thresholds, task);
}

bool isNear(int position, double seconds, double tolerance = 0.012)
{
    return TChannelBeat::known(position) && std::abs(double(position - r) / rate - seconds) <= tolerance;
}

using ecg::TShape;

} // namespace

class ChannelDelineationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anUprightComplexLiesBetweenItsQAndS()
    {
        const TChannelBeat beat = delineateDrawn(ecg::normal);
        QCOMPARE(beat.rPosition, r);
        QCOMPARE(beat.qrsType, short(1));
        QVERIFY(isNear(beat.rPeak, 0.0, 0.004));
        QVERIFY(isNear(beat.qrsOnset, -0.028));
        QVERIFY(isNear(beat.qrsOffset, 0.028));
        QVERIFY(beat.qrsStart < beat.qrsOnset && beat.qrsOffset < beat.qrsEnd);
        QCOMPARE(beat.pType, short(1));
        QVERIFY(isNear(beat.pPeak, -0.16));
        QVERIFY(beat.pStart < beat.pPeak && beat.pPeak < beat.pEnd && beat.pEnd < beat.qrsOnset);
        QCOMPARE(beat.tType, short(1));
        QVERIFY(isNear(beat.tPeak, 0.26, 0.017));
        QVERIFY(beat.tStart < beat.tPeak && beat.tPeak < beat.tEnd);
        QVERIFY(beat.isoelectricPoint > beat.pPeak && beat.isoelectricPoint < beat.qrsOnset);
        QVERIFY(beat.stPoint > beat.qrsOffset && beat.stPoint < beat.tPeak);
    }

    void aPlainRHasNeitherOnsetNorOffset()
    {
        const TChannelBeat beat = delineateDrawn({{0.0, 0.012, 1000.0}});
        QCOMPARE(beat.qrsType, short(1));
        QVERIFY(isNear(beat.rPeak, 0.0, 0.004));
        QCOMPARE(beat.qrsOnset, absent);
        QCOMPARE(beat.qrsOffset, absent);
        QVERIFY(TChannelBeat::known(beat.qrsStart) && TChannelBeat::known(beat.qrsEnd));
    }

    void anRBeforeADeepSEndsAtTheS()
    {
        const TChannelBeat beat = delineateDrawn({{-0.012, 0.008, 300.0}, {0.016, 0.012, -1000.0}});
        QCOMPARE(beat.qrsType, short(-1));
        QVERIFY(isNear(beat.rPeak, -0.012));
        QVERIFY(isNear(beat.qrsOffset, 0.016));
        QCOMPARE(beat.qrsOnset, absent);
    }

    void aDeepQBeforeAnRBeginsTheComplex()
    {
        const TChannelBeat beat = delineateDrawn({{-0.012, 0.012, -1000.0}, {0.020, 0.008, 300.0}});
        QCOMPARE(beat.qrsType, short(-1));
        QVERIFY(isNear(beat.qrsOnset, -0.012));
        QVERIFY(isNear(beat.rPeak, 0.020));
        QCOMPARE(beat.qrsOffset, absent);
    }

    void aQSHasNoR()
    {
        const TChannelBeat beat = delineateDrawn({{0.0, 0.014, -1000.0}});
        QCOMPARE(beat.qrsType, short(-1));
        QCOMPARE(beat.rPeak, absent);
        QVERIFY(isNear(beat.qrsOnset, 0.0, 0.004));
        QCOMPARE(beat.qrsOffset, beat.qrsOnset);
        QCOMPARE(beat.isoelectricPoint, absent);
    }

    void wavesMayPointEitherWay_data()
    {
        QTest::addColumn<double>("p");
        QTest::addColumn<double>("t");
        for (const double p : {-1.0, 0.0, 1.0})
            for (const double t : {-1.0, 0.0, 1.0})
                QTest::addRow("P %+g, T %+g", p, t) << p << t;
    }

    void wavesMayPointEitherWay()
    {
        QFETCH(double, p);
        QFETCH(double, t);
        TShape shape{{0.0, 0.010, 700.0}};
        if (p != 0.0)
            shape.push_back({-0.17, 0.022, 200.0 * p});
        if (t != 0.0)
            shape.push_back({0.26, 0.040, 350.0 * t});
        const TChannelBeat beat = delineateDrawn(shape);
        QCOMPARE(beat.qrsType, short(1));
        QCOMPARE(beat.pType, short(p));
        QCOMPARE(beat.tType, short(t));
        QCOMPARE(beat.pPeak != absent, p != 0.0);
        QCOMPARE(beat.tPeak != absent, t != 0.0);
        QVERIFY(p == 0.0 || isNear(beat.pPeak, -0.17));
        QVERIFY(t == 0.0 || isNear(beat.tPeak, 0.26, 0.017));
    }

    void withoutWavesOnlyTheComplexIsThere()
    {
        const TChannelBeat whole = delineateDrawn(ecg::normal);
        const TChannelBeat beat = delineateDrawn(ecg::normal, false);
        QCOMPARE(beat.rPeak, whole.rPeak);
        QCOMPARE(beat.qrsOnset, whole.qrsOnset);
        QCOMPARE(beat.qrsEnd, whole.qrsEnd);
        for (const int position : {beat.pPeak, beat.pStart, beat.pEnd, beat.tPeak, beat.tStart, beat.tEnd,
                                   beat.isoelectricPoint, beat.stPoint})
            QCOMPARE(position, absent);
        QCOMPARE(beat.pType, short(0));
        QCOMPARE(beat.tType, short(0));
    }

    void whereNothingIsNothingIsFound()
    {
        for (const TShape& shape : {TShape{}, TShape{{1.2, 0.01, 1000.0}}}) {
            const TChannelBeat beat = delineateDrawn(shape);
            QVERIFY(!beat.hasQrs());
            for (const int position : {beat.rPeak, beat.qrsOnset, beat.qrsOffset, beat.qrsStart, beat.qrsEnd,
                                       beat.isoelectricPoint, beat.stPoint, beat.pPeak, beat.tPeak})
                QCOMPARE(position, absent);
        }
    }
};

QTEST_GUILESS_MAIN(ChannelDelineationTest)
#include "ChannelDelineationTest.moc"
