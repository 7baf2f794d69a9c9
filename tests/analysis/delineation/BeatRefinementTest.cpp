#include "analysis/delineation/BeatRefinement.h"

#include "analysis/beats/TBeat.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

#include <cmath>

namespace {

constexpr int rate = 500;
constexpr int samples = 2000;
/// A point in the middle of the window.
constexpr int center = 1000;

/// Two channels; the second one is silent.
class TCurve : public TInt16Signal
{
public:
    template <typename ValueOf> explicit TCurve(ValueOf valueOf) : TInt16Signal(256, samples, 2, rate)
    {
        std::vector<short> values(samples);
        const std::vector<short> silence(samples);
        for (int i = 0; i < samples; ++i)
            values[i] = static_cast<short>(std::lround(valueOf(i)));
        const short* const data[] = {values.data(), silence.data()};
        addPerChannel(data, samples);
    }
};

/// A hill of the given height, `width` samples to its foot, with its top at `top`.
auto hill(int top, double height, double width = 60.0)
{
    return [=](int i) {
        const double distance = std::abs(i - top);
        return distance < width ? height * 0.5 * (1.0 + std::cos(M_PI * distance / width)) : 0.0;
    };
}

TBeat beatAround(const TSignal& signal)
{
    TBeat beat(&signal);
    beat.setWindow(1.6, 0.8);
    return beat;
}

/// By how many samples a slot of channel 0, set at `center`, is moved.
double move(TSignal& signal, int slot, TBeat beat)
{
    beat.setFiducial(0, slot, signal.timeOf(center));
    velantor::refineBeat(beat, signal);
    return std::round((beat.fiducial(0, slot) * rate - center) * 1e6) / 1e6;
}

double move(TSignal& signal, int slot)
{
    return move(signal, slot, beatAround(signal));
}

} // namespace

class BeatRefinementTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySlotMovesToAMaximumInReach_data()
    {
        QTest::addColumn<int>("slot");
        for (int slot = TBeat::pPeak; slot <= TBeat::tPeak; ++slot)
            QTest::addRow("slot %d", slot) << slot;
    }

    void everySlotMovesToAMaximumInReach()
    {
        QFETCH(int, slot);
        // The smoothing has an even number of taps: a top between two samples is met by the later one, one
        // on a sample lies between that and the one before. Hills of 2 samples' top stand on a sample.
        for (const int distance : {-4, 0, 4}) {
            TCurve signal([=](int i) {
                return std::max(hill(center + distance, 9000)(i), hill(center + distance - 1, 9000)(i));
            });
            QCOMPARE(move(signal, slot), double(distance));
        }
    }

    void onlyBordersMoveToAMinimum()
    {
        TCurve signal([](int i) { return std::min(hill(center + 3, -9000)(i), hill(center + 2, -9000)(i)); });
        QCOMPARE(move(signal, TBeat::qrsOnset), 3.0);
        QCOMPARE(move(signal, TBeat::qrsOffset), 3.0);
        QCOMPARE(move(signal, TBeat::pPeak), 0.0);
        QCOMPARE(move(signal, TBeat::rPosition), 0.0);
        QCOMPARE(move(signal, TBeat::tPeak), 0.0);
    }

    void sixSamplesAreInReachAndSevenAreNot()
    {
        for (const int side : {-1, 1}) {
            TCurve near([=](int i) {
                return std::max(hill(center + 6 * side, 9000)(i), hill(center + 6 * side - 1, 9000)(i));
            });
            QCOMPARE(move(near, TBeat::rPosition), 6.0 * side);
            TCurve far([=](int i) {
                return std::max(hill(center + 7 * side, 9000)(i), hill(center + 7 * side - 1, 9000)(i));
            });
            QCOMPARE(move(far, TBeat::rPosition), 0.0);
        }
    }

    void theFirstOfSeveralTurnsCounts_data()
    {
        QTest::addColumn<double>("sign");
        QTest::addColumn<double>("peak");
        QTest::addColumn<double>("border");
        QTest::newRow("maxima at -4 and 6, a minimum at 1") << 1.0 << -4.0 << -4.0;
        QTest::newRow("minima at -4 and 6, a maximum at 1") << -1.0 << 1.0 << -4.0;
    }

    void theFirstOfSeveralTurnsCounts()
    {
        QFETCH(double, sign);
        QFETCH(double, peak);
        QFETCH(double, border);
        // A swing of 10 samples outlives the smoothing in small, and upside down.
        TCurve signal([sign](int i) {
            return -15000.0 * sign * std::cos(2.0 * M_PI * (i + 0.5 - (center - 4)) / 10.0);
        });
        for (const int slot : {TBeat::pPeak, TBeat::rPosition, TBeat::tPeak})
            QCOMPARE(move(signal, slot), peak);
        for (const int slot : {TBeat::qrsOnset, TBeat::qrsOffset})
            QCOMPARE(move(signal, slot), border);
    }

    void ofTwoMaximaTheFirstCounts()
    {
        // Nine samples apart: at -5 and 4.
        TCurve signal([](int i) { return -15000.0 * std::cos(2.0 * M_PI * (i + 0.5 - (center - 5)) / 9.0); });
        for (const int slot : {TBeat::pPeak, TBeat::rPosition, TBeat::tPeak})
            QCOMPARE(move(signal, slot), -5.0);
    }

    void aSlopeOrAFlatSignalLeavesThePoint()
    {
        TCurve slope([](int i) { return 10.0 * (i - center); });
        TCurve flat([](int) { return 1234.0; });
        for (int slot = TBeat::pPeak; slot <= TBeat::tPeak; ++slot) {
            QCOMPARE(move(slope, slot), 0.0);
            QCOMPARE(move(flat, slot), 0.0);
        }
    }

    void aPointThatStaysKeepsItsTimeToTheLastBit()
    {
        TCurve flat([](int) { return 0.0; });
        TBeat beat = beatAround(flat);
        const double betweenSamples = 2.00123;
        beat.setFiducial(0, TBeat::rPosition, betweenSamples);
        velantor::refineBeat(beat, flat);
        QCOMPARE(beat.fiducial(0, TBeat::rPosition), betweenSamples);
    }

    void theSignalCountsAsZeroOutsideTheWindow()
    {
        // A ramp that is cut off: smoothing makes a hill of its last samples.
        TCurve ramp([](int i) { return 10.0 * (i - 800); });
        TBeat cut = beatAround(ramp);
        cut.setWindow(1.6, (center + 16 - 800) / double(rate));
        QVERIFY(move(ramp, TBeat::rPosition, cut) != 0.0);
        QCOMPARE(move(ramp, TBeat::rPosition), 0.0);
        TBeat elsewhere = beatAround(ramp);
        elsewhere.setWindow(0.0, 0.5);
        QCOMPARE(move(ramp, TBeat::rPosition, elsewhere), 0.0);
    }

    void onlyTheSetTimesOfTheChannelMove()
    {
        TCurve signal([](int i) { return std::max(hill(center, 9000)(i), hill(center + 1, 9000)(i)); });
        TBeat beat = beatAround(signal);
        beat.setValue(TBeat::rr, 0.8);
        beat.setFiducial(0, TBeat::qrsDuration, 0.1);
        beat.setFiducial(0, TBeat::tPeak, 2.0);
        beat.setFiducial(1, TBeat::tPeak, 2.0);
        velantor::refineBeat(beat, signal);
        QCOMPARE(beat.fiducial(0, TBeat::tPeak), 2.002);
        QCOMPARE(beat.fiducial(1, TBeat::tPeak), 2.0);
        QCOMPARE(beat.fiducial(0, TBeat::qrsDuration), 0.1);
        QCOMPARE(beat.value(TBeat::rr), 0.8);
        QVERIFY(!beat.isFiducialSet(0, TBeat::rPosition));
        QVERIFY(!beat.isFiducialSet(0, TBeat::pPeak));
    }

    void placesOutsideTheSignalAreHarmless()
    {
        TCurve signal([](int i) { return hill(3, 9000)(i); });
        for (const double time : {-1e12, -0.01, 0.0, 0.002, 3.999, 4.0, 1e12, std::nan("")}) {
            TBeat beat(8);
            beat.setWindow(time, 1e12);
            for (int channel = 0; channel < 8; ++channel)
                beat.setFiducial(channel, TBeat::rPosition, time);
            velantor::refineBeat(beat, signal);
            QVERIFY(!(std::abs(beat.fiducial(0, TBeat::rPosition) - time) > 6.5 / rate));
        }
    }
};

QTEST_GUILESS_MAIN(BeatRefinementTest)
#include "BeatRefinementTest.moc"
