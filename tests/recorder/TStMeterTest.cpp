#include "recorder/TStMeter.h"

#include "analysis/beats/TAverageBeat.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

#include <cmath>

namespace {

/// Counts of one millivolt: 16 bits over -32.768 to 32.768 mV.
constexpr double countsPerMillivolt = 1000.0;
constexpr double range = 32.768;

/// Seconds between two drawn beats, the first of which stands at this time, too.
constexpr double beatDistance = 2.0;

/// A drawn beat: an R of 1 mV, then an ST segment from 30 to 300 ms after R.
struct TDrawnSt
{
    double level = 0.0; ///< mV at 60 ms
    double slope = 0.0; ///< mV/s
    bool hasQrs = true;
    double pWave = 0.0; ///< mV, 160 ms before R
};

double millivoltsAt(const TDrawnSt& st, double seconds)
{
    const double r = st.hasQrs ? std::exp(-0.5 * std::pow(seconds / 0.008, 2)) : 0.0;
    const double p = st.pWave * std::exp(-0.5 * std::pow((seconds + 0.16) / 0.02, 2));
    const double rise = std::clamp((seconds - 0.01) / 0.02, 0.0, 1.0);
    const double decay = std::clamp((0.4 - seconds) / 0.1, 0.0, 1.0);
    return r + p + rise * decay * (st.level + st.slope * (seconds - 0.06));
}

/// A signal with these beats, the first channel as drawn and the second turned over.
class TDrawing
{
public:
    TDrawing(int rate, const std::vector<TDrawnSt>& beats)
        : signal(4096, rate * 2 * (static_cast<int>(beats.size()) + 1), 2, rate), average(&signal, 20.0)
    {
        signal.setRange(-range, range);
        for (int i = 0; i < rate * beatDistance * (static_cast<int>(beats.size()) + 1); ++i) {
            const double t = static_cast<double>(i) / rate;
            const int nearest = static_cast<int>(std::lround(t / beatDistance));
            const bool isBeat = nearest >= 1 && nearest <= static_cast<int>(beats.size());
            const double mV = isBeat ? millivoltsAt(beats[nearest - 1], t - nearest * beatDistance) : 0.0;
            const short sample = static_cast<short>(std::lround(mV * countsPerMillivolt));
            const short both[] = {sample, static_cast<short>(-sample)};
            signal.addInterleaved(reinterpret_cast<const char*>(both), sizeof both);
        }
    }

    /// Makes that beat, from 0, the complex.
    void show(int index)
    {
        TBeat beat(2);
        // A part of a sample later, so that the place of R does not hang on a rounding.
        const double r = (index + 1) * beatDistance + 0.75 / signal.samplingRate();
        beat.setWindow(r - 0.4, 0.8);
        beat.setValue(TBeat::rr, 0.8);
        beat.setFiducial(0, TBeat::rPosition, r);
        average.complexFromBeat(beat);
    }

    TInt16Signal signal;
    TAverageBeat average;
};

bool isNear(double value, double expected, double tolerance)
{
    if (std::abs(value - expected) <= tolerance)
        return true;
    qWarning("%g instead of %g", value, expected);
    return false;
}

} // namespace

class TStMeterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawnStIsMeasuredByTheBordersOfTheQrs_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<double>("level");
        QTest::addColumn<double>("slope");
        for (const int rate : {250, 500, 1000}) {
            for (const double level : {0.0, 0.2, -0.15}) {
                for (const double slope : {0.0, 1.0, -1.5})
                    QTest::addRow("%d Hz, %g mV, %g mV/s", rate, level, slope) << rate << level << slope;
            }
        }
    }

    void drawnStIsMeasuredByTheBordersOfTheQrs()
    {
        QFETCH(int, rate);
        QFETCH(double, level);
        QFETCH(double, slope);
        TDrawing drawing(rate, {{level, slope}});
        drawing.show(0);
        TStMeter meter;
        meter.start();
        for (const int channel : {0, 1}) {
            const double sign = channel == 0 ? 1.0 : -1.0;
            const auto value = meter.measure(drawing.average, drawing.signal, channel, 0.8);
            QVERIFY(value);
            // Along the slope the level is that of J, wherever the border of the QRS was found.
            const TStPoints points = meter.points(channel);
            const double j = (points.j - drawing.average.rOffset()) / static_cast<double>(rate);
            QVERIFY2(j >= 0.03 && j <= 0.12, QByteArray::number(j).constData());
            // Half a sample at 250 Hz and the rounding to counts.
            const double tolerance = 0.0021 * std::abs(slope) + 0.002;
            QVERIFY(isNear(value->level, sign * (level + slope * (j - 0.06)), tolerance));
            QVERIFY(isNear(value->slope, sign * slope, 0.03));
        }
    }

    void thePointsLieTenAndEightyMillisecondsPastTheQrs_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("factor");
        QTest::newRow("250 Hz") << 250 << 1;
        QTest::newRow("500 Hz") << 500 << 2;
        QTest::newRow("1000 Hz") << 1000 << 4;
    }

    void thePointsLieTenAndEightyMillisecondsPastTheQrs()
    {
        QFETCH(int, rate);
        QFETCH(int, factor);
        TDrawing drawing(rate, {{0.1, 0.0, true, 0.0}});
        drawing.show(0);
        TAverageBeatDelineator waves;
        waves.analyse(drawing.average.complex(0).decimatedMean(factor), 250,
                      drawing.average.rOffset() / factor, 200);
        QVERIFY(waves.qrsOnset() > 0 && waves.qrsOffset() > waves.qrsOnset());
        TStMeter meter;
        QVERIFY(meter.measure(drawing.average, drawing.signal, 0, 0.8));
        QCOMPARE(meter.points(0).j, (waves.qrsOffset() + 2) * factor);
        QCOMPARE(meter.points(0).st, (waves.qrsOffset() + 20) * factor);
        const int base =
            waves.pOffset() > 0 ? (waves.pOffset() + waves.qrsOnset()) / 2 : waves.qrsOnset() - 3;
        QVERIFY(meter.points(0).base == base * factor || meter.points(0).base == (base + 1) * factor);
    }

    void withoutAPWaveTheBaseLiesThreeSamplesBeforeTheQrs()
    {
        TDrawing drawing(250, {{0.1, 0.0, true, 0.0}});
        drawing.show(0);
        TAverageBeatDelineator waves;
        waves.analyse(drawing.average.complex(0), 250, drawing.average.rOffset(), 0);
        QCOMPARE(waves.pOffset(), 0);
        QVERIFY(waves.qrsOnset() > 3);
        TStMeter meter;
        QVERIFY(meter.measure(drawing.average, drawing.signal, 0, 0.0));
        QCOMPARE(meter.points(0).base, waves.qrsOnset() - 3);
    }

    void theBaseLiesBetweenThePWaveAndTheQrs()
    {
        TDrawing drawing(500, {{0.1, 0.0, true, 0.2}});
        drawing.show(0);
        TStMeter meter;
        const auto value = meter.measure(drawing.average, drawing.signal, 0, 0.8);
        QVERIFY(value);
        TAverageBeatDelineator waves;
        waves.analyse(drawing.average.complex(0).decimatedMean(2), 250, drawing.average.rOffset() / 2, 200);
        QVERIFY(waves.pOffset() > 0);
        QCOMPARE(meter.points(0).base, (waves.pOffset() + waves.qrsOnset()) / 2 * 2);
        QVERIFY(isNear(value->level, 0.1, 0.005));
    }

    void delineatedValuesAreMeansOfTheLastThree()
    {
        TDrawing drawing(500, {{0.1}, {0.2}, {0.3}, {0.7}, {-0.1}});
        TStMeter meter;
        meter.start();
        const double means[] = {0.1, 0.15, 0.2, 0.4, 0.3};
        for (int i = 0; i < 5; ++i) {
            drawing.show(i);
            const auto value = meter.measure(drawing.average, drawing.signal, 0, 0.8);
            QVERIFY(value);
            QVERIFY(isNear(value->level, means[i], 0.002));
        }
    }

    void channelsHaveTheirOwnMeans()
    {
        TDrawing drawing(500, {{0.1}, {0.3}});
        TStMeter meter;
        meter.start();
        drawing.show(0);
        QVERIFY(meter.measure(drawing.average, drawing.signal, 0, 0.8));
        drawing.show(1);
        const auto other = meter.measure(drawing.average, drawing.signal, 1, 0.8);
        QVERIFY(other);
        QVERIFY(isNear(other->level, -0.3, 0.002));
    }

    void aComplexWithoutQrsHasNoPointsAndAddsNothing()
    {
        TDrawing drawing(500, {{0.1}, {0.0, 0.0, false}, {0.3}});
        TStMeter meter;
        meter.start();
        drawing.show(0);
        QVERIFY(meter.measure(drawing.average, drawing.signal, 0, 0.8));
        QVERIFY(meter.points(0).j > 0);
        drawing.show(1);
        QVERIFY(!meter.measure(drawing.average, drawing.signal, 0, 0.8));
        QCOMPARE(meter.points(0).base, 0);
        QCOMPARE(meter.points(0).j, 0);
        QCOMPARE(meter.points(0).st, 0);
        drawing.show(2);
        const auto value = meter.measure(drawing.average, drawing.signal, 0, 0.8);
        QVERIFY(value);
        QVERIFY(isNear(value->level, 0.2, 0.002));
    }

    void aStartForgetsEarlierBeats()
    {
        TDrawing drawing(500, {{0.1}, {0.3}});
        TStMeter meter;
        drawing.show(0);
        QVERIFY(meter.measure(drawing.average, drawing.signal, 0, 0.8));
        meter.start();
        QCOMPARE(meter.points(0).j, 0);
        drawing.show(1);
        const auto value = meter.measure(drawing.average, drawing.signal, 0, 0.8);
        QVERIFY(value);
        QVERIFY(isNear(value->level, 0.3, 0.002));
    }

    void fixedPointsAreTheNearestSamples_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("base");
        QTest::addColumn<int>("j");
        QTest::addColumn<int>("st");
        // rate * t + 0.5, truncated towards zero.
        QTest::newRow("250 Hz") << 250 << -12 << 10 << 30;
        QTest::newRow("500 Hz") << 500 << -24 << 20 << 60;
        QTest::newRow("1000 Hz") << 1000 << -49 << 40 << 120;
    }

    void fixedPointsAreTheNearestSamples()
    {
        QFETCH(int, rate);
        QFETCH(int, base);
        QFETCH(int, j);
        QFETCH(int, st);
        // Neighbouring samples differ, so that a wrong point shows.
        TInt16Signal signal(4096, 4 * rate, 1, rate);
        signal.setRange(-range, range);
        const auto countsAt = [rate](int fromR) { return static_cast<short>(fromR * (fromR + rate) / 10); };
        for (int i = 0; i < 4 * rate; ++i) {
            const int fromR = i - 2 * rate;
            const short sample = std::abs(fromR) < rate / 2 ? countsAt(fromR) : short(0);
            signal.addInterleaved(reinterpret_cast<const char*>(&sample), sizeof sample);
        }
        TAverageBeat average(&signal, 20.0);
        TBeat beat(1);
        beat.setFiducial(0, TBeat::rPosition, 2.0 + 0.75 / rate);
        average.complexFromBeat(beat);
        TStMeter meter;
        meter.setMethod(TStMeter::FixedPoints);
        const auto value = meter.measure(average, signal, 0, 0.0);
        QVERIFY(value);
        QCOMPARE(meter.points(0).base, average.rOffset() + base);
        QCOMPARE(meter.points(0).j, average.rOffset() + j);
        QCOMPARE(meter.points(0).st, average.rOffset() + st);
        QVERIFY(isNear(value->level, (countsAt(st) - countsAt(base)) / countsPerMillivolt, 1e-9));
        const double seconds = static_cast<double>(st - j) / rate;
        QVERIFY(isNear(value->slope, (countsAt(st) - countsAt(j)) / countsPerMillivolt / seconds, 1e-9));
    }

    void fixedPointsAreNotSmoothed()
    {
        TDrawing drawing(500, {{0.1}, {0.4}});
        TStMeter meter;
        meter.setMethod(TStMeter::FixedPoints);
        QCOMPARE(meter.method(), TStMeter::FixedPoints);
        drawing.show(0);
        QVERIFY(isNear(meter.measure(drawing.average, drawing.signal, 0, 0.8)->level, 0.1, 0.0011));
        drawing.show(1);
        QVERIFY(isNear(meter.measure(drawing.average, drawing.signal, 0, 0.8)->level, 0.4, 0.0011));
    }

    void fixedPointsMeasureWithoutAQrs()
    {
        TDrawing drawing(500, {{0.0, 0.0, false}});
        TStMeter meter;
        meter.setMethod(TStMeter::FixedPoints);
        drawing.show(0);
        const auto value = meter.measure(drawing.average, drawing.signal, 0, 0.8);
        QVERIFY(value);
        QCOMPARE(value->level, 0.0);
        QCOMPARE(value->slope, 0.0);
    }

    void delineationIsTheMethodUnlessAnotherIsSet() { QCOMPARE(TStMeter().method(), TStMeter::Delineated); }
};

QTEST_GUILESS_MAIN(TStMeterTest)

#include "TStMeterTest.moc"
