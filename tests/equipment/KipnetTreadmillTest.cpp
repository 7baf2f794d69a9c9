#include "KipnetSession.h"

#include <QtTest>

#include <limits>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

/// The first answer is late, so that requests can be put into one turn.
TEquipmentSimulatorOptions slowFirstAnswer()
{
    TEquipmentSimulatorOptions options;
    options.fault = TEquipmentSimulatorOptions::TFault::Late;
    options.faultTimes = 1;
    options.lateMs = 500;
    return options;
}

} // namespace

/// What the treadmill gets.
class KipnetTreadmillTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstSpeedSetsTheBeltGoing();
    void aSpeedOfNothingDoesNotSetTheBeltGoing();
    void valuesThatAreNotSetAreNotSent();
    void aLoadIsSentToo();
    void aStopIsSentAndAStartIsNot();
    void valuesBeyondTheLimitsAreHeld();
    void namesGoInAnyCaseOfLetters();
    void whatIsNoNumberOrHasNoNameChangesNothing();
    void commitsThatWaitMerge();
    void valuesGoOutAsTheyWereCommitted();
    void aStopVoidsWhatWasCommittedBefore();
    void aStopGoesBeforeWhatWasCommittedAfterIt();
    void aStartDoesNotHoldUpACommit();
    void aStopHasTheBeltStand();
    void theDriverIsAlwaysWell();
    void theLogTellsWhatWasSent();
    void theLogIsAppendedTo();
    void aLogThatCannotBeWrittenIsDoneWithout();
    void theLogLiesInTheDataFolder();
    void theWaitsAreThoseOfTheDevice();
};

void KipnetTreadmillTest::theFirstSpeedSetsTheBeltGoing()
{
    TKipnetSession session;
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077: ;2E010056:"));
    session.set(0.0, 0.0);
    QVERIFY(session.treadmill.hasReceived(5));
    session.set(2.7, 0.0);
    QVERIFY(session.treadmill.isTold(
        ";2GO00: ;2V005077: ;2E010056: ;2V000072: ;2E000055: ;2V002781: ;2E000055:"));
}

void KipnetTreadmillTest::aSpeedOfNothingDoesNotSetTheBeltGoing()
{
    TKipnetSession session;
    session.driver->setValue("speed", 0.0);
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2V000072:"));
    session.driver->setValue("speed", 5.0);
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2V000072: ;2GO00: ;2V005077:"));
}

void KipnetTreadmillTest::valuesThatAreNotSetAreNotSent()
{
    TKipnetSession session;
    session.driver->commit();
    session.driver->setValue("speed", -0.1);
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(""));
    session.driver->setValue("incline", 10.0);
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2E010056:"));
}

void KipnetTreadmillTest::aLoadIsSentToo()
{
    TKipnetSession session;
    session.driver->setValue("workload", 0.0);
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2N000064:"));
    session.driver->setValue("workload", 100.0);
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2N000064: ;2GO00: ;2N010065:"));
}

void KipnetTreadmillTest::aStopIsSentAndAStartIsNot()
{
    TKipnetSession session;
    session.driver->start();
    QVERIFY(session.treadmill.isTold(""));
    session.driver->stop();
    QVERIFY(session.treadmill.isTold(";2ST17:"));
    session.driver.reset();
    QVERIFY(session.treadmill.isTold(";2ST17:"));
}

void KipnetTreadmillTest::valuesBeyondTheLimitsAreHeld()
{
    TKipnetSession session;
    session.set(40.1, 25.0);
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V040076: ;2E020057:"));
}

void KipnetTreadmillTest::namesGoInAnyCaseOfLetters()
{
    TKipnetSession session;
    QVERIFY(session.driver->setValue("SPEED", 5.0));
    QVERIFY(session.driver->setValue("Incline", 10.0));
    QVERIFY(session.driver->setValue("workLoad", 0.0));
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077: ;2E010056: ;2N000064:"));
}

void KipnetTreadmillTest::whatIsNoNumberOrHasNoNameChangesNothing()
{
    TKipnetSession session;
    session.driver->setValue("speed", 5.0);
    for (const double value : {notANumber, infinite, -infinite})
        QVERIFY(session.driver->setValue("speed", value));
    QVERIFY(session.driver->setValue("dose", 7.0));
    QVERIFY(session.driver->setValue("", 7.0));
    QVERIFY(session.driver->setValue(nullptr, 7.0));
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077:"));
}

void KipnetTreadmillTest::commitsThatWaitMerge()
{
    TKipnetSession session(slowFirstAnswer());
    session.driver->setValue("speed", 0.0);
    session.driver->commit();
    QVERIFY(session.treadmill.hasReceived(1));
    session.set(40.0, 20.0);
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.isTold(";2V000072: ;2GO00: ;2V005077: ;2E010056:"));
}

void KipnetTreadmillTest::valuesGoOutAsTheyWereCommitted()
{
    TKipnetSession session(slowFirstAnswer());
    session.driver->setValue("speed", 0.0);
    session.driver->commit();
    QVERIFY(session.treadmill.hasReceived(1));
    session.set(5.0, 10.0);
    session.driver->setValue("speed", 40.0);
    QVERIFY(session.treadmill.isTold(";2V000072: ;2GO00: ;2V005077: ;2E010056:"));
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2V000072: ;2GO00: ;2V005077: ;2E010056: ;2V040076: ;2E010056:"));
}

void KipnetTreadmillTest::aStopVoidsWhatWasCommittedBefore()
{
    TKipnetSession session(slowFirstAnswer());
    session.driver->setValue("speed", 0.0);
    session.driver->commit();
    QVERIFY(session.treadmill.hasReceived(1));
    session.driver->commit();
    session.driver->stop();
    session.driver->start();
    QVERIFY(session.treadmill.isTold(";2V000072: ;2ST17:"));
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2V000072: ;2ST17: ;2V000072:"));
}

void KipnetTreadmillTest::aStopGoesBeforeWhatWasCommittedAfterIt()
{
    TKipnetSession session(slowFirstAnswer());
    session.driver->setValue("incline", 0.0);
    session.driver->commit();
    QVERIFY(session.treadmill.hasReceived(1));
    session.set(40.0, 20.0);
    session.driver->stop();
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.isTold(";2E000055: ;2ST17: ;2GO00: ;2V005077: ;2E010056:"));
}

void KipnetTreadmillTest::aStartDoesNotHoldUpACommit()
{
    TKipnetSession session(slowFirstAnswer());
    session.driver->setValue("speed", 0.0);
    session.driver->commit();
    QVERIFY(session.treadmill.hasReceived(1));
    session.driver->start();
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.isTold(";2V000072: ;2GO00: ;2V005077: ;2E010056:"));
}

void KipnetTreadmillTest::aStopHasTheBeltStand()
{
    TKipnetSession session;
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077: ;2E010056:"));
    session.driver->stop();
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077: ;2E010056: ;2ST17:"));
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077: ;2E010056: ;2ST17: ;2GO00: ;2V005077: ;2E010056:"));
}

void KipnetTreadmillTest::theDriverIsAlwaysWell()
{
    TKipnetSession session;
    QCOMPARE(int(session.driver->kind()), 0);
    TKipnetTreadmill& driver = *session.driver;
    QVERIFY(driver.isOk() && driver.start() && driver.stop() && driver.commit());
}

void KipnetTreadmillTest::theLogTellsWhatWasSent()
{
    TKipnetSession session;
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.hasReceived(3));
    session.driver->stop();
    QVERIFY(session.treadmill.hasReceived(4));
    session.driver.reset();
    QCOMPARE(session.log(),
             "Thread start, device port = " + QByteArray::fromStdString(session.treadmill.path()) +
                 "\n>> ;2GO00:\n>> ;2V005077:\n>> ;2E010056:\n>> ;2ST17:\n"
                 "Thread stop\n--------------------\n");
}

void KipnetTreadmillTest::theLogIsAppendedTo()
{
    TKipnetSession session;
    session.driver.reset();
    const QByteArray first = session.log();
    QVERIFY(first.startsWith("Thread start"));
    session.connectTo(session.treadmill.path());
    session.driver.reset();
    QCOMPARE(session.log(), first + first);
}

void KipnetTreadmillTest::aLogThatCannotBeWrittenIsDoneWithout()
{
    TKipnetSession session;
    session.logPath = session.folder.path(); // a folder
    session.connectTo(session.treadmill.path());
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077: ;2E010056:"));
}

void KipnetTreadmillTest::theLogLiesInTheDataFolder()
{
    QStandardPaths::setTestModeEnabled(true);
    const QString path = TKipnetLog::defaultPath();
    const QString generic = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QStandardPaths::setTestModeEnabled(false);
    QCOMPARE(path, generic + QStringLiteral("/VelantorStress/velantor-kipnet.log"));
    QVERIFY(TKipnetLog::defaultPath() != path);
    QCOMPARE(TKipnetTreadmill::TOptions().logPath, TKipnetLog::defaultPath());
}

void KipnetTreadmillTest::theWaitsAreThoseOfTheDevice()
{
    const TKipnetTimes times;
    QCOMPARE(times.turnMs, 200);
    QCOMPARE(times.retryPauseMs, 500);
    QCOMPARE(times.timeoutMs, 3000);
    QVERIFY(times.lastWordsMs <= 500);
}

QTEST_GUILESS_MAIN(KipnetTreadmillTest)
#include "KipnetTreadmillTest.moc"
