#include "analysis/delineation/ChannelDelineation.h"
#include "analysis/DrawnEcg.h"
#include "analysis/detection/TWaveletTransform.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

namespace {

constexpr int rate = 250;
constexpr int r = 375;
constexpr int absent = TChannelBeat::absent;

struct TPoint
{
    int at;
    double value;
};

/// A transform written down by hand: straight lines between the points of a scale, 0 before and behind.
class TWritten
{
public:
    TWritten() { task.samplingRate = rate, task.r = r, task.nextR = 575, task.meanRR = 0.8; }

    TWritten& line(int scale, const std::vector<TPoint>& points)
    {
        double* const values = m_span.data(scale);
        for (std::size_t p = 0; p + 1 < points.size(); ++p) {
            const TPoint a = points[p], b = points[p + 1];
            for (int i = a.at; i <= b.at; ++i)
                values[i] = a.value + (b.value - a.value) * (i - a.at) / (b.at - a.at);
        }
        return *this;
    }
    TWritten& spike(int scale, int at, double value)
    {
        m_span.data(scale)[at] = value;
        return *this;
    }
    /// A complex with its extremes 5 samples to either side of `r`.
    TWritten& complex(double sign = 1.0) { return line(2, {{370, -5.0 * sign}, {380, 5.0 * sign}}); }

    TChannelBeat delineate() const { return delineateChannelBeat(m_span, {{1.0, 10.0, 1.0, 1.0}}, task); }

    TDelineationTask task;

private:
    TWaveletSpan m_span{0, 800};
};

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
    // Drawn beats.

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

    // The rules, place by place.

    void theComplexTakesItsExtremesFromATenthOfASecondAround()
    {
        for (const int distance : {25, 26}) {
            TWritten written;
            written.spike(2, r - distance, -5.0).spike(2, r + 1, 5.0);
            QCOMPARE(written.delineate().hasQrs(), distance == 25);
            TWritten mirrored;
            mirrored.spike(2, r - 1, -5.0).spike(2, r + distance, 5.0);
            QCOMPARE(mirrored.delineate().hasQrs(), distance == 25);
        }
    }

    void theCrossingNearerToZeroIsTheR_data()
    {
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("second");
        QTest::addColumn<int>("crossing");
        QTest::newRow("on a sample") << -5.0 << 5.0 << 375;
        QTest::newRow("nearer to the one before") << -4.7 << 5.3 << 375;
        QTest::newRow("nearer to the one behind") << -5.7 << 4.3 << 376;
        QTest::newRow("between two") << -5.5 << 4.5 << 375;
    }

    void theCrossingNearerToZeroIsTheR()
    {
        QFETCH(double, first);
        QFETCH(double, second);
        QFETCH(int, crossing);
        TWritten upright;
        upright.line(2, {{370, first}, {380, second}});
        QCOMPARE(upright.delineate().rPeak, crossing);
        TWritten inverted;
        inverted.line(2, {{370, -first}, {380, -second}});
        QCOMPARE(inverted.delineate().qrsOnset, crossing);
    }

    void withoutOuterWavesTheComplexEndsAtAFixedDistance()
    {
        for (const double sign : {1.0, -1.0}) {
            const TChannelBeat beat = TWritten().complex(sign).delineate();
            QCOMPARE(beat.qrsStart, 360);
            QCOMPARE(beat.qrsEnd, 390);
        }
    }

    void anOuterWaveHasToBeLargeAndClose_data()
    {
        QTest::addColumn<int>("distance");
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("counts");
        QTest::newRow("at the threshold") << 8 << 1.0 << false;
        QTest::newRow("above it") << 8 << 1.001 << true;
        QTest::newRow("of the other sign") << 8 << -3.0 << false;
        QTest::newRow("0.05 s away") << 12 << 3.0 << true;
        QTest::newRow("farther away") << 13 << 3.0 << false;
    }

    void anOuterWaveHasToBeLargeAndClose()
    {
        QFETCH(int, distance);
        QFETCH(double, value);
        QFETCH(bool, counts);
        TWritten before, behind;
        before.complex().spike(2, 370 - distance, value);
        behind.complex().spike(2, 380 + distance, -value);
        QCOMPARE(before.delineate().qrsStart, counts ? 370 - distance - 2 : 360);
        QCOMPARE(before.delineate().qrsOnset, counts ? 370 - distance + 1 : absent);
        QCOMPARE(behind.delineate().qrsEnd, counts ? 380 + distance + 1 : 390);
        QCOMPARE(behind.delineate().qrsOffset, counts ? 380 + distance - 1 : absent);
    }

    void ofTwoOuterWavesTheLargerCounts()
    {
        TWritten written;
        written.complex().spike(2, 365, 2.0).spike(2, 360, 3.0).spike(2, 385, -3.0).spike(2, 390, -2.0);
        const TChannelBeat beat = written.delineate();
        QCOMPARE(beat.qrsStart, 358);
        // The walk to it stops at the first change of sign.
        QCOMPARE(beat.qrsOnset, 366);
        QCOMPARE(beat.qrsEnd, 386);
        QCOMPARE(beat.qrsOffset, 384);
    }

    void anInvertedComplexIsNamedAfterItsOuterWaves_data()
    {
        QTest::addColumn<bool>("left");
        QTest::addColumn<bool>("right");
        QTest::addColumn<int>("onset");
        QTest::addColumn<int>("rPeak");
        QTest::addColumn<int>("offset");
        QTest::newRow("QS") << false << false << 375 << absent << 375;
        QTest::newRow("QR") << false << true << 375 << 387 << absent;
        QTest::newRow("RS") << true << false << absent << 363 << 375;
        QTest::newRow("RSR'") << true << true << absent << 363 << 375;
    }

    void anInvertedComplexIsNamedAfterItsOuterWaves()
    {
        QFETCH(bool, left);
        QFETCH(bool, right);
        QFETCH(int, onset);
        QFETCH(int, rPeak);
        QFETCH(int, offset);
        TWritten written;
        written.complex(-1.0);
        if (left)
            written.spike(2, 362, -3.0);
        if (right)
            written.spike(2, 388, 3.0);
        const TChannelBeat beat = written.delineate();
        QCOMPARE(beat.qrsType, short(-1));
        QCOMPARE(beat.qrsOnset, onset);
        QCOMPARE(beat.rPeak, rPeak);
        QCOMPARE(beat.qrsOffset, offset);
        QCOMPARE(beat.qrsStart, 360);
        QCOMPARE(beat.qrsEnd, right ? 389 : 390);
    }

    void thePWaveIsSoughtInItsWindow_data()
    {
        QTest::addColumn<bool>("complex");
        QTest::addColumn<int>("previousWaveEnd");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("end");
        QTest::newRow("before the complex") << true << absent << 297 << 358;
        QTest::newRow("without a complex") << false << absent << 300 << 362;
        QTest::newRow("behind a T wave before") << true << 310 << 322 << 358;
        QTest::newRow("a T wave just close enough") << true << 301 << 313 << 358;
        QTest::newRow("a T wave too far away") << true << 300 << 297 << 358;
        QTest::newRow("behind a T wave without a complex") << false << 320 << 332 << 362;
    }

    void thePWaveIsSoughtInItsWindow()
    {
        QFETCH(bool, complex);
        QFETCH(int, previousWaveEnd);
        QFETCH(int, start);
        QFETCH(int, end);
        for (const int first : {start, start - 1}) {
            for (const int last : {end, end + 1}) {
                TWritten written;
                if (complex)
                    written.complex();
                written.task.previousWaveEnd = previousWaveEnd;
                written.spike(4, first, -2.0).spike(4, last, 2.0);
                QCOMPARE(written.delineate().pType, short(first == start && last == end ? 1 : 0));
            }
        }
    }

    void thePWindowFollowsAnEarlyQrsStart()
    {
        TWritten written;
        written.complex().spike(2, 362, 3.0).spike(4, 297, -2.0).spike(4, 358, 2.0);
        QCOMPARE(written.delineate().qrsStart, 360);
        QCOMPARE(written.delineate().pType, short(1));
    }

    void aPWaveEndingWhereTheNextComplexBeginsHasNoRoom()
    {
        TWritten written;
        written.complex().spike(4, 330, -2.0).spike(4, 340, 2.0);
        written.task.previousWaveEnd = 372;
        QCOMPARE(written.delineate().pType, short(0));
    }

    void theTurnOfAPWaveIsItsCrossing_data()
    {
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("second");
        QTest::addColumn<int>("peak");
        QTest::newRow("on a sample") << -5.0 << 5.0 << 335;
        QTest::newRow("nearer to the one before") << -4.7 << 5.3 << 335;
        QTest::newRow("nearer to the one behind") << -5.7 << 4.3 << 336;
        // Walking back, the later one is taken.
        QTest::newRow("between two") << -5.5 << 4.5 << 336;
    }

    void theTurnOfAPWaveIsItsCrossing()
    {
        QFETCH(double, first);
        QFETCH(double, second);
        QFETCH(int, peak);
        for (const double sign : {1.0, -1.0}) {
            TWritten written;
            written.complex().line(4, {{330, sign * first}, {340, sign * second}});
            const TChannelBeat beat = written.delineate();
            QCOMPARE(beat.pType, short(sign));
            QCOMPARE(beat.pPeak, peak);
            QCOMPARE(beat.pStart, 327);
            QCOMPARE(beat.pEnd, 342);
        }
    }

    void wavesHaveToReachTheirThresholds_data()
    {
        QTest::addColumn<double>("height");
        QTest::addColumn<bool>("p");
        QTest::addColumn<bool>("t");
        QTest::newRow("0.3") << 0.3 << false << false;
        QTest::newRow("above 0.3") << 0.301 << true << false;
        QTest::newRow("0.5") << 0.5 << true << false;
        QTest::newRow("above 0.5") << 0.501 << true << true;
    }

    void wavesHaveToReachTheirThresholds()
    {
        QFETCH(double, height);
        QFETCH(bool, p);
        QFETCH(bool, t);
        TWritten written;
        written.complex().spike(4, 330, -height).spike(4, 340, height);
        written.spike(4, 420, height).spike(4, 440, -height);
        const TChannelBeat beat = written.delineate();
        QCOMPARE(beat.pType, short(p ? 1 : 0));
        QCOMPARE(beat.tType, short(t ? -1 : 0));
    }

    void aWaveNeedsExtremesAtLagTwo()
    {
        // A plateau of five has one at lag three only.
        TWritten written;
        written.complex().spike(4, 330, -2.0).line(4, {{338, 2.0}, {342, 2.0}});
        QCOMPARE(written.delineate().pType, short(0));
        written.spike(4, 338, 0.0).spike(4, 342, 0.0);
        QCOMPARE(written.delineate().pType, short(1));
    }

    void theTWaveIsSoughtInItsWindow_data()
    {
        QTest::addColumn<int>("nextR");
        QTest::addColumn<double>("meanRR");
        QTest::addColumn<int>("end");
        QTest::newRow("0.4 s") << 575 << 0.8 << 475;
        QTest::newRow("a mean of 0.7 s") << 575 << 0.7 << 475;
        QTest::newRow("half of a shorter mean") << 575 << 0.699 << 462;
        QTest::newRow("half of 0.6 s") << 575 << 0.6 << 450;
        QTest::newRow("no later than 0.1 s before the next") << 490 << 0.8 << 465;
        QTest::newRow("0.35 s are left") << 488 << 0.4 << 425;
        QTest::newRow("less is left") << 487 << 0.4 << 462;
        QTest::newRow("a close beat") << 440 << 0.8 << 415;
    }

    void theTWaveIsSoughtInItsWindow()
    {
        QFETCH(int, nextR);
        QFETCH(double, meanRR);
        QFETCH(int, end);
        for (const int first : {400, 399}) {
            for (const int last : {end, end + 1}) {
                TWritten written;
                written.complex().spike(4, first, -2.0).spike(4, last, 2.0);
                written.task.nextR = nextR;
                written.task.meanRR = meanRR;
                QCOMPARE(written.delineate().tType, short(first == 400 && last == end ? 1 : 0));
            }
        }
    }

    void aBeatThatIsFollowedAtOnceHasNoTWave()
    {
        TWritten written;
        written.complex().spike(4, 402, -2.0).spike(4, 410, 2.0);
        written.task.nextR = 415;
        QCOMPARE(written.delineate().tType, short(0));
    }

    void theTurnOfATWaveIsItsCrossing_data()
    {
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("second");
        QTest::addColumn<int>("peak");
        QTest::newRow("on a sample") << -5.0 << 5.0 << 435;
        QTest::newRow("nearer to the one before") << -4.7 << 5.3 << 435;
        QTest::newRow("nearer to the one behind") << -5.7 << 4.3 << 436;
        QTest::newRow("between two") << -5.5 << 4.5 << 435;
    }

    void theTurnOfATWaveIsItsCrossing()
    {
        QFETCH(double, first);
        QFETCH(double, second);
        QFETCH(int, peak);
        for (const double sign : {1.0, -1.0}) {
            TWritten written;
            written.complex().line(4, {{430, sign * first}, {440, sign * second}});
            const TChannelBeat beat = written.delineate();
            QCOMPARE(beat.tType, short(sign));
            QCOMPARE(beat.tPeak, peak);
            QCOMPARE(beat.tStart, 425);
            QCOMPARE(beat.tEnd, 445);
        }
    }

    void theFlatPointIsTheFirstBeforeTheOnset_data()
    {
        QTest::addColumn<bool>("hasOnset");
        QTest::addColumn<int>("flatAt");
        QTest::addColumn<int>("found");
        // Onset 363 or R 375.
        QTest::newRow("at the start") << true << 360 << 360;
        QTest::newRow("farther back") << true << 350 << 350;
        QTest::newRow("the last one") << true << 339 << 339;
        QTest::newRow("too far") << true << 338 << absent;
        QTest::newRow("by R, at the start") << false << 370 << 370;
        QTest::newRow("by R, the last one") << false << 326 << 326;
        QTest::newRow("by R, too far") << false << 325 << absent;
    }

    void theFlatPointIsTheFirstBeforeTheOnset()
    {
        QFETCH(bool, hasOnset);
        QFETCH(int, flatAt);
        QFETCH(int, found);
        for (const int flatScale : {3, 4}) {
            TWritten written;
            written.complex();
            if (hasOnset)
                written.spike(2, 362, 3.0);
            // A slope of one a sample is steep, one of a half is flat.
            for (const int scale : {3, 4})
                written.line(scale, {{200, 200.0}, {390, 390.0}});
            written.spike(flatScale, flatAt + 1, flatAt + 0.5);
            QCOMPARE(written.delineate().isoelectricPoint, found);
        }
    }

    void aDifferenceOfTwoCountsIsSteep()
    {
        for (const double slope : {1.0, 0.999}) {
            TWritten written;
            written.complex();
            for (const int scale : {3, 4})
                written.line(scale, {{0, 0.0}, {400, 400.0 * slope}});
            QCOMPARE(written.delineate().isoelectricPoint, slope < 1.0 ? 370 : absent);
        }
    }

    void theStPointIsTheLastChangeOfSignBeforeTheTWave_data()
    {
        QTest::addColumn<bool>("hasOffset");
        QTest::addColumn<int>("change");
        QTest::addColumn<int>("found");
        // With an offset at 387 the scan runs from 389 to 439, by R from 387 to 437. The sign differs from
        // two samples before the change to one behind it.
        QTest::newRow("within") << true << 410 << 411;
        QTest::newRow("at its start") << true << 388 << 389;
        QTest::newRow("before") << true << 387 << absent;
        QTest::newRow("at its end") << true << 441 << 439;
        QTest::newRow("behind") << true << 442 << absent;
        QTest::newRow("by R, at its start") << false << 386 << 387;
        QTest::newRow("by R, before") << false << 385 << absent;
        QTest::newRow("by R, at its end") << false << 439 << 437;
        QTest::newRow("by R, behind") << false << 440 << absent;
    }

    void theStPointIsTheLastChangeOfSignBeforeTheTWave()
    {
        QFETCH(bool, hasOffset);
        QFETCH(int, change);
        QFETCH(int, found);
        TWritten written;
        written.complex();
        if (hasOffset)
            written.spike(2, 388, -3.0);
        // Too small for a wave.
        written.line(4, {{300, 0.1}, {change - 1, 0.1}}).line(4, {{change, -0.1}, {600, -0.1}});
        QCOMPARE(written.delineate().qrsOffset, hasOffset ? 387 : absent);
        QCOMPARE(written.delineate().stPoint, found);
    }

    void theStPointLiesBeforeTheTWave()
    {
        TWritten written;
        written.complex().line(4, {{300, 0.1}, {419, 0.1}}).line(4, {{420, -0.1}, {425, -0.1}});
        written.line(4, {{430, -5.0}, {440, 5.0}});
        const TChannelBeat beat = written.delineate();
        QCOMPARE(beat.tPeak, 435);
        // Not beyond 0.05 s before it, 422.
        QCOMPARE(beat.stPoint, 421);
    }

    void zeroIsASignOfItsOwn()
    {
        TWritten written;
        written.complex().line(4, {{300, 0.1}, {409, 0.1}});
        QCOMPARE(written.delineate().stPoint, 411);
    }

    void withoutRAndOffsetThereIsNoStPoint()
    {
        TWritten written;
        written.line(4, {{300, 0.1}, {409, 0.1}});
        QCOMPARE(written.delineate().stPoint, absent);
    }

    void positionsAreCutTowardsZero()
    {
        // At 360 samples a second the distances are no whole samples.
        TWritten written;
        written.task.samplingRate = 360;
        written.task.nextR = 700;
        written.complex().line(4, {{430, -5.0}, {440, 5.0}});
        const TChannelBeat beat = written.delineate();
        QCOMPARE(beat.qrsStart, int(370 - 0.04 * 360));
        QCOMPARE(beat.qrsEnd, int(380 + 0.04 * 360));
        QCOMPARE(beat.tStart, int(430 - 0.02 * 360));
        QCOMPARE(beat.tEnd, int(440 + 0.02 * 360));
    }

    void aBeatAtTheVeryBeginningIsDelineatedAsFarAsItGoes()
    {
        TWritten written;
        written.task.r = 3;
        written.spike(2, 2, -5.0).spike(2, 8, 5.0);
        const TChannelBeat beat = written.delineate();
        QCOMPARE(beat.rPosition, 3);
        QCOMPARE(beat.qrsType, short(1));
        QCOMPARE(beat.pType, short(0));
    }

    void theWavesOfABeatEndWithTheLastThatIsKnown()
    {
        TChannelBeat beat;
        beat.rPosition = 1000;
        QCOMPARE(waveEndOf(beat, rate), 1100);
        beat.rPeak = 1002;
        QCOMPARE(waveEndOf(beat, rate), 1102);
        beat.qrsOffset = 1010;
        QCOMPARE(waveEndOf(beat, rate), 1110);
        beat.qrsEnd = 1015;
        QCOMPARE(waveEndOf(beat, rate), 1090);
        beat.tStart = 1041;
        QCOMPARE(waveEndOf(beat, rate), 1091);
        beat.tPeak = 1060;
        QCOMPARE(waveEndOf(beat, rate), 1085);
        beat.tEnd = 1081;
        QCOMPARE(waveEndOf(beat, rate), 1081);
    }
};

QTEST_GUILESS_MAIN(ChannelDelineationTest)
#include "ChannelDelineationTest.moc"
