#include "analysis/beats/TAverageBeat.h"

#include "analysis/signals/TDoubleSignal.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

#include <cmath>

namespace {

constexpr int rate = 100;
constexpr int channels = 3;

/// A sample that tells its channel and place, so that a wrong one is seen.
double sampleAt(int channel, int index)
{
    return (channel + 1) * 1000.0 + index % 97 * 8.0;
}

/// Thirty seconds at 100 samples per second.
class TRecording : public TDoubleSignal
{
public:
    explicit TRecording(int capacity = 30 * rate) : TDoubleSignal(64, capacity, channels, rate)
    {
        grow(30 * rate);
    }

    void grow(int samples)
    {
        std::vector<std::vector<double>> rows(channels);
        std::vector<const double*> data;
        for (int channel = 0; channel < channels; ++channel) {
            for (int i = 0; i < samples; ++i)
                rows[channel].push_back(sampleAt(channel, sampleCount() + i));
            data.push_back(rows[channel].data());
        }
        addPerChannel(data.data(), samples);
    }
};

/// A beat at `t` that is normal on every channel.
TBeat beatAt(double t, double rr = 1.0, double meanRR = 1.0)
{
    TBeat beat(channels);
    beat.setWindow(t - 0.2, 0.6);
    beat.setValue(TBeat::beatTime, t);
    beat.setValue(TBeat::rr, rr);
    beat.setValue(TBeat::meanRR, meanRR);
    for (int channel = 0; channel < channels; ++channel) {
        beat.setFiducial(channel, TBeat::rPosition, t);
        beat.setFiducial(channel, TBeat::qrsType, 1.0);
    }
    return beat;
}

/// What the average of snippets is, straight from its definition.
TDoubleVector expectedComplex(TSignal& signal, int channel, const std::vector<double>& times)
{
    TDoubleVector complex(signal.samplingRate());
    for (const double t : times) {
        TDoubleVector snippet(complex.size());
        const int start = static_cast<int>((t - 0.45) * signal.samplingRate());
        signal.readDoubles(channel, start, snippet.size(), snippet.data());
        const double mean = snippet.mean();
        for (int i = 0; i < snippet.size(); ++i)
            complex[i] += (snippet[i] - mean) * (1.0 / static_cast<double>(times.size()));
    }
    return complex;
}

double greatestDifference(const TDoubleVector& a, const TDoubleVector& b)
{
    double greatest = a.size() == b.size() ? 0.0 : 1e9;
    for (int i = 0; i < std::min(a.size(), b.size()); ++i)
        greatest = std::max(greatest, std::abs(a[i] - b[i]));
    return greatest;
}

bool isSilent(const TDoubleVector& complex)
{
    return greatestDifference(complex, TDoubleVector(rate)) == 0.0;
}

} // namespace

class AverageBeatTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aComplexIsASecondLongWithRAt045Seconds_data()
    {
        QTest::addColumn<int>("samplingRate");
        QTest::addColumn<int>("rOffset");
        QTest::newRow("250") << 250 << 112;
        QTest::newRow("500") << 500 << 225;
        QTest::newRow("1000") << 1000 << 450;
        QTest::newRow("360") << 360 << 162;
        QTest::newRow("1") << 1 << 0;
    }

    void aComplexIsASecondLongWithRAt045Seconds()
    {
        QFETCH(int, samplingRate);
        TInt16Signal signal(64, 64, 2, samplingRate);
        TAverageBeat average(&signal, 20.0);
        QCOMPARE(average.sampleCount(), samplingRate);
        QTEST(average.rOffset(), "rOffset");
        QCOMPARE(average.complex(1).size(), samplingRate);
        QCOMPARE(average.holdTime(), 20.0);
    }

    void atFirstThereIsNothing()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        QCOMPARE(average.count(), 0);
        QCOMPARE(average.meanRR(), 0.0);
        QCOMPARE(average.dominantChannel(), 0);
        QVERIFY(isSilent(average.complex(0)));
        QVERIFY(!average.hasReference());
        QVERIFY(isSilent(average.reference(2)));
    }

    void normalBeatsAreAveragedAroundR()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        const std::vector<double> times{5.0, 6.1, 7.03};
        const double rr[] = {1.0, 1.1, 0.93};
        for (int i = 0; i < 3; ++i)
            average.addBeat(beatAt(times[i], rr[i]));
        QCOMPARE(average.count(), 3);
        QCOMPARE(average.meanRR(), (1.0 + 1.1 + 0.93) / 3);
        for (int channel = 0; channel < channels; ++channel) {
            QVERIFY(greatestDifference(average.complex(channel), expectedComplex(signal, channel, times)) <
                    1e-9);
            QVERIFY(std::abs(average.complex(channel).mean()) < 1e-9);
        }
    }

    void theAverageFollowsEachBeat()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        average.addBeat(beatAt(5.0));
        QCOMPARE(average.count(), 1);
        average.addBeat(beatAt(6.0));
        QCOMPARE(average.count(), 2);
        QVERIFY(greatestDifference(average.complex(0), expectedComplex(signal, 0, {5.0, 6.0})) < 1e-9);
    }

    void theRhythmDecides_data()
    {
        QTest::addColumn<double>("rr");
        QTest::addColumn<double>("meanRR");
        QTest::addColumn<int>("count");
        QTest::newRow("steady") << 1.0 << 1.0 << 1;
        QTest::newRow("the first beat has no RR") << 0.0 << 0.0 << 0;
        QTest::newRow("RR of 0 within a known rhythm") << 0.0 << 1.0 << 0;
        QTest::newRow("ratio of exactly 0.85") << 0.85 << 1.0 << 0;
        QTest::newRow("ratio just above 0.85") << std::nextafter(0.85, 1.0) << 1.0 << 1;
        QTest::newRow("ratio of exactly 1.2") << 1.2 << 1.0 << 0;
        QTest::newRow("ratio just below 1.2") << std::nextafter(1.2, 1.0) << 1.0 << 1;
        QTest::newRow("premature") << 0.6 << 1.0 << 0;
        QTest::newRow("after a pause") << 1.4 << 1.0 << 0;
        QTest::newRow("RR of exactly 0.2") << 0.2 << 0.2 << 0;
        QTest::newRow("RR just above 0.2") << 0.21 << 0.21 << 1;
        QTest::newRow("RR of exactly 2") << 2.0 << 2.0 << 0;
        QTest::newRow("RR just below 2") << 1.99 << 1.99 << 1;
        QTest::newRow("no mean yet") << 1.0 << 0.0 << 0;
        QTest::newRow("mean never set") << 1.0 << TBeat::unset << 0;
        QTest::newRow("both never set") << TBeat::unset << TBeat::unset << 0;
    }

    void theRhythmDecides()
    {
        QFETCH(double, rr);
        QFETCH(double, meanRR);
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        average.addBeat(beatAt(5.0, rr, meanRR));
        QTEST(average.count(), "count");
        QCOMPARE(isSilent(average.complex(1)), average.count() == 0);
        QCOMPARE(average.meanRR(), average.count() == 0 ? 0.0 : rr);
    }

    void withNoBeatLeftTheComplexesAreSilentAgain()
    {
        TRecording signal;
        TAverageBeat average(&signal, 5.0);
        average.addBeat(beatAt(5.0));
        QCOMPARE(average.count(), 1);
        average.addBeat(beatAt(20.0, 0.0, 0.0));
        QCOMPARE(average.count(), 0);
        QCOMPARE(average.meanRR(), 0.0);
        for (int channel = 0; channel < channels; ++channel)
            QVERIFY(isSilent(average.complex(channel)));
    }

    void otherQrsTypesAreLeftOut_data()
    {
        QTest::addColumn<double>("type");
        QTest::newRow("negative") << -1.0;
        QTest::newRow("none") << 0.0;
        QTest::newRow("not quite 1") << 1.0 + 1e-12;
    }

    void otherQrsTypesAreLeftOut()
    {
        QFETCH(double, type);
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        for (const double t : {5.0, 6.0})
            average.addBeat(beatAt(t));
        TBeat other = beatAt(7.0);
        other.setFiducial(0, TBeat::qrsType, type);
        average.addBeat(other);
        QCOMPARE(average.count(), 3);
        // Channel 1 ruled, on which all three are normal. Where only channel 0 can rule, two are left.
        TAverageBeat ofOne(&signal, 20.0);
        for (TBeat beat : {beatAt(5.0), beatAt(6.0), other}) {
            for (const int channel : {1, 2})
                beat.setFiducial(channel, TBeat::qrsType, 0.0);
            ofOne.addBeat(beat);
        }
        QCOMPARE(ofOne.dominantChannel(), 0);
        QCOMPARE(ofOne.count(), 2);
        QVERIFY(greatestDifference(ofOne.complex(2), expectedComplex(signal, 2, {5.0, 6.0})) < 1e-9);
    }

    void theChannelWithTheMostNormalBeatsRules()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        TBeat first = beatAt(5.0);
        first.setFiducial(0, TBeat::qrsType, -1.0);
        TBeat second(channels);
        second.setWindow(5.8, 0.6);
        second.setValue(TBeat::rr, 1.0);
        second.setValue(TBeat::meanRR, 1.0);
        second.setFiducial(2, TBeat::rPosition, 6.0);
        second.setFiducial(2, TBeat::qrsType, 1.0);
        // A type without an R does not count.
        second.setFiducial(1, TBeat::qrsType, 1.0);
        average.addBeat(first);
        average.addBeat(second);
        QCOMPARE(average.dominantChannel(), 2);
        QCOMPARE(average.count(), 2);
    }

    void onATieTheLowerChannelRules()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        TBeat beat = beatAt(5.0);
        beat.setFiducial(0, TBeat::qrsType, 0.0);
        average.addBeat(beat);
        QCOMPARE(average.dominantChannel(), 1);
        average.addBeat(beatAt(6.0));
        QCOMPARE(average.dominantChannel(), 1);
    }

    void theDominantChannelsRAlignsAllChannels()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        TBeat beat = beatAt(5.0);
        beat.setFiducial(1, TBeat::rPosition, 5.04);
        beat.setFiducial(2, TBeat::rPosition, 4.98);
        beat.setFiducial(0, TBeat::qrsType, -1.0);
        average.addBeat(beat);
        for (int channel = 0; channel < channels; ++channel)
            QVERIFY(greatestDifference(average.complex(channel), expectedComplex(signal, channel, {5.04})) <
                    1e-9);
    }

    void beatsOlderThanTheHoldTimeGo()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        TBeat oldest = beatAt(2.25);
        oldest.setWindow(2.0, 0.6);
        for (const TBeat& beat : {oldest, beatAt(2.5), beatAt(10.0)})
            average.addBeat(beat);
        QCOMPARE(average.count(), 3);
        // Exactly 20 s apart stays, more does not.
        TBeat edge = beatAt(22.0);
        edge.setWindow(22.0, 0.6);
        average.addBeat(edge);
        QCOMPARE(average.count(), 4);
        average.addBeat(beatAt(22.4));
        QCOMPARE(average.count(), 4);
        QVERIFY(greatestDifference(average.complex(0), expectedComplex(signal, 0, {2.5, 10.0, 22.0, 22.4})) <
                1e-9);
    }

    void aSingleBeatCanTakeThePlaceOfTheAverage()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        average.addBeat(beatAt(5.0));
        average.addBeat(beatAt(6.0));
        TBeat single(channels);
        single.setValue(TBeat::rr, 0.7);
        single.setFiducial(1, TBeat::rPosition, 8.02);
        single.setFiducial(2, TBeat::rPosition, 8.05);
        average.complexFromBeat(single);
        QCOMPARE(average.count(), 1);
        QCOMPARE(average.meanRR(), 0.7);
        QCOMPARE(average.dominantChannel(), 1);
        for (int channel = 0; channel < channels; ++channel)
            QVERIFY(greatestDifference(average.complex(channel), expectedComplex(signal, channel, {8.02})) <
                    1e-9);
        average.addBeat(beatAt(7.0));
        QCOMPARE(average.count(), 3);
    }

    void aSingleBeatWithoutRLiesAroundItsTime()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        TBeat single(channels);
        average.complexFromBeat(single);
        QCOMPARE(average.count(), 0);
        QVERIFY(isSilent(average.complex(0)));
        single.setValue(TBeat::beatTime, 8.0);
        average.complexFromBeat(single);
        QCOMPARE(average.count(), 1);
        QVERIFY(greatestDifference(average.complex(0), expectedComplex(signal, 0, {8.0})) < 1e-9);
    }

    void theReferenceStaysWhileTheAverageGoesOn()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        average.addBeat(beatAt(5.0));
        average.keepReference();
        QVERIFY(average.hasReference());
        average.addBeat(beatAt(9.0));
        QCOMPARE(average.count(), 2);
        for (int channel = 0; channel < channels; ++channel)
            QVERIFY(greatestDifference(average.reference(channel), expectedComplex(signal, channel, {5.0})) <
                    1e-9);
        average.keepReference();
        QVERIFY(greatestDifference(average.reference(0), average.complex(0)) == 0.0);
    }

    void whatTheSignalLacksCountsAsZero()
    {
        TRecording signal;
        TAverageBeat average(&signal, 1000.0);
        const std::vector<double> times{0.1, 29.9, 35.0};
        for (const double t : times)
            average.addBeat(beatAt(t));
        QCOMPARE(average.count(), 3);
        QVERIFY(greatestDifference(average.complex(1), expectedComplex(signal, 1, times)) < 1e-9);
        QVERIFY(!isSilent(average.complex(1)));
    }

    void aRingThatHasMovedOnGivesWhatItStillHolds()
    {
        TRecording ring(10 * rate);
        TAverageBeat average(&ring, 1000.0);
        average.addBeat(beatAt(5.0));
        QVERIFY(isSilent(average.complex(0)));
        average.addBeat(beatAt(25.0));
        QVERIFY(greatestDifference(average.complex(0), expectedComplex(ring, 0, {5.0, 25.0})) < 1e-9);
        QVERIFY(!isSilent(average.complex(0)));
    }

    void channelsThatDoNotExistAreSilent()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        average.addBeat(beatAt(5.0));
        for (const int channel : {-1, channels, 1000}) {
            QVERIFY(isSilent(average.complex(channel)));
            QVERIFY(isSilent(average.reference(channel)));
        }
    }

    void aBeatOfFewerOrMoreChannelsIsHarmless()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        average.addBeat(TBeat(0));
        average.complexFromBeat(TBeat(0));
        TBeat wide(16);
        wide.setValue(TBeat::rr, 1.0);
        wide.setValue(TBeat::meanRR, 1.0);
        wide.setFiducial(15, TBeat::rPosition, 5.0);
        wide.setFiducial(15, TBeat::qrsType, 1.0);
        average.addBeat(wide);
        QCOMPARE(average.count(), 0);
        average.complexFromBeat(wide);
        QVERIFY(greatestDifference(average.complex(0), expectedComplex(signal, 0, {5.0})) < 1e-9);
    }
};

QTEST_GUILESS_MAIN(AverageBeatTest)
#include "AverageBeatTest.moc"
