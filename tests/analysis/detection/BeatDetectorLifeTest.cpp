#include "analysis/beats/TBeatRing.h"
#include "analysis/detection/ScriptedDetector.h"

#include <QtTest>

#include <functional>

using namespace scripted;

namespace {

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

class BeatDetectorLifeTest : public QObject
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
        for (const TDetector::TCall& call : scene.detector.calls) {
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
        TDetector detector;
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

QTEST_GUILESS_MAIN(BeatDetectorLifeTest)
#include "BeatDetectorLifeTest.moc"
