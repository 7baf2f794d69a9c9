#include "analysis/DrawnEcg.h"
#include "analysis/beats/TBeatRing.h"
#include "analysis/detection/BeatLog.h"
#include "analysis/detection/TBeatDetector.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

#include <functional>
#include <set>

namespace {

constexpr int rate = 250;

/// Candidates at given places, each handed out by the call that covers `knownAt`.
class TScriptedDetector : public TBeatDetector
{
public:
    struct TCue
    {
        int channel;
        int position;
        int knownAt;
        bool hasQrs = true;
    };

    int detectChannel(int channel, int from, int to, std::vector<TChannelBeat>& out) override
    {
        calls.push_back({channel, from, to});
        const std::size_t before = out.size();
        for (const TCue& cue : cues) {
            if (cue.channel != channel || cue.knownAt < from || cue.knownAt >= to)
                continue;
            TChannelBeat beat;
            beat.rPosition = beat.rPeak = cue.position;
            beat.qrsType = cue.hasQrs ? 1 : 0;
            out.push_back(beat);
        }
        return int(out.size() - before);
    }

    struct TCall
    {
        int channel;
        int from;
        int to;
    };
    std::vector<TCue> cues;
    std::vector<TCall> calls;
};

/// A recording whose every channel is fit to vote, and a detector on it.
struct TScene
{
    explicit TScene(int channels, double startTime = 0.0, double endTime = 0.0)
        : signal(4096, 81920, channels, rate)
    {
        detector.addListener(&log);
        detector.reset(&signal, startTime, endTime);
    }

    /// All the channels see a complex at that place, known at `knownAt` or 1 s later.
    void everyChannel(int position, int knownAt = -1)
    {
        for (int channel = 0; channel < signal.channelCount(); ++channel)
            detector.cues.push_back({channel, position, knownAt < 0 ? position + rate : knownAt});
    }
    void grow(int samples)
    {
        ecg::TRow row(samples);
        for (int i = 0; i < samples; ++i)
            row[i] = 1000.0 * std::sin(2.0 * M_PI * (signal.sampleCount() + i) / rate);
        ecg::append(signal, ecg::TRows(signal.channelCount(), row), 0, samples);
    }
    void run(double seconds, int step = 100)
    {
        for (int end = signal.sampleCount() + int(seconds * rate); signal.sampleCount() < end;) {
            grow(step);
            detector.update();
        }
    }
    QVector<int> positions() const
    {
        QVector<int> result;
        for (const TBeat& beat : log.beats)
            result << signal.indexOf(beat.value(TBeat::beatTime));
        return result;
    }

    TInt16Signal signal;
    TScriptedDetector detector;
    TBeatLog log;
};

/// Does something when it is told of a beat.
struct TActor : TBeatListener
{
    explicit TActor(std::function<void()> action) : act(std::move(action)) {}
    void beatFound(const TBeat&) override
    {
        ++told;
        if (act)
            act();
    }
    std::function<void()> act;
    int told = 0;
};

} // namespace

class BeatDetectorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDetectorStaysASecondBehindTheSignal()
    {
        TScene scene(2);
        scene.grow(rate + 49);
        scene.detector.update();
        QCOMPARE(scene.detector.position(), 0);
        QVERIFY(scene.detector.calls.empty());
        scene.grow(1);
        scene.detector.update();
        QCOMPARE(scene.detector.position(), 50);
        QCOMPARE(scene.detector.lag(), rate);
        QCOMPARE(scene.detector.calls.size(), 2U);
        QCOMPARE(scene.detector.calls[1].channel, 1);
        QCOMPARE(scene.detector.calls[1].from, 0);
        QCOMPARE(scene.detector.calls[1].to, 50);
        scene.detector.update();
        QCOMPARE(scene.detector.calls.size(), 2U);
    }

    void callsFollowEachOtherAndNoneIsLongerThanTwoSeconds()
    {
        TScene scene(1);
        scene.grow(60 * rate);
        scene.detector.update();
        int expected = 0;
        for (const TScriptedDetector::TCall& call : scene.detector.calls) {
            QCOMPARE(call.from, expected);
            QVERIFY(call.to - call.from <= 2 * rate);
            expected = call.to;
        }
        QCOMPARE(expected, 59 * rate);
        QCOMPARE(scene.detector.calls.size(), 30U);
        scene.detector.calls.clear();
        scene.detector.finish();
        QCOMPARE(scene.detector.calls.size(), 1U);
        QCOMPARE(scene.detector.calls[0].from, 59 * rate);
        QCOMPARE(scene.detector.calls[0].to, 60 * rate);
        QCOMPARE(scene.detector.position(), 60 * rate);
    }

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

    void onlyBeatsOfTheTimeAskedForAreMade()
    {
        TScene scene(1, 2.0, 4.0);
        QCOMPARE(scene.detector.position(), 500);
        for (const int position : {499, 500, 750, 1000, 1001, 1200, 1400})
            scene.everyChannel(position, 1500);
        scene.run(10.0);
        scene.detector.finish();
        QCOMPARE(scene.positions(), QVector<int>({500, 750, 1000}));
        QCOMPARE(scene.log.beats[0].number(), 0);
    }

    void aStartBeyondEveryRecordingFindsNothing_data()
    {
        QTest::addColumn<double>("startTime");
        QTest::newRow("behind the end") << 1000.0;
        QTest::newRow("behind every index") << 1e12;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    }

    void aStartBeyondEveryRecordingFindsNothing()
    {
        QFETCH(double, startTime);
        TScene scene(2, startTime);
        scene.everyChannel(500);
        scene.run(6.0);
        scene.detector.finish();
        QVERIFY(scene.log.beats.empty());
    }

    void aNegativeStartIsTheBeginning()
    {
        TScene scene(1, -5.0);
        scene.everyChannel(200);
        scene.run(6.0);
        scene.detector.finish();
        QCOMPARE(scene.positions(), QVector<int>({200}));
    }

    void beatsGoToTheStoreAndAreToldWithTheirPlace()
    {
        TScene scene(1);
        TBeatRing store(1);
        store.add(TBeat(1));
        scene.detector.setBeatStore(&store);
        for (const int position : {500, 700, 900})
            scene.everyChannel(position);
        scene.run(8.0);
        QCOMPARE(store.count(), 3);
        QCOMPARE(scene.log.beats.size(), 2U);
        QCOMPARE(scene.log.beats[0].index(), 1);
        QCOMPARE(scene.log.beats[1].index(), 2);
        TBeat stored;
        QVERIFY(store.beat(2, stored));
        QCOMPARE(stored.value(TBeat::beatTime), 700.0 / rate);
        scene.detector.setBeatStore(nullptr);
        scene.detector.finish();
        QCOMPARE(store.count(), 3);
        QCOMPARE(scene.log.beats.size(), 3U);
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
        TScriptedDetector detector;
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
        TScriptedDetector detector;
        TBeatLog log;
        detector.addListener(&log);
        detector.reset(&signal, 0.0, 0.0);
        ecg::append(signal, {ecg::TRow(1000, 0.0)}, 0, 1000);
        detector.cues = {{0, 500, 600}};
        detector.finish();
        QCOMPARE(log.beats.size(), 1U);
    }

    void listenersAreToldInTheOrderOfTheirComing()
    {
        TScene scene(1);
        QString order;
        TActor first([&] { order += QLatin1Char('1'); });
        TActor second([&] { order += QLatin1Char('2'); });
        scene.detector.addListener(&first);
        scene.detector.addListener(&second);
        scene.detector.addListener(&first);
        scene.detector.addListener(nullptr);
        scene.everyChannel(500);
        scene.run(6.0);
        scene.detector.finish();
        QCOMPARE(order, QStringLiteral("12"));
    }

    void aListenerMayLeaveWhileItIsTold()
    {
        TScene scene(1);
        TActor leaving({}), other({});
        leaving.act = [&] { scene.detector.removeListener(&leaving); };
        scene.detector.addListener(&leaving);
        scene.detector.addListener(&other);
        for (const int position : {500, 700})
            scene.everyChannel(position);
        scene.run(6.0);
        scene.detector.finish();
        QCOMPARE(leaving.told, 1);
        QCOMPARE(other.told, 2);
    }

    void aListenerThatWasTakenAwayIsNotToldAnyMore()
    {
        TScene scene(1);
        TActor removing({}), removed({});
        removing.act = [&] { scene.detector.removeListener(&removed); };
        scene.detector.addListener(&removing);
        scene.detector.addListener(&removed);
        scene.everyChannel(500);
        scene.run(6.0);
        scene.detector.finish();
        QCOMPARE(removing.told, 1);
        QCOMPARE(removed.told, 0);
    }

    void aListenerAddedWhileOthersAreToldHearsTheNextBeat()
    {
        TScene scene(1);
        TActor adding({}), added({});
        adding.act = [&] { scene.detector.addListener(&added); };
        scene.detector.addListener(&adding);
        for (const int position : {500, 700, 900})
            scene.everyChannel(position);
        scene.run(8.0);
        scene.detector.finish();
        QCOMPARE(adding.told, 3);
        QCOMPARE(added.told, 2);
    }

    void resetForgetsWhatWaitsAndNumbersFromZero()
    {
        TScene scene(1);
        for (const int position : {500, 700, 900, 2000, 2200, 2400})
            scene.everyChannel(position);
        scene.run(6.2);
        QCOMPARE(scene.positions(), QVector<int>({500, 700}));
        scene.log.beats.clear();
        scene.detector.reset(&scene.signal, 6.0, 0.0);
        scene.run(8.0);
        QCOMPARE(scene.positions(), QVector<int>({2000, 2200}));
        QCOMPARE(scene.log.beats[0].number(), 0);
        QCOMPARE(scene.log.beats[0].value(TBeat::rr), 0.0);
    }

    void withoutASignalNothingHappens()
    {
        TScriptedDetector detector;
        TBeatLog log;
        detector.addListener(&log);
        detector.update();
        detector.finish();
        detector.clear();
        QVERIFY(!detector.signal());

        TScene scene(1);
        scene.everyChannel(500);
        scene.run(4.0);
        scene.detector.clear();
        QVERIFY(!scene.detector.signal());
        QCOMPARE(scene.detector.position(), 0);
        scene.detector.update();
        scene.detector.finish();
        QVERIFY(scene.log.beats.empty());
    }

    void anEmptySignalHasNoBeats()
    {
        for (const int channels : {0, 1, 16}) {
            TScene scene(channels);
            scene.detector.update();
            scene.detector.finish();
            scene.grow(1);
            scene.detector.finish();
            QVERIFY(scene.log.beats.empty());
        }
    }
};

QTEST_GUILESS_MAIN(BeatDetectorTest)
#include "BeatDetectorTest.moc"
