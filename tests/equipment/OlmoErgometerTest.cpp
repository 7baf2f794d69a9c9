#include "DebugTexts.h"
#include "equipment/TOlmoErgometer.h"
#include "simulators/TErgometerSimulator.h"
#include "support/ServedDevice.h"

#include <QtTest>

#include <limits>
#include <memory>

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
    void aStartGoesBeforeAStopAndAStopBeforeACommit();
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
    session.driver->commit();
    session.setLoad(0.0);
    session.setLoad(-10.0);
    session.driver->setValue("speed", 5.0);
    session.driver->commit();
    QVERIFY(session.ergometer.isTold("r c"));
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

void OlmoErgometerTest::aStartGoesBeforeAStopAndAStopBeforeACommit()
{
    TOlmoTimes times = shortTimes();
    times.startUpPauseMs = 20;
    TSession session(times);
    QVERIFY(session.ergometer.hasReceived(1));
    session.setLoad(50.0);
    session.driver->stop();
    session.driver->start();
    QVERIFY(session.ergometer.isTold("r c a r p d 50 a"));
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
    TSession session(times);
    QVERIFY(session.ergometer.hasReceived(2));
    const std::vector<TReceivedMessage> messages = session.ergometer.messages();
    QVERIFY(messages[1].seconds - messages[0].seconds > 0.13);
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
