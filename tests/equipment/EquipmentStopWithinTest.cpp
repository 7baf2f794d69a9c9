#include "KipnetSession.h"
#include "equipment/TOlmoErgometer.h"
#include "simulators/TErgometerSimulator.h"

#include <QtTest>

namespace {

using TFault = TEquipmentSimulatorOptions::TFault;

/// Far beyond any test: what waited for it would be missing.
constexpr int endlessMs = 60000;

TEquipmentSimulatorOptions fault(TFault kind, int after, int times = -1)
{
    TEquipmentSimulatorOptions options;
    options.fault = kind;
    options.faultAfter = after;
    options.faultTimes = times;
    options.lateMs = 2000;
    return options;
}

TOlmoTimes shortTimes()
{
    TOlmoTimes times;
    times.startUpPauseMs = 1;
    times.stepPauseMs = 5;
    times.turnMs = 5;
    times.timeoutMs = endlessMs;
    return times;
}

/// An ergometer and its driver, which is giving it a load.
struct TLoading
{
    explicit TLoading(const TEquipmentSimulatorOptions& device, const TOlmoTimes& times = shortTimes())
        : ergometer(device), driver(ergometer.path(), times)
    {
        setLoad(50.0);
    }

    void setLoad(double watts)
    {
        driver.setValue("workload", watts);
        driver.commit();
    }

    TServedDevice<TErgometerSimulator> ergometer;
    TOlmoErgometer driver;
};

} // namespace

/// A stop does not wait behind what is under way, and the driver goes on.
class EquipmentStopWithinTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStopEndsACommitToATreadmill_data();
    void aStopEndsACommitToATreadmill();
    void aStopEndsThePauseBetweenTwoAttempts();
    void aStopEndsACommitToAnErgometer_data();
    void aStopEndsACommitToAnErgometer();
    void aStopEndsThePauseBetweenTwoSteps();
    void aStopEndsTheRestAfterATurn();
    void theAnswerToTheStopIsWaitedFor();
    void aTreadmillGoesOnAfterTheStop();
    void anErgometerGoesOnAfterTheStop();
};

void EquipmentStopWithinTest::aStopEndsACommitToATreadmill_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("answered");
    QTest::addColumn<QByteArray>("told");
    for (const TFault kind : {TFault::Silent, TFault::Short, TFault::Late}) {
        const auto row = [kind](const char* command, int answered, const char* told) {
            QTest::addRow("%d at %s", int(kind), command) << int(kind) << answered << QByteArray(told);
        };
        row("GO", 0, ";2GO00:");
        row("V", 1, ";2GO00: ;2V005077:");
        row("E", 2, ";2GO00: ;2V005077: ;2E010056:");
    }
}

void EquipmentStopWithinTest::aStopEndsACommitToATreadmill()
{
    QFETCH(int, kind);
    QFETCH(int, answered);
    QFETCH(QByteArray, told);
    TKipnetTimes times = TKipnetSession::shortTimes();
    times.timeoutMs = endlessMs;
    times.lastWordsMs = 50;
    TKipnetSession session(fault(TFault(kind), answered), times);
    session.driver->setValue("workload", 100.0);
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.hasReceived(static_cast<std::size_t>(answered) + 1));
    session.driver->stop();
    QVERIFY2(session.treadmill.isTold(told + " ;2ST17:"), session.treadmill.told().constData());
}

void EquipmentStopWithinTest::aStopEndsThePauseBetweenTwoAttempts()
{
    TKipnetTimes times = TKipnetSession::shortTimes();
    times.timeoutMs = 20;
    times.retryPauseMs = endlessMs;
    TKipnetSession session(fault(TFault::Silent, 0, 1), times);
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.hasReceived(1));
    QThread::msleep(100);
    session.driver->stop();
    QVERIFY(session.treadmill.isTold(";2GO00: ;2ST17:"));
}

void EquipmentStopWithinTest::aStopEndsACommitToAnErgometer_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("answered");
    QTest::addColumn<QByteArray>("told");
    for (const TFault kind : {TFault::Silent, TFault::Short, TFault::Late}) {
        const auto row = [kind](const char* command, int answered, const char* told) {
            QTest::addRow("%d at %s", int(kind), command) << int(kind) << answered << QByteArray(told);
        };
        row("data", 1, "r c");
        row("preparation", 2, "r c p");
        row("load", 3, "r c p d");
        row("number", 4, "r c p d 50");
        row("activation", 5, "r c p d 50 a");
    }
}

void EquipmentStopWithinTest::aStopEndsACommitToAnErgometer()
{
    QFETCH(int, kind);
    QFETCH(int, answered);
    QFETCH(QByteArray, told);
    TLoading session(fault(TFault(kind), answered));
    QVERIFY(session.ergometer.hasReceived(static_cast<std::size_t>(answered) + 1));
    session.driver.stop();
    QVERIFY2(session.ergometer.isTold(told + " r"), session.ergometer.told().constData());
}

void EquipmentStopWithinTest::aStopEndsThePauseBetweenTwoSteps()
{
    TOlmoTimes times = shortTimes();
    times.stepPauseMs = endlessMs;
    TLoading session({}, times);
    QVERIFY(session.ergometer.isTold("r c p"));
    session.driver.stop();
    QVERIFY(session.ergometer.isTold("r c p r"));
}

void EquipmentStopWithinTest::aStopEndsTheRestAfterATurn()
{
    TKipnetTimes times;
    times.turnMs = endlessMs;
    TKipnetSession session({}, times);
    QVERIFY(comesTrue([&] { return session.log().contains("Thread start"); }));
    QThread::msleep(100);
    session.driver->stop();
    QVERIFY(session.treadmill.isTold(";2ST17:"));
}

void EquipmentStopWithinTest::theAnswerToTheStopIsWaitedFor()
{
    TKipnetTimes times = TKipnetSession::shortTimes();
    times.timeoutMs = endlessMs;
    TKipnetSession session(fault(TFault::Silent, 0, 2), times);
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.hasReceived(1));
    session.driver->stop();
    QVERIFY(session.treadmill.hasReceived(2));
    session.driver->commit();
    // The device says nothing to the stop, and so nothing more is said.
    QVERIFY(session.treadmill.isTold(";2GO00: ;2ST17:"));
    QVERIFY(!session.log().contains("respond"));
}

void EquipmentStopWithinTest::aTreadmillGoesOnAfterTheStop()
{
    TKipnetTimes times = TKipnetSession::shortTimes();
    times.timeoutMs = endlessMs;
    TKipnetSession session(fault(TFault::Silent, 0, 1), times);
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.hasReceived(1));
    session.driver->stop();
    session.set(2.7, 0.0);
    QVERIFY(session.treadmill.isTold(";2GO00: ;2ST17: ;2GO00: ;2V002781: ;2E000055:"));
    QVERIFY(!session.log().contains("respond"));
}

void EquipmentStopWithinTest::anErgometerGoesOnAfterTheStop()
{
    TLoading session(fault(TFault::Silent, 4, 1));
    QVERIFY(session.ergometer.hasReceived(5));
    session.driver.stop();
    session.setLoad(25.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 r p d 25 a"));
    session.setLoad(30.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 r p d 25 a i 5"));
}

QTEST_GUILESS_MAIN(EquipmentStopWithinTest)
#include "EquipmentStopWithinTest.moc"
