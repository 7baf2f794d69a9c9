#include "analysis/detection/ScriptedDetector.h"

#include <QtTest>

using namespace scripted;

class BeatDetectorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBeatIsMadeWhenAChannelKnowsTheNextOne()
    {
        TScene scene(2);
        scene.detector.cues = {{0, 500, 600}, {1, 500, 600}, {0, 700, 800}};
        scene.run(3.2);
        QCOMPARE(scene.positions(), QVector<int>());
        scene.run(2.0);
        QCOMPARE(scene.positions(), QVector<int>({500}));
        scene.detector.finish();
        QCOMPARE(scene.positions(), QVector<int>({500, 700}));
    }

    void theBeatLiesAtTheMiddleOfItsChannels_data()
    {
        QTest::addColumn<QVector<int>>("places");
        QTest::addColumn<int>("position");
        using TPlaces = QVector<int>;
        QTest::newRow("odd") << TPlaces{509, 500, 502} << 502;
        QTest::newRow("even takes the upper") << TPlaces{500, 510} << 510;
        QTest::newRow("four") << TPlaces{503, 501, 502, 500} << 502;
        QTest::newRow("0.075 s after the earliest") << TPlaces{500, 518, 518} << 518;
        QTest::newRow("later ones take no part") << TPlaces{500, 519, 519} << 500;
    }

    void theBeatLiesAtTheMiddleOfItsChannels()
    {
        QFETCH(QVector<int>, places);
        QFETCH(int, position);
        TScene scene(places.size());
        for (int channel = 0; channel < places.size(); ++channel)
            scene.detector.cues.push_back({channel, places[channel], 700});
        scene.everyChannel(900);
        scene.run(8.0);
        QVERIFY(!scene.log.beats.empty());
        QCOMPARE(scene.positions().front(), position);
    }

    void aLateChannelTakesNoPartAndItsCandidateIsDropped()
    {
        TScene scene(3);
        scene.detector.cues = {{0, 500, 600}, {1, 500, 600}, {2, 519, 600}};
        scene.everyChannel(750);
        scene.everyChannel(1000);
        scene.run(8.0);
        QCOMPARE(scene.positions(), QVector<int>({500, 750}));
        QCOMPARE(scene.log.beats[0].fiducial(1, TBeat::takesPart), 1.0);
        QCOMPARE(scene.log.beats[0].fiducial(2, TBeat::takesPart), 0.0);
        QVERIFY(!scene.log.beats[0].isFiducialSet(2, TBeat::rPosition));
        QCOMPARE(scene.log.beats[1].fiducial(2, TBeat::takesPart), 1.0);
    }

    void candidatesWithin200MillisecondsOfABeatAreDropped()
    {
        TScene scene(1);
        scene.detector.cues = {{0, 500, 600}, {0, 550, 600}, {0, 601, 700},
                               {0, 800, 900}, {0, 851, 900}, {0, 1000, 1100}};
        scene.run(8.0);
        QCOMPARE(scene.positions(), QVector<int>({500, 601, 800, 851}));
    }

    void withManyChannelsABeatOfFewWaitsTwoCalls_data()
    {
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("seeing");
        QTest::addColumn<int>("calls");
        QTest::newRow("one of four") << 4 << 1 << 1;
        QTest::newRow("two of five") << 5 << 2 << 3;
        QTest::newRow("three of five") << 5 << 3 << 1;
        QTest::newRow("half of six") << 6 << 3 << 3;
        QTest::newRow("more than half of six") << 6 << 4 << 1;
    }

    void withManyChannelsABeatOfFewWaitsTwoCalls()
    {
        QFETCH(int, channels);
        QFETCH(int, seeing);
        QFETCH(int, calls);
        TScene scene(channels);
        for (int channel = 0; channel < seeing; ++channel)
            scene.detector.cues.insert(scene.detector.cues.end(), {{channel, 500, 900}, {channel, 700, 900}});
        scene.grow(900 + rate);
        scene.detector.update();
        int made = 0;
        while (scene.log.beats.empty() && made < 10) {
            scene.grow(100);
            scene.detector.update();
            ++made;
        }
        QCOMPARE(made, calls);
    }

    void aChannelThatComesMeanwhileTakesPart()
    {
        TScene scene(6);
        scene.detector.cues = {{0, 500, 900}, {0, 700, 900}, {1, 500, 1000}, {2, 501, 1000}, {3, 502, 1100}};
        scene.run(8.0);
        QCOMPARE(scene.log.beats.front().fiducial(2, TBeat::takesPart), 1.0);
        QCOMPARE(scene.log.beats.front().fiducial(3, TBeat::takesPart), 1.0);
        QCOMPARE(scene.positions().front(), 501);
    }

    void atTheEndNothingWaits()
    {
        TScene scene(6);
        scene.detector.cues = {{0, 500, 600}, {1, 500, 600}};
        scene.run(4.0);
        QVERIFY(scene.log.beats.empty());
        scene.detector.finish();
        QCOMPARE(scene.positions(), QVector<int>({500}));
    }

    void aBeatNeedsAShareOfTheChannels_data()
    {
        QTest::addColumn<int>("channels");
        QTest::addColumn<QVector<int>>("seeing");
        QTest::addColumn<bool>("passes");
        using TSeeing = QVector<int>;
        QTest::newRow("one of 5") << 5 << TSeeing{0} << true;
        QTest::newRow("one of 6") << 6 << TSeeing{0} << false;
        QTest::newRow("V4 to V6 of 12") << 12 << TSeeing{9, 10, 11} << true;
        QTest::newRow("a limb lead of 12") << 12 << TSeeing{0} << false;
        QTest::newRow("V1 to V3 of 12") << 12 << TSeeing{6, 7, 8} << false;
        QTest::newRow("V1 to V3 and one more") << 12 << TSeeing{5, 6, 7, 8} << true;
    }

    void aBeatNeedsAShareOfTheChannels()
    {
        QFETCH(int, channels);
        QFETCH(QVector<int>, seeing);
        QFETCH(bool, passes);
        TScene scene(channels);
        for (const int channel : seeing)
            scene.detector.cues.insert(scene.detector.cues.end(), {{channel, 500, 600}, {channel, 700, 800}});
        scene.run(8.0);
        QCOMPARE(scene.log.beats.size(), passes ? 1U : 0U);
    }

    void candidatesWithoutAComplexMakeNoBeat()
    {
        TScene scene(2);
        scene.detector.cues = {{0, 500, 600, false}, {1, 500, 600, false}, {0, 700, 800}, {1, 700, 800}};
        scene.everyChannel(900);
        scene.run(8.0);
        QCOMPARE(scene.positions(), QVector<int>({700}));
    }

    void intervalsCountFromBeatToBeat()
    {
        TScene scene(1);
        for (const int position : {500, 700, 925})
            scene.everyChannel(position);
        scene.run(8.0);
        scene.detector.finish();
        QCOMPARE(scene.log.beats[0].value(TBeat::rr), 0.0);
        QCOMPARE(scene.log.beats[1].value(TBeat::rr), 0.8);
        QVERIFY(std::abs(scene.log.beats[2].value(TBeat::rr) - 0.9) < 1e-12);
    }

    void aPrematureBeatOfFewChannelsIsHeldUntilTheNext()
    {
        TScene scene(4);
        for (int i = 0; i < 8; ++i)
            scene.everyChannel(500 + 200 * i);
        // 0.56 s after the last beat, seen by two of four, and a pause behind it.
        for (const int channel : {0, 1})
            scene.detector.cues.push_back({channel, 2040, 2300});
        scene.everyChannel(2300);
        scene.everyChannel(2500);
        scene.run(20.0);
        QCOMPARE(scene.log.beats.size(), 10U);
        QCOMPARE(scene.log.beats[8].number(), 8);
        QVERIFY(scene.log.beats[8].valid());
        QVERIFY(std::abs(scene.log.beats[9].value(TBeat::rr) - 1.04) < 1e-12);
    }

    void aHeldBeatWithoutAPauseBehindItIsRejected()
    {
        TScene scene(4);
        for (int i = 0; i < 12; ++i)
            scene.everyChannel(500 + 200 * i);
        for (const int channel : {0, 1})
            scene.detector.cues.push_back({channel, 2040, 2150});
        scene.run(20.0);
        const auto rejected = std::find_if(scene.log.beats.begin(), scene.log.beats.end(),
                                           [](const TBeat& beat) { return !beat.valid(); });
        QVERIFY(rejected != scene.log.beats.end());
        QCOMPARE(rejected->number(), -1);
        QCOMPARE(rejected->value(TBeat::beatTime), 2040.0 / rate);
        QCOMPARE((rejected + 1)->number(), 8);
        QCOMPARE((rejected + 1)->value(TBeat::rr), 0.8);
    }

    void aHeldBeatIsForgottenWhenAnotherFollowsClosely()
    {
        TScene scene(4);
        for (int i = 0; i < 8; ++i)
            scene.everyChannel(500 + 200 * i);
        for (const int channel : {0, 1})
            scene.detector.cues.push_back({channel, 2040, 2300});
        scene.everyChannel(2077, 2300);
        scene.everyChannel(2300);
        scene.run(20.0);
        scene.detector.finish();
        QVERIFY(!scene.positions().contains(2040));
        QVERIFY(scene.positions().contains(2077));
    }

    void clippedAndFlatChannelsHaveNoVote()
    {
        constexpr int channels = 6;
        TInt16Signal signal(4096, 81920, channels, rate);
        TDetector detector;
        TBeatLog log;
        detector.addListener(&log);
        detector.reset(&signal, 0.0, 0.0);
        ecg::TRows rows(channels, ecg::TRow(6 * rate));
        for (int i = 0; i < 6 * rate; ++i) {
            rows[0][i] = 1000.0 * std::sin(2.0 * M_PI * i / rate);
            for (int channel = 1; channel < 4; ++channel)
                rows[channel][i] = 12345.0;
            for (int channel = 4; channel < 6; ++channel)
                rows[channel][i] = std::clamp(60000.0 * std::sin(8.0 * M_PI * i / rate), -32768.0, 32767.0);
        }
        ecg::append(signal, rows, 0, 6 * rate);
        // Without the vote of the others one channel of six would be too few.
        detector.cues = {{0, 500, 600}, {1, 501, 600}, {4, 502, 600}, {1, 800, 900}};
        detector.update();
        detector.finish();
        QCOMPARE(log.beats.size(), 1U);
        QCOMPARE(log.beats[0].fiducial(0, TBeat::takesPart), 1.0);
        QCOMPARE(log.beats[0].fiducial(1, TBeat::takesPart), 0.0);
        QCOMPARE(log.beats[0].fiducial(4, TBeat::takesPart), 0.0);
        QCOMPARE(log.beats[0].fiducial(4, TBeat::qrsType), 0.0);
    }

    void aSingleChannelAlwaysHasItsVote()
    {
        TInt16Signal signal(4096, 81920, 1, rate);
        TDetector detector;
        TBeatLog log;
        detector.addListener(&log);
        detector.reset(&signal, 0.0, 0.0);
        ecg::append(signal, {ecg::TRow(1000, 0.0)}, 0, 1000);
        detector.cues = {{0, 500, 600}};
        detector.finish();
        QCOMPARE(log.beats.size(), 1U);
    }
};

QTEST_GUILESS_MAIN(BeatDetectorTest)
#include "BeatDetectorTest.moc"
