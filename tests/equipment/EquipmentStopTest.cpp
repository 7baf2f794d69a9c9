#include "KipnetSession.h"
#include "equipment/TOlmoErgometer.h"
#include "simulators/TErgometerSimulator.h"

#include <QtTest>

#include <memory>

namespace {

using TFault = TEquipmentSimulatorOptions::TFault;

/// Far beyond any test: who waited for it would be seen.
constexpr int endlessMs = 60000;
constexpr int soonMs = 8000;

TEquipmentSimulatorOptions fault(TFault kind, int after)
{
    TEquipmentSimulatorOptions options;
    options.fault = kind;
    options.faultAfter = after;
    return options;
}

/// Where a driver is when it is told to stop and destroyed at once.
struct TSituation
{
    TEquipmentSimulatorOptions device = {};
    int turnMs = 5;
    int pauseMs = 5; ///< of a retry, a step or the start-up
    std::size_t received = 0;
    int msBefore = 0; ///< a moment for the first turn to go by
    bool isCommitted = true;
    bool isStopped = false; ///< the stop is what it is at
};

qint64 msOf(const std::function<void()>& action)
{
    QElapsedTimer timer;
    timer.start();
    action();
    return timer.elapsed();
}

template <class TDevice> bool isMatched(const TDevice& device, const QRegularExpression& expected)
{
    return comesTrue([&] { return expected.match(QString::fromLatin1(device.told())).hasMatch(); });
}

} // namespace

Q_DECLARE_METATYPE(TSituation)

/// People stand on these devices: a stop reaches them whatever the driver is at, and its window closes soon.
class EquipmentStopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTreadmillIsStoppedBeforeItsDriverEnds_data();
    void aTreadmillIsStoppedBeforeItsDriverEnds();
    void anErgometerIsStoppedBeforeItsDriverEnds_data();
    void anErgometerIsStoppedBeforeItsDriverEnds();
    void aStopRightAfterTheCreationReachesEveryTreadmill();
    void aStopRightAfterTheCreationReachesEveryErgometer();
    void aTreadmillThatNobodyStoppedIsLeftAsItIs();
    void anErgometerThatNobodyStoppedIsResetAnyway();
    void aSilentTreadmillIsToldThreeTimes();
    void aTreadmillIsGivenTimeToAnswerItsLastStop();
    void lastWordsThatAreBeingSaidAreNotCutShort();
    void anInterruptedFailureIsNone();
    void aDriverWithTheTimesOfADeviceEndsSoon();
};

void EquipmentStopTest::aTreadmillIsStoppedBeforeItsDriverEnds_data()
{
    QTest::addColumn<TSituation>("situation");
    QTest::newRow("before the first turn") << TSituation{.isCommitted = false};
    QTest::newRow("with a commit that waits") << TSituation{};
    QTest::newRow("between two turns") << TSituation{.turnMs = endlessMs, .msBefore = 50};
    QTest::newRow("waiting for an answer") << TSituation{.device = fault(TFault::Silent, 0), .received = 1};
    QTest::newRow("waiting for the rest of an answer")
        << TSituation{.device = fault(TFault::Short, 1), .received = 2};
    QTest::newRow("between two attempts") << TSituation{
        .device = fault(TFault::Short, 0), .pauseMs = endlessMs, .received = 1, .msBefore = 150};
    QTest::newRow("waiting for the answer to a stop") << TSituation{
        .device = fault(TFault::Silent, 0), .received = 1, .isCommitted = false, .isStopped = true};
}

void EquipmentStopTest::aTreadmillIsStoppedBeforeItsDriverEnds()
{
    QFETCH(TSituation, situation);
    TKipnetTimes times;
    times.turnMs = situation.turnMs;
    times.retryPauseMs = situation.pauseMs;
    times.lastWordsMs = 100;
    times.timeoutMs = situation.pauseMs == endlessMs ? 50 : endlessMs;
    TKipnetSession session(situation.device, times);
    if (situation.isCommitted)
        session.set(5.0, 10.0);
    if (situation.isStopped)
        session.driver->stop();
    QVERIFY(session.treadmill.hasReceived(situation.received));
    QThread::msleep(static_cast<unsigned long>(situation.msBefore));

    const qint64 ms = msOf([&] {
        if (!situation.isStopped)
            session.driver->stop();
        session.driver.reset();
    });
    QVERIFY2(ms < soonMs, qPrintable(QString::number(ms)));
    QVERIFY(session.treadmill.hasReceived(situation.received + 1));
    QVERIFY(comesTrue([&] { return session.treadmill.told().endsWith(";2ST17:"); }));
    QVERIFY(!session.treadmill.told().contains('('));
    QVERIFY(session.hasEnded());
}

void EquipmentStopTest::anErgometerIsStoppedBeforeItsDriverEnds_data()
{
    QTest::addColumn<TSituation>("situation");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("in the start-up") << TSituation{.pauseMs = endlessMs, .received = 1} << QByteArray("r r");
    QTest::newRow("waiting for the data")
        << TSituation{.device = fault(TFault::Silent, 1), .received = 2} << QByteArray("r c r");
    QTest::newRow("waiting for an answer")
        << TSituation{.device = fault(TFault::Silent, 2), .received = 3} << QByteArray("r c p r");
    QTest::newRow("waiting for the end of a line")
        << TSituation{.device = fault(TFault::Short, 3), .received = 4} << QByteArray("r c p d r");
    QTest::newRow("waiting for an answer to a number")
        << TSituation{.device = fault(TFault::Silent, 4), .received = 5} << QByteArray("r c p d 50 r");
}

void EquipmentStopTest::anErgometerIsStoppedBeforeItsDriverEnds()
{
    QFETCH(TSituation, situation);
    QFETCH(QByteArray, told);
    TServedDevice<TErgometerSimulator> ergometer(situation.device);
    TOlmoTimes times;
    times.turnMs = situation.turnMs;
    times.startUpPauseMs = situation.pauseMs;
    times.stepPauseMs = situation.pauseMs;
    times.timeoutMs = endlessMs;
    auto driver = std::make_unique<TOlmoErgometer>(ergometer.path(), times);
    driver->setValue("workload", 50.0);
    driver->commit();
    QVERIFY(ergometer.hasReceived(situation.received));

    const qint64 ms = msOf([&] {
        driver->stop();
        driver.reset();
    });
    QVERIFY2(ms < soonMs, qPrintable(QString::number(ms)));
    // The stop may have gone out by itself; the last reset always does.
    QVERIFY2(comesTrue([&] { return ergometer.told() == told || ergometer.told() == told + " r"; }),
             ergometer.told().constData());
}

void EquipmentStopTest::aStopRightAfterTheCreationReachesEveryTreadmill()
{
    // What was committed may have begun to go out. The stop is said again if the end cuts its answer short.
    const QRegularExpression uncommitted(QStringLiteral("^;2ST17:( ;2ST17:)?$"));
    const QRegularExpression committed(
        QStringLiteral("^(;2GO00: (;2V005077: (;2E010056: )?)?)?;2ST17:( ;2ST17:)?$"));
    for (int i = 0; i < 50; ++i) {
        TKipnetSession session;
        const bool isCommitted = i % 2 == 0;
        if (isCommitted)
            session.set(5.0, 10.0);
        session.driver->stop();
        session.driver.reset();
        const QRegularExpression& expected = isCommitted ? committed : uncommitted;
        QVERIFY2(isMatched(session.treadmill, expected), session.treadmill.told().constData());
    }
}

void EquipmentStopTest::aStopRightAfterTheCreationReachesEveryErgometer()
{
    // The first turn's reset may have gone out.
    const QRegularExpression expected(QStringLiteral("^r( r)?$"));
    for (int i = 0; i < 50; ++i) {
        const TServedDevice<TErgometerSimulator> ergometer;
        TOlmoErgometer(ergometer.path()).stop();
        QVERIFY2(isMatched(ergometer, expected), ergometer.told().constData());
    }
}

void EquipmentStopTest::aTreadmillThatNobodyStoppedIsLeftAsItIs()
{
    TKipnetSession session;
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.hasReceived(3));
    session.driver.reset();
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077: ;2E010056:"));
}

void EquipmentStopTest::anErgometerThatNobodyStoppedIsResetAnyway()
{
    TServedDevice<TErgometerSimulator> ergometer;
    TOlmoTimes times;
    times.startUpPauseMs = endlessMs;
    auto driver = std::make_unique<TOlmoErgometer>(ergometer.path(), times);
    QVERIFY(ergometer.hasReceived(1));
    QVERIFY(msOf([&] { driver.reset(); }) < soonMs);
    QVERIFY(ergometer.isTold("r r"));
}

void EquipmentStopTest::aSilentTreadmillIsToldThreeTimes()
{
    TKipnetTimes times;
    times.timeoutMs = endlessMs;
    times.lastWordsMs = 50;
    TKipnetSession session(fault(TFault::Silent, 0), times);
    session.driver->setValue("incline", 10.0);
    session.driver->commit();
    QVERIFY(session.treadmill.hasReceived(1));
    session.driver->stop();
    session.driver.reset();
    QVERIFY(session.treadmill.isTold(";2E010056: ;2ST17: ;2ST17: ;2ST17:"));
    QVERIFY(session.log().contains(">> ;2ST17:\nKipnet device did not respond (command ST)\nThread stop\n"));
}

void EquipmentStopTest::aTreadmillIsGivenTimeToAnswerItsLastStop()
{
    TEquipmentSimulatorOptions late = fault(TFault::Late, 0);
    late.lateMs = 50;
    TKipnetTimes times = TKipnetSession::shortTimes();
    times.lastWordsMs = 5000;
    for (int i = 0; i < 10; ++i) {
        TKipnetSession session(late, times);
        session.driver->stop();
        session.driver.reset();
        // Twice if the driver was at the first one when it was told to end.
        const QByteArray told = session.treadmill.told();
        QVERIFY2(told == ";2ST17:" || told == ";2ST17: ;2ST17:", told.constData());
        QVERIFY(!session.log().contains("respond"));
    }
}

void EquipmentStopTest::lastWordsThatAreBeingSaidAreNotCutShort()
{
    // The first stop fails, the second one is said on the way out, and the answers come when it waits.
    TEquipmentSimulatorOptions late = fault(TFault::Late, 0);
    late.lateMs = 2500;
    TKipnetTimes times = TKipnetSession::shortTimes();
    times.timeoutMs = 200;
    times.lastWordsMs = endlessMs;
    TKipnetSession session(late, times);
    session.driver->stop();
    QVERIFY(session.treadmill.hasReceived(1));
    session.driver->stop();
    QVERIFY(session.treadmill.hasReceived(4));
    session.driver.reset();
    QVERIFY(session.treadmill.isTold(";2ST17: ;2ST17: ;2ST17: ;2ST17:"));
    QVERIFY(session.log().endsWith(">> ;2ST17:\nKipnet device did not respond (command ST)\n>> ;2ST17:\n"
                                   "Thread stop\n--------------------\n"));
}

void EquipmentStopTest::anInterruptedFailureIsNone()
{
    TKipnetTimes times;
    times.timeoutMs = endlessMs;
    TKipnetSession session(fault(TFault::Silent, 0), times);
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.hasReceived(1));
    session.driver.reset();
    QVERIFY(session.treadmill.isTold(";2GO00:"));
    QVERIFY(!session.log().contains("respond"));
}

void EquipmentStopTest::aDriverWithTheTimesOfADeviceEndsSoon()
{
    constexpr int boundMs = 4000;
    TKipnetSession session(fault(TFault::Silent, 0), TKipnetTimes());
    const TServedDevice<TErgometerSimulator> ergometer(fault(TFault::Silent, 0));
    auto driver = std::make_unique<TOlmoErgometer>(ergometer.path());
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.hasReceived(1));
    QVERIFY(ergometer.hasReceived(1));
    const qint64 treadmillMs = msOf([&] {
        session.driver->stop();
        session.driver.reset();
    });
    const qint64 ergometerMs = msOf([&] {
        driver->stop();
        driver.reset();
    });
    QVERIFY2(treadmillMs < boundMs, qPrintable(QString::number(treadmillMs)));
    QVERIFY2(ergometerMs < boundMs, qPrintable(QString::number(ergometerMs)));
    QVERIFY(ergometer.isTold("r r"));
}

QTEST_GUILESS_MAIN(EquipmentStopTest)
#include "EquipmentStopTest.moc"
