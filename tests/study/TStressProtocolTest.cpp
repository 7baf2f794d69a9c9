#include "study/TStressProtocol.h"
#include "study/TRampProtocol.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include <limits>

namespace {

QByteArray compact(const TStressProtocol& protocol)
{
    return QJsonDocument(protocol.toJson()).toJson(QJsonDocument::Compact);
}

TStressProtocol parsed(const QByteArray& json)
{
    return TStressProtocol::fromJson(QJsonDocument::fromJson(json).object());
}

TStressProtocol threeStages()
{
    TStressProtocol protocol("Short", TProtocolType::Treadmill);
    protocol.addStage(TStagePhase::Rest, 30.0);
    protocol.addStage(TStagePhase::Exercise, 60.0, 2.7, 10.0);
    protocol.addStage(TStagePhase::Recovery, 90.0);
    return protocol;
}

} // namespace

class TStressProtocolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewProtocolIsANamelessTreadmillWithoutStages()
    {
        const TStressProtocol protocol;
        QCOMPARE(protocol.name(), QByteArray());
        QCOMPARE(protocol.type(), TProtocolType::Treadmill);
        QCOMPARE(protocol.stageCount(), 0);
        QVERIFY(protocol.isStaged());
        QVERIFY(!protocol.isRamp());
    }

    void theStageInForceChangesOnTheBoundary_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<int>("stage");
        QTest::newRow("before the start") << -0.001 << -1;
        QTest::newRow("start") << 0.0 << 0;
        QTest::newRow("just before the first boundary") << 29.999 << 0;
        QTest::newRow("first boundary") << 30.0 << 1;
        QTest::newRow("second boundary") << 90.0 << 2;
        QTest::newRow("just before the end") << 179.999 << 2;
        QTest::newRow("end") << 180.0 << -1;
        QTest::newRow("long past the end") << 1e9 << -1;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << -1;
    }

    void theStageInForceChangesOnTheBoundary()
    {
        QFETCH(double, seconds);
        QFETCH(int, stage);
        QCOMPARE(threeStages().stageAt(seconds), stage);
    }

    void aStageWithoutDurationIsNeverInForce()
    {
        TStressProtocol protocol = threeStages();
        protocol.stage(0).setDuration(0.0);
        QCOMPARE(protocol.stageAt(0.0), 1);
        QCOMPARE(TStressProtocol().stageAt(0.0), -1);
    }

    void stagesAreInsertedWhereAsked()
    {
        TStressProtocol protocol = threeStages();
        protocol.insertStage(1).setDuration(1.0);
        protocol.insertStage(99).setDuration(2.0);
        protocol.insertStage(-5).setDuration(3.0);
        QCOMPARE(protocol.stageCount(), 6);
        const double durations[] = {3.0, 30.0, 1.0, 60.0, 90.0, 2.0};
        for (int i = 0; i < 6; ++i)
            QCOMPARE(protocol.stage(i).duration(), durations[i]);
        QCOMPARE(protocol.stage(2).phase(), TStagePhase::Rest);
        QCOMPARE(protocol.stage(3).value("speed"), 2.7);
    }

    void onlyStagesThatAreThereAreRemoved()
    {
        TStressProtocol protocol = threeStages();
        protocol.removeStage(-1);
        protocol.removeStage(3);
        QCOMPARE(protocol.stageCount(), 3);
        protocol.removeStage(1);
        QCOMPARE(protocol.stageCount(), 2);
        QCOMPARE(protocol.stage(1).phase(), TStagePhase::Recovery);
    }

    void eachTypeWritesItsOwnLoad_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("json");
        const QByteArray head = R"({"name":"A","stages":[{)";
        const QByteArray phase = R"("phase":"exercise")";
        QTest::newRow("treadmill") << 0
                                   << head + R"("duration":60,"incline":2.5,)" + phase +
                                          R"(,"speed":4}],"type":"treadmill"})";
        QTest::newRow("ergometer") << 1
                                   << head + R"("duration":60,)" + phase +
                                          R"(,"workload":25}],"type":"ergometer"})";
        QTest::newRow("ecg") << 2 << head + R"("duration":60,)" + phase + R"(}],"type":"ecg"})";
        QTest::newRow("tilt test") << 3 << head + R"("duration":60,)" + phase + R"(}],"type":"tiltTest"})";
        QTest::newRow("pharmacologic")
            << 4 << head + R"("dose":0.5,"duration":60,)" + phase + R"(}],"type":"pharmacologic"})";
    }

    void eachTypeWritesItsOwnLoad()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, json);
        TStressProtocol protocol("A", static_cast<TProtocolType>(type));
        TProtocolStage& stage = protocol.addStage(TStagePhase::Exercise, 60.0);
        stage.setValue("speed", 4.0);
        stage.setValue("incline", 2.5);
        stage.setValue("workload", 25.0);
        stage.setValue("dose", 0.5);
        QCOMPARE(compact(protocol), json);
        const TStressProtocol read = parsed(json);
        QCOMPARE(read.type(), protocol.type());
        QCOMPARE(compact(read), json);
    }

    void thePhasesHaveTheirWords()
    {
        TStressProtocol protocol("P", TProtocolType::Ecg);
        protocol.addStage(TStagePhase::Rest, 1.0);
        protocol.addStage(TStagePhase::Exercise, 2.0);
        protocol.addStage(TStagePhase::Recovery, 3.0);
        const QByteArray json = R"({"name":"P","stages":[{"duration":1,"phase":"rest"},)"
                                R"({"duration":2,"phase":"exercise"},{"duration":3,"phase":"recovery"}],)"
                                R"("type":"ecg"})";
        QCOMPARE(compact(protocol), json);
        QVERIFY(parsed(json) == protocol);
    }

    void durationsAreCutToWholeSeconds_data()
    {
        QTest::addColumn<double>("duration");
        QTest::addColumn<int>("stored");
        QTest::newRow("half a second") << 90.5 << 90;
        QTest::newRow("nearly the next") << 90.999 << 90;
        QTest::newRow("negative") << -3.0 << 0;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 0;
        QTest::newRow("endless") << std::numeric_limits<double>::infinity() << 2147483647;
    }

    void durationsAreCutToWholeSeconds()
    {
        QFETCH(double, duration);
        QFETCH(int, stored);
        TStressProtocol protocol;
        protocol.addStage(TStagePhase::Rest, duration);
        const QJsonArray stages = protocol.toJson().value(QLatin1String("stages")).toArray();
        QCOMPARE(stages.at(0).toObject().value(QLatin1String("duration")).toInt(-1), stored);
    }

    void loadsSetInMilesAreStoredInKilometres()
    {
        TStressProtocol protocol("M", TProtocolType::Treadmill);
        protocol.addStage(TStagePhase::Exercise, 60.0).setValue("speed", 5.0, "mph");
        QCOMPARE(compact(protocol), QByteArray(R"({"name":"M","stages":[{"duration":60,"incline":0,)"
                                               R"("phase":"exercise","speed":8}],"type":"treadmill"})"));
    }

    void unknownWordsAndMissingKeysLeaveTheDefaults()
    {
        const TStressProtocol protocol =
            parsed(R"({"name":"X","type":"bicycle","stages":[{"phase":"sleep"},{"duration":"60"},7,)"
                   R"({"phase":"exercise","duration":60.5,"speed":"fast","incline":3}]})");
        QCOMPARE(protocol.type(), TProtocolType::Treadmill);
        QCOMPARE(protocol.stageCount(), 4);
        for (int i = 0; i < 3; ++i)
            QVERIFY(protocol.stage(i).phase() == TStagePhase::Rest && protocol.stage(i).duration() == 0.0);
        QCOMPARE(protocol.stage(3).phase(), TStagePhase::Exercise);
        // A duration that is no whole number was not written by us.
        QCOMPARE(protocol.stage(3).duration(), 0.0);
        QCOMPARE(protocol.stage(3).value("speed"), 0.0);
        QCOMPARE(protocol.stage(3).value("incline"), 3.0);
        QVERIFY(parsed("{}") == TStressProtocol());
    }

    void wordsAreReadInTheirOwnCaseOnly()
    {
        QCOMPARE(parsed(R"({"type":"Ergometer"})").type(), TProtocolType::Treadmill);
        QCOMPARE(parsed(R"({"type":"ergometer"})").type(), TProtocolType::Ergometer);
    }

    void theTiltTestIsFixed()
    {
        const TStressProtocol tilt = TStressProtocol::tiltTest();
        QCOMPARE(tilt.name(), QByteArray("Tilt test"));
        QCOMPARE(static_cast<int>(tilt.type()), 3);
        QCOMPARE(tilt.stageCount(), 13);
        QCOMPARE(tilt.stage(0).phase(), TStagePhase::Rest);
        QCOMPARE(tilt.stage(0).duration(), 600.0);
        for (int i = 1; i < 13; ++i) {
            QCOMPARE(tilt.stage(i).phase(), TStagePhase::Recovery);
            QCOMPARE(tilt.stage(i).duration(), 180.0);
        }
        QVERIFY(!compact(tilt).contains("speed"));
        QCOMPARE(tilt.stageAt(600.0 + 12 * 180.0), -1);
    }

    void aRampRunsStraightFromStartToEnd()
    {
        TRampProtocol ramp;
        QVERIFY(ramp.isRamp());
        QVERIFY(!ramp.isStaged());
        ramp.durationMinutes = 10;
        ramp.initialSpeed = 2.0;
        ramp.finalSpeed = 8.0;
        ramp.initialIncline = 10.0;
        ramp.finalIncline = 4.0;
        QCOMPARE(ramp.speedAt(0.0), 2.0);
        QCOMPARE(ramp.speedAt(300.0), 5.0);
        QCOMPARE(ramp.speedAt(600.0), 8.0);
        QCOMPARE(ramp.inclineAt(0.0), 10.0);
        QCOMPARE(ramp.inclineAt(150.0), 8.5);
        QCOMPARE(ramp.inclineAt(600.0), 4.0);
    }

    void aRampWithoutDurationStandsAtItsEnd()
    {
        TRampProtocol ramp;
        ramp.finalSpeed = 6.0;
        QCOMPARE(ramp.speedAt(0.0), 6.0);
        QCOMPARE(ramp.inclineAt(10.0), 0.0);
    }
};

QTEST_GUILESS_MAIN(TStressProtocolTest)
#include "TStressProtocolTest.moc"
