#include "recorder/RecorderSession.h"
#include "study/TEcgFile.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

const QString linkFailure = QStringLiteral("failed: Communication with ergometer/treadmill device failed.");

} // namespace

/// The way of an examination through its stages: by time, by command and with what may fail.
class RecorderStagesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachStageLastsItsTimeAndTheLastOneGoesOn()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        QCOMPARE(session.study->protocol()->name(), QByteArray("Short"));
        QCOMPARE(session.study->protocol()->stageCount(), 0);
        session.run(9.9);
        QCOMPARE(session.recorder->stageRun().stageIndex(), 0);
        session.run(0.1);
        QCOMPARE(session.recorder->stageRun().stageIndex(), 1);
        session.run(30.0);
        QCOMPARE(session.recorder->stageRun().stageIndex(), 4);
        session.run(47.0);
        QCOMPARE(session.recorder->stageRun().stageIndex(), 4);
        QCOMPARE(session.log.count(QStringLiteral("stage")), 4);
        session.recorder->finishStudy();
        QCOMPARE(session.stages(), (QList<double>{10.0, 10.0, 10.0, 10.0, 47.0}));
        for (int i = 0; i < 5; ++i) {
            TProtocolStage planned = protocol.stage(i);
            planned.setDuration(session.stages().at(i));
            QCOMPARE(session.study->protocol()->stage(i), planned);
        }
        QCOMPARE(session.list("BPMPerStage").size(), std::size_t{5});
    }

    void aCommandEndsAStageEarlyAndTheNextCountsFromTheWholeSecond()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(7.7);
        session.recorder->nextStage();
        QCOMPARE(session.recorder->stageRun().stageIndex(), 1);
        QCOMPARE(session.recorder->stageRun().stageStart(), 7);
        session.run(9.2);
        QCOMPARE(session.recorder->stageRun().stageIndex(), 1);
        session.run(0.1);
        QCOMPARE(session.recorder->stageRun().stageIndex(), 2);
        QCOMPARE(session.stages(), (QList<double>{7.7, 10.0}));
    }

    void aCommandThatEndsTheFirstStageKeepsTheReference_data()
    {
        QTest::addColumn<bool>("toRecovery");
        QTest::newRow("next stage") << false;
        QTest::newRow("recovery") << true;
    }

    void aCommandThatEndsTheFirstStageKeepsTheReference()
    {
        QFETCH(bool, toRecovery);
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(8.0);
        QVERIFY(!session.recorder->averageBeat().hasReference());
        if (toRecovery)
            session.recorder->goToRecovery();
        else
            session.recorder->nextStage();
        QVERIFY(session.recorder->averageBeat().hasReference());
        const std::vector<double> reference = session.recorder->averageBeat().reference(10).values();
        QCOMPARE(session.recorder->averageBeat().complex(10).values(), reference);
        session.run(25.0);
        QCOMPARE(session.recorder->averageBeat().reference(10).values(), reference);
    }

    void theLastStageHasNoNext()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(40.0);
        session.log.clear();
        session.recorder->nextStage();
        QVERIFY(session.log.isEmpty());
        QCOMPARE(session.recorder->stageRun().stageIndex(), 4);
    }

    void aStageShorterThanFiveSecondsBelongsToTheOneBefore()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(10.0);
        session.run(4.9);
        session.recorder->nextStage();
        QCOMPARE(session.stages(), QList<double>{14.9});
        QCOMPARE(session.list("METSPerStage"), std::vector<double>{1.0});
        QCOMPARE(session.recorder->stageRun().stageIndex(), 2);
        QCOMPARE(session.recorder->stageRun().stageStart(), 14);
        session.run(4.1);
        session.recorder->nextStage();
        // 5.0 s from the whole second: a stage of its own.
        QCOMPARE(session.stages(), (QList<double>{14.9, 5.0}));
        QCOMPARE(session.study->protocol()->stage(1).value(TProtocolStage::speedKey), 5.0);
        session.run(2.0);
        session.recorder->finishStudy();
        QCOMPARE(session.stages(), (QList<double>{14.9, 7.0}));
        QCOMPARE(session.list("BPMPerStage").size(), std::size_t{2});
        QCOMPARE(session.log.count(QStringLiteral("stage")), 4);
    }

    void aShortFirstStageStandsForItself()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(2.0);
        session.recorder->nextStage();
        QCOMPARE(session.stages(), QList<double>{2.0});
        QCOMPARE(session.list("METSPerStage"), std::vector<double>{1.0});
    }

    void nothingOfAShortStageGoesIntoTheNext()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(10.0);
        session.run(4.0);
        session.recorder->addBloodPressure(13.5, 150.0, 90.0);
        QVERIFY(session.recorder->smoothedBpm() > 0.0);
        session.recorder->nextStage();
        QCOMPARE(session.recorder->smoothedBpm(), 0.0);
        session.run(10.0);
        QCOMPARE(session.stages(), (QList<double>{14.0, 10.0}));
        // Its pressure belongs to the stage that took its time.
        QCOMPARE(session.list("sysBPPerStage"), (std::vector<double>{150.0, 0.0}));
        QCOMPARE(session.list("DPPerStage").at(0), 150.0 * session.list("BPMPerStage").at(0));
        QCOMPARE(session.trend("sysBPTrend").count(), 1);
    }

    void aPressureForATimeInAShortStageGoesToTheStageThatTookIt()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(10.0);
        session.run(4.0);
        session.recorder->nextStage();
        session.run(2.0);
        session.recorder->addBloodPressure(13.0, 150.0, 90.0);
        QCOMPARE(session.list("sysBPPerStage"), std::vector<double>{150.0});
        QCOMPARE(session.list("diaBPPerStage"), std::vector<double>{90.0});
        session.run(8.0);
        QCOMPARE(session.stages(), (QList<double>{14.0, 10.0}));
        QCOMPARE(session.list("sysBPPerStage"), (std::vector<double>{150.0, 0.0}));
    }

    void aShortStageWithoutPressureLeavesThatOfTheStageThatTookIt()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(9.0);
        session.recorder->addBloodPressure(9.0, 130.0, 85.0);
        session.run(1.0);
        const std::vector<double> products = session.list("DPPerStage");
        session.run(4.0);
        session.recorder->nextStage();
        QCOMPARE(session.stages(), QList<double>{14.0});
        QCOMPARE(session.list("sysBPPerStage"), std::vector<double>{130.0});
        QCOMPARE(session.list("diaBPPerStage"), std::vector<double>{85.0});
        QCOMPARE(session.list("DPPerStage"), products);
    }

    void aPressureKnowsWhenAStageReallyEnded()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(7.8);
        session.recorder->nextStage();
        session.run(7.8);
        session.recorder->nextStage();
        session.run(2.0);
        // The stages count from whole seconds: 7.8 and 8.6 s long, the second one ended at 15.6 s.
        session.recorder->addBloodPressure(7.7, 120.0, 70.0);
        session.recorder->addBloodPressure(15.5, 140.0, 75.0);
        session.recorder->addBloodPressure(16.0, 160.0, 80.0);
        QCOMPARE(session.list("sysBPPerStage"), (std::vector<double>{120.0, 140.0}));
    }

    void theEquipmentIsStoppedWhenARunningExaminationGoes()
    {
        FakeEquipment treadmill;
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol, &treadmill);
        session.start();
        session.run(11.0);
        treadmill.takeCalls();
        session.recorder.reset();
        QCOMPARE(treadmill.takeCalls(), QStringLiteral("stop"));
    }

    void recoveryIsReachedFromAnyStage_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::newRow("rest") << 0 << 3;
        QTest::newRow("exercise") << 1 << 3;
        QTest::newRow("last exercise") << 2 << 3;
        QTest::newRow("recovery") << 3 << 3;
        QTest::newRow("last recovery") << 4 << 4;
    }

    void recoveryIsReachedFromAnyStage()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        FakeEquipment treadmill;
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol, &treadmill);
        session.start();
        session.run(10.0 * from + 6.0);
        QCOMPARE(session.recorder->stageRun().stageIndex(), from);
        treadmill.takeCalls();
        session.log.clear();
        session.recorder->goToRecovery();
        QCOMPARE(session.recorder->stageRun().stageIndex(), to);
        const bool moved = from != to;
        QCOMPARE(session.log.size(), moved ? 1 : 0);
        QCOMPARE(treadmill.takeCalls(), moved ? QStringLiteral("speed 2, incline 0, commit") : QString());
        QCOMPARE(session.stages().size(), moved ? from + 1 : from);
    }

    void aProtocolWithoutRecoveryStaysWhereItIs()
    {
        TStressProtocol protocol("No recovery", TProtocolType::Treadmill);
        protocol.addStage(TStagePhase::Rest, 10.0, 0.0, 0.0);
        protocol.addStage(TStagePhase::Exercise, 10.0, 2.0, 0.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(6.0);
        session.recorder->goToRecovery();
        QCOMPARE(session.recorder->stageRun().stageIndex(), 0);
        QCOMPARE(session.log, QStringList{QStringLiteral("started")});
    }

    void aProtocolWithoutStagesIsRecordedLikeNone()
    {
        const TStressProtocol protocol("Empty", TProtocolType::Treadmill);
        FakeEquipment treadmill;
        RecorderSession session(&protocol, &treadmill);
        session.start();
        session.run(6.0);
        session.recorder->nextStage();
        session.recorder->goToRecovery();
        session.recorder->addBloodPressure(5.0, 120.0, 80.0);
        session.recorder->finishStudy();
        QCOMPARE(treadmill.takeCalls(), QStringLiteral("start, stop"));
        QCOMPARE(session.log, (QStringList{QStringLiteral("started"), QStringLiteral("finished")}));
        QCOMPARE(session.study->protocol()->stageCount(), 0);
    }

    void commandsBeforeAndAfterTheStudyDoNothing()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        const auto commands = [&session] {
            session.recorder->nextStage();
            session.recorder->goToRecovery();
            session.recorder->addBloodPressure(1.0, 120.0, 80.0);
        };
        session.run(1.0);
        commands();
        session.start();
        session.run(7.0);
        session.recorder->finishStudy();
        commands();
        QCOMPARE(session.stages(), QList<double>{7.0});
        QCOMPARE(session.trend("sysBPTrend").count(), 0);
        QCOMPARE(session.list("sysBPPerStage"), std::vector<double>{0.0});
    }

    void aPressureGoesToTheStageThatHoldsItsTime()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(25.0);
        const std::vector<double> bpm = session.list("BPMPerStage");
        session.recorder->addBloodPressure(9.9, 120.0, 70.0);
        session.recorder->addBloodPressure(10.0, 140.0, 75.0);
        session.recorder->addBloodPressure(24.0, 160.0, 80.0);
        QCOMPARE(session.list("sysBPPerStage"), (std::vector<double>{120.0, 140.0}));
        QCOMPARE(session.list("diaBPPerStage"), (std::vector<double>{70.0, 75.0}));
        QCOMPARE(session.list("DPPerStage"), (std::vector<double>{120.0 * bpm[0], 140.0 * bpm[1]}));
        session.run(5.0);
        QCOMPARE(session.list("sysBPPerStage"), (std::vector<double>{120.0, 140.0, 160.0}));
        session.run(30.0);
        // Past all that was planned: the last stage still runs.
        session.recorder->addBloodPressure(59.0, 130.0, 72.0);
        session.recorder->finishStudy();
        QCOMPARE(session.list("sysBPPerStage"), (std::vector<double>{120.0, 140.0, 160.0, 0.0, 130.0}));
        QCOMPARE(session.list("diaBPPerStage"), (std::vector<double>{70.0, 75.0, 80.0, 0.0, 72.0}));
        QCOMPARE(session.list("DPPerStage").at(4), 130.0 * session.list("BPMPerStage").at(4));
        QCOMPARE(session.value("maxSysBP"), 160.0);
        QCOMPARE(session.value("maxDiaBP"), 80.0);
        QCOMPARE(session.trend("sysBPTrend").values(), (std::vector<double>{120.0, 140.0, 160.0, 130.0}));
        QCOMPARE(session.trend("DPTrend").valueAtIndex(2),
                 160.0 * std::trunc(session.trend("BPMTrend").valueAt(24.0)));
    }

    void aPressureThatIsNoNumberIsPassedOver()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(15.0);
        session.recorder->addBloodPressure(14.0, 120.0, 80.0);
        session.recorder->addBloodPressure(14.0, nan, 80.0);
        session.recorder->addBloodPressure(5.0, 120.0, infinity);
        session.recorder->addBloodPressure(nan, 130.0, 90.0);
        session.run(5.0);
        QCOMPARE(session.list("sysBPPerStage"), (std::vector<double>{0.0, 120.0}));
        QCOMPARE(session.list("diaBPPerStage"), (std::vector<double>{0.0, 80.0}));
        QCOMPARE(session.trend("sysBPTrend").count(), 1);
    }

    void theEquipmentIsLedThroughTheTest()
    {
        FakeEquipment treadmill;
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol, &treadmill);
        session.run(1.0);
        QCOMPARE(treadmill.takeCalls(), QString());
        session.start();
        // A first stage at rest needs no word.
        QCOMPARE(treadmill.takeCalls(), QStringLiteral("start"));
        session.run(10.0);
        QCOMPARE(treadmill.takeCalls(), QStringLiteral("speed 2.7, incline 10, commit"));
        session.recorder->nextStage();
        QCOMPARE(treadmill.takeCalls(), QStringLiteral("speed 5, incline 12, commit"));
        session.run(20.0);
        QCOMPARE(treadmill.takeCalls(),
                 QStringLiteral("speed 2, incline 0, commit, speed 0, incline 0, commit"));
        session.recorder->finishStudy();
        QCOMPARE(treadmill.takeCalls(), QStringLiteral("stop"));
    }

    void theLoadOfAFirstStageIsSentAfterTheStart()
    {
        FakeEquipment treadmill;
        TStressProtocol protocol("Loaded", TProtocolType::Treadmill);
        protocol.addStage(TStagePhase::Exercise, 10.0, 0.0, 5.0);
        RecorderSession session(&protocol, &treadmill);
        session.start();
        QCOMPARE(treadmill.takeCalls(), QStringLiteral("start, speed 0, incline 5, commit"));
    }

    void aFailureOfTheEquipmentIsToldOnceAndTheTestGoesOn_data()
    {
        QTest::addColumn<QByteArray>("failsAt");
        QTest::addColumn<QString>("calls");
        QTest::newRow("start") << QByteArray("start") << QStringLiteral("start");
        QTest::newRow("value") << QByteArray("speed") << QStringLiteral("start, speed 2.7");
        QTest::newRow("second value")
            << QByteArray("incline") << QStringLiteral("start, speed 2.7, incline 10");
        QTest::newRow("commit") << QByteArray("commit")
                                << QStringLiteral("start, speed 2.7, incline 10, commit");
        QTest::newRow("stop") << QByteArray("stop")
                              << QStringLiteral("start, speed 2.7, incline 10, commit, "
                                                "speed 5, incline 12, commit, stop");
    }

    void aFailureOfTheEquipmentIsToldOnceAndTheTestGoesOn()
    {
        QFETCH(QByteArray, failsAt);
        QFETCH(QString, calls);
        FakeEquipment treadmill;
        treadmill.failsAt = failsAt;
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol, &treadmill);
        session.start();
        QVERIFY(session.recorder->isRecording());
        session.run(26.0);
        session.recorder->finishStudy();
        QCOMPARE(treadmill.takeCalls(), calls);
        QCOMPARE(session.log.count(linkFailure), 1);
        QCOMPARE(session.stages(), (QList<double>{10.0, 10.0, 6.0}));
        QCOMPARE(session.study->ecg()->sampleCount(), 13000);
        QCOMPARE(session.log.first(), QStringLiteral("started"));
        QCOMPARE(session.log.last(), QStringLiteral("finished"));
    }

    void whoeverIsToldMayEndTheStudy_data()
    {
        QTest::addColumn<QString>("moment");
        for (const char* moment : {"started", "stage", "beat", "signal", "failed"})
            QTest::newRow(moment) << QString::fromLatin1(moment);
    }

    void whoeverIsToldMayEndTheStudy()
    {
        QFETCH(QString, moment);
        FakeEquipment treadmill;
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol, &treadmill);
        const auto end = [&session] { session.recorder->finishStudy(); };
        if (moment == QLatin1String("started"))
            session.observer.onStarted = end;
        else if (moment == QLatin1String("stage"))
            session.observer.onStage = end;
        else if (moment == QLatin1String("beat"))
            session.observer.onBeat = end;
        else if (moment == QLatin1String("signal"))
            session.observer.onSignal = end;
        else
            session.observer.onFailed = end;
        session.start();
        session.run(5.0);
        if (moment == QLatin1String("failed"))
            QVERIFY(QFile::remove(session.folder.ecgFile(session.info.baseFilename)));
        session.block(2500);
        session.run(10.0);
        QVERIFY(!session.recorder->isRecording());
        QCOMPARE(session.log.count(QStringLiteral("finished")), 1);
        QCOMPARE(session.log.last(), QStringLiteral("finished"));
        if (!treadmill.calls.isEmpty())
            QCOMPARE(treadmill.calls.last(), QStringLiteral("stop"));
        QCOMPARE(session.study->protocol()->stageCount(), int(session.list("BPMPerStage").size()));
    }

    void observersAreToldInTheirOrderAndLeaveAtAnyTime()
    {
        RecorderSession session;
        ObserverLog second(session.log, QStringLiteral("2 "));
        ObserverLog third(session.log, QStringLiteral("3 "));
        session.recorder->addObserver(&second);
        session.recorder->addObserver(&second);
        session.recorder->addObserver(&third);
        session.observer.onStarted = [&] { session.recorder->removeObserver(&second); };
        third.onStarted = [&] { session.recorder->removeObserver(&third); };
        session.start();
        QCOMPARE(session.log, (QStringList{QStringLiteral("started"), QStringLiteral("3 started")}));
        session.log.clear();
        session.run(1.0);
        session.recorder->finishStudy();
        QCOMPARE(session.log, QStringList{QStringLiteral("finished")});
        QCOMPARE(third.updates, 0);
    }

    void anObserverThatComesWhileOthersAreToldIsToldFromTheNextTimeOn()
    {
        RecorderSession session;
        ObserverLog late(session.log, QStringLiteral("late "));
        session.observer.onStarted = [&] { session.recorder->addObserver(&late); };
        session.start();
        session.recorder->finishStudy();
        QCOMPARE(session.log, (QStringList{QStringLiteral("started"), QStringLiteral("finished"),
                                           QStringLiteral("late finished")}));
    }
};

QTEST_GUILESS_MAIN(RecorderStagesTest)

#include "RecorderStagesTest.moc"
