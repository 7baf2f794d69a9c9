#include "analysis/beats/AverageRecording.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

using namespace averaging;

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
};

QTEST_GUILESS_MAIN(AverageBeatTest)
#include "AverageBeatTest.moc"
