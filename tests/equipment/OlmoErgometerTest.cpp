#include "DebugTexts.h"
#include "equipment/TOlmoErgometer.h"
#include "simulators/TErgometerSimulator.h"
#include "support/PseudoTerminal.h"
#include "support/ServedDevice.h"

#include <QtTest>

#include <limits>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace {

using TFault = TEquipmentSimulatorOptions::TFault;

TOlmoTimes shortTimes()
{
    TOlmoTimes times;
    times.startUpPauseMs = 1;
    times.stepPauseMs = 5;
    times.turnMs = 5;
    return times;
}

/// An ergometer and its driver.
struct TSession
{
    explicit TSession(const TOlmoTimes& times = shortTimes(), const TEquipmentSimulatorOptions& options = {})
        : ergometer(options), driver(std::make_unique<TOlmoErgometer>(ergometer.path(), times))
    {
    }

    void setLoad(double watts)
    {
        driver->setValue("workload", watts);
        driver->commit();
    }

    TServedDevice<TErgometerSimulator> ergometer;
    std::unique_ptr<TOlmoErgometer> driver;
};

} // namespace

/// What the ergometer gets.
class OlmoErgometerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDeviceIsResetFirstAndLast();
    void aStartActivatesAndAStopResets();
    void theLoadIsGivenChangedAndEnded();
    void noLoadToNoLoadSendsNothing();
    void aLoadIsWholeWatts();
    void commitsThatWaitMerge();
    void aStartGoesBeforeAStopWhichVoidsWhatWasCommitted();
    void aStopGoesBeforeALoadThatWasCommittedAfterIt();
    void aStartGoesBeforeALoad();
    void aStopTakesTheLoadAway();
    void aStopThatCannotGoOutIsTriedAgain();
    void aLineThatTricklesInIsNotAwaitedForLong();
    void theStepsHaveTheirPauses();
    void theStartUpTakesItsTime();
    void aSilentDeviceIsGoneOnWith();
    void aShortAnswerIsGoneOnWith();
    void aLateAnswerIsWaitedFor();
    void aDeviceThatChattersDoesNotHoldUpAStop();
    void aHangUpEndsSoon();
    void aPortThatIsNotThereIsToldAndNoMore();
    void theWaitsAreThoseOfTheDevice();
};

void OlmoErgometerTest::theDeviceIsResetFirstAndLast()
{
    TSession session;
    QVERIFY(session.ergometer.isTold("r c"));
    session.driver.reset();
    QVERIFY(session.ergometer.isTold("r c r"));
}

void OlmoErgometerTest::aStartActivatesAndAStopResets()
{
    TSession session;
    QCOMPARE(int(session.driver->kind()), 1);
    QVERIFY(session.driver->isOk());
    QVERIFY(session.driver->start());
    QVERIFY(session.ergometer.isTold("r c a"));
    QVERIFY(session.driver->stop());
    QVERIFY(session.ergometer.isTold("r c a r"));
}

void OlmoErgometerTest::theLoadIsGivenChangedAndEnded()
{
    TSession session;
    session.setLoad(50.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a"));
    session.setLoad(25.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a i -25"));
    session.setLoad(100.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a i -25 i 75"));
    session.setLoad(0.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a i -25 i 75 e"));
    session.setLoad(30.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a i -25 i 75 e p d 30 a"));
}

void OlmoErgometerTest::noLoadToNoLoadSendsNothing()
{
    TSession session;
    QVERIFY(session.ergometer.isTold("r c"));
    const auto awaitTurns = [] { QThread::msleep(100); };
    session.driver->commit();
    awaitTurns();
    session.setLoad(0.0);
    awaitTurns();
    session.setLoad(-10.0);
    awaitTurns();
    session.driver->setValue("speed", 5.0);
    session.driver->commit();
    awaitTurns();
    QVERIFY(session.ergometer.isTold("r c"));
    session.setLoad(50.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a"));
}

void OlmoErgometerTest::aLoadIsWholeWatts()
{
    TSession session;
    session.setLoad(49.9);
    session.driver->setValue("workload", std::numeric_limits<double>::quiet_NaN());
    session.driver->setValue("workload", std::numeric_limits<double>::infinity());
    QVERIFY(session.ergometer.isTold("r c p d 49 a"));
    session.driver->setValue("WorkLoad", 50.5);
    session.driver->commit();
    QVERIFY(session.ergometer.isTold("r c p d 49 a i 1"));
}

void OlmoErgometerTest::commitsThatWaitMerge()
{
    TOlmoTimes times = shortTimes();
    times.startUpPauseMs = 20;
    TSession session(times);
    QVERIFY(session.ergometer.hasReceived(1));
    session.setLoad(50.0);
    session.setLoad(75.0);
    session.driver->setValue("workload", 100.0); // not committed
    QVERIFY(session.ergometer.isTold("r c p d 75 a"));
}

void OlmoErgometerTest::aStartGoesBeforeAStopWhichVoidsWhatWasCommitted()
{
    TOlmoTimes times = shortTimes();
    times.startUpPauseMs = 20;
    TSession session(times);
    QVERIFY(session.ergometer.hasReceived(1));
    session.setLoad(50.0);
    session.driver->stop();
    session.driver->start();
    QVERIFY(session.ergometer.isTold("r c a r"));
    session.setLoad(25.0);
    QVERIFY(session.ergometer.isTold("r c a r p d 25 a"));
}

void OlmoErgometerTest::aStopGoesBeforeALoadThatWasCommittedAfterIt()
{
    TOlmoTimes times = shortTimes();
    times.startUpPauseMs = 20;
    TSession session(times);
    QVERIFY(session.ergometer.hasReceived(1));
    session.setLoad(50.0);
    session.driver->stop();
    session.setLoad(25.0);
    QVERIFY(session.ergometer.isTold("r c r p d 25 a"));
}

void OlmoErgometerTest::aStartGoesBeforeALoad()
{
    TOlmoTimes times = shortTimes();
    times.startUpPauseMs = 20;
    TSession session(times);
    QVERIFY(session.ergometer.hasReceived(1));
    session.setLoad(50.0);
    session.driver->start();
    QVERIFY(session.ergometer.isTold("r c a p d 50 a"));
}

void OlmoErgometerTest::aStopTakesTheLoadAway()
{
    TSession session;
    session.setLoad(50.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a"));
    session.driver->stop();
    QVERIFY(session.ergometer.isTold("r c p d 50 a r"));
    session.setLoad(60.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a r p d 60 a"));
}

void OlmoErgometerTest::aStopThatCannotGoOutIsTriedAgain()
{
    TOlmoTimes times = shortTimes();
    times.timeoutMs = 50;
    TPseudoTerminal line;
    const int port = ::open(line.path().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    QVERIFY(port >= 0);
    TOlmoErgometer driver(line.path(), times);
    QCOMPARE(line.readAll(2), QByteArray("rc"));
    // A line that takes no more; something else has sent so much.
    while (::write(port, "x", 1) == 1) {
    }
    driver.stop();
    QThread::msleep(300);
    QByteArray told;
    QVERIFY(comesTrue([&] { return (told += line.readSome(4096)).endsWith('r'); }));
    QThread::msleep(100);
    QCOMPARE((told + line.readSome(4096)).count('r'), 1);
    ::close(port);
}

void OlmoErgometerTest::aLineThatTricklesInIsNotAwaitedForLong()
{
    TOlmoTimes times = shortTimes();
    times.timeoutMs = 200;
    TPseudoTerminal line;
    TOlmoErgometer driver(line.path(), times);
    driver.setValue("workload", 50.0);
    driver.commit();
    // Before it is set up, the line would echo.
    QByteArray told = line.readAll(1);
    // Each byte comes in time, the end of the line never.
    QElapsedTimer timer;
    timer.start();
    while (told != "rcpd50\na" && timer.elapsed() < 15000) {
        line.writeAll("x");
        QThread::msleep(50);
        told += line.readSome(64);
    }
    QCOMPARE(told, QByteArray("rcpd50\na"));
}

void OlmoErgometerTest::theStepsHaveTheirPauses()
{
    TOlmoTimes times = shortTimes();
    times.stepPauseMs = 60;
    TSession session(times);
    session.setLoad(50.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a"));
    session.setLoad(25.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a i -25"));
    const std::vector<TReceivedMessage> messages = session.ergometer.messages();
    for (const std::size_t second : {3, 4, 5, 7})
        QVERIFY(messages[second].seconds - messages[second - 1].seconds > 0.05);
}

void OlmoErgometerTest::theStartUpTakesItsTime()
{
    TOlmoTimes times = shortTimes();
    times.startUpPauseMs = 10;
    QElapsedTimer timer;
    timer.start();
    TSession session(times);
    QVERIFY(session.ergometer.hasReceived(2));
    QVERIFY(timer.elapsed() >= 14 * 10);
}

void OlmoErgometerTest::aSilentDeviceIsGoneOnWith()
{
    TOlmoTimes times = shortTimes();
    times.timeoutMs = 20;
    TEquipmentSimulatorOptions options;
    options.fault = TFault::Silent;
    TSession session(times, options);
    session.setLoad(50.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a"));
    session.driver->stop();
    QVERIFY(session.ergometer.isTold("r c p d 50 a r"));
}

void OlmoErgometerTest::aShortAnswerIsGoneOnWith()
{
    TOlmoTimes times = shortTimes();
    times.timeoutMs = 20;
    TEquipmentSimulatorOptions options;
    options.fault = TFault::Short;
    TSession session(times, options);
    session.setLoad(50.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a"));
}

void OlmoErgometerTest::aLateAnswerIsWaitedFor()
{
    TEquipmentSimulatorOptions options;
    options.fault = TFault::Late;
    options.lateMs = 80;
    TSession session(shortTimes(), options);
    session.setLoad(50.0);
    QVERIFY(session.ergometer.isTold("r c p d 50 a"));
    const std::vector<TReceivedMessage> messages = session.ergometer.messages();
    for (const std::size_t second : {2, 3, 4, 5})
        QVERIFY(messages[second].seconds - messages[second - 1].seconds > 0.07);
}

void OlmoErgometerTest::aDeviceThatChattersDoesNotHoldUpAStop()
{
    TSimulatedPort device;
    std::atomic<bool> ends = false;
    std::atomic<int> resets = 0;
    std::thread chatter([&] {
        const std::string noise(64, 'x');
        char bytes[64];
        while (!ends) {
            device.write(noise.data(), static_cast<int>(noise.size()));
            const int count = device.read(bytes, sizeof bytes, 1);
            resets += static_cast<int>(std::count(bytes, bytes + count, 'r'));
        }
    });
    TOlmoErgometer driver(device.path(), shortTimes());
    const bool isReset = comesTrue([&] { return resets == 1; });
    driver.stop();
    const bool isStopped = comesTrue([&] { return resets == 2; });
    ends = true;
    chatter.join();
    QVERIFY(isReset && isStopped);
}

void OlmoErgometerTest::aHangUpEndsSoon()
{
    TEquipmentSimulatorOptions options;
    options.fault = TFault::HangUp;
    options.faultAfter = 2;
    TSession session(shortTimes(), options);
    session.setLoad(50.0);
    QVERIFY(session.ergometer.isTold("r c p"));
    QElapsedTimer timer;
    timer.start();
    session.driver->stop();
    session.driver.reset();
    QVERIFY(timer.elapsed() < 5000);
}

void OlmoErgometerTest::aPortThatIsNotThereIsToldAndNoMore()
{
    const TDebugTexts debug;
    TOlmoErgometer driver("ttyThatIsNone", shortTimes());
    QVERIFY(comesTrue([&] { return debug.texts() == std::vector<std::string>{"Port not found"}; }));
    QVERIFY(driver.isOk() && driver.start() && driver.setValue("workload", 50.0) && driver.commit() &&
            driver.stop());
}

void OlmoErgometerTest::theWaitsAreThoseOfTheDevice()
{
    const TOlmoTimes times;
    QCOMPARE(times.startUpPauseMs, 500);
    QCOMPARE(times.startUpPauses, 14);
    QCOMPARE(times.stepPauseMs, 200);
    QCOMPARE(times.turnMs, 200);
    QCOMPARE(times.timeoutMs, 2000);
    QVERIFY(times.lastWordsMs <= 500);
}

QTEST_GUILESS_MAIN(OlmoErgometerTest)
#include "OlmoErgometerTest.moc"
