#include "acq/DeviceSamples.h"
#include "acq/SimulatedDevice.h"
#include "acq/TStdAcqThread.h"
#include "support/Descriptors.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace acq;

namespace {

/// All at once, each so many times; the number of starts that failed.
int startAndStop(const std::vector<std::unique_ptr<TPortAcqDevice>>& devices, int cycles)
{
    std::atomic<int> failed = 0;
    std::vector<std::thread> users;
    for (const auto& device : devices) {
        users.emplace_back([&failed, &device, cycles] {
            for (int i = 0; i < cycles; ++i) {
                device->start();
                if (i % 8 == 0)
                    QTest::qSleep(1 + i);
                device->stop();
                failed += device->isOk() ? 0 : 1;
            }
        });
    }
    for (std::thread& user : users)
        user.join();
    return failed;
}

/// Meets something that no line does.
class TFailingReader : public TPortAcqThread
{
public:
    TFailingReader(TAcqBuffer& buffer, const std::string& port)
        : TPortAcqThread(buffer, port, standardBaud, standardKeepAliveFrames)
    {
    }
    ~TFailingReader() override { stopReading(); }

private:
    void stream() override { throw std::out_of_range("no such sample"); }
};

} // namespace

/// How a device begins and ends, and what it does when its line fails.
class PortAcqLinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startAndStopAreSaidTwice_data() { families(); }
    void startAndStopAreSaidTwice();
    void theDeviceIsKeptAliveEachMinute_data() { families(); }
    void theDeviceIsKeptAliveEachMinute();
    void aSilentDeviceIsAReadError_data() { families(); }
    void aSilentDeviceIsAReadError();
    void aCutLineIsAReadError_data() { families(); }
    void aCutLineIsAReadError();
    void aPortThatCannotBeOpenedIsAnError();
    void aFailedReaderStartsAgain_data() { families(); }
    void aFailedReaderStartsAgain();
    void aStopIsQuickWhileAReadWaits_data() { families(); }
    void aStopIsQuickWhileAReadWaits();
    void aStopIsQuickRightAfterTheStart();
    void aStopIsQuickWhileFramesPour_data() { families(); }
    void aStopIsQuickWhileFramesPour();
    void aDeviceMayGoWhileItReads_data() { families(); }
    void aDeviceMayGoWhileItReads();
    void whatNobodyExpectsIsAnErrorToo();
    void aThreadThatDoesNotStartIsAnError();
    void startsAndStopsLeaveNothingBehind();

private:
    static void families()
    {
        QTest::addColumn<bool>("highRate");
        QTest::newRow("standard") << false;
        QTest::newRow("high rate") << true;
    }
};

void PortAcqLinkTest::startAndStopAreSaidTwice()
{
    QFETCH(bool, highRate);
    const TSimulatedDevice simulated;
    const auto device = makeDevice(highRate, simulated.path());
    device->start();
    QVERIFY(simulated.waitForCommands("\1\1\t"));
    device->stop();
    QVERIFY(simulated.waitForCommands("\1\1\t\2\2"));
    // The simulator's own clock may be late by a turn, more on a busy machine.
    QVERIFY(simulated.msBetween(0, 1) >= 80);
    QVERIFY(simulated.msBetween(3, 4) >= 80);
    QVERIFY(device->isOk());
    QCOMPARE(device->lastError(), "");
}

void PortAcqLinkTest::theDeviceIsKeptAliveEachMinute()
{
    QFETCH(bool, highRate);
    const TFrameBytes family = familyOf(highRate);
    const int minute = highRate ? 60000 : 30000;
    TSimulatedDevice simulated;
    const auto device = makeDevice(highRate, simulated.path());
    QByteArray bytes;
    for (int i = 0; i < minute - 2; ++i)
        bytes += family.empty;
    const auto bytesOf = [highRate](int frames) { return (highRate ? frames / 2 : frames) * 28; };
    simulated.feed(bytes);
    device->start();
    QTRY_COMPARE_WITH_TIMEOUT(device->bytesAvailable(), bytesOf(minute - 2), 60000);
    simulated.feed(family.empty);
    QTest::qWait(50);
    QCOMPARE(simulated.commands(), QByteArray("\1\1\t"));
    simulated.feed(family.empty);
    QVERIFY(simulated.waitForCommands("\1\1\t\t\t"));
    simulated.feed(bytes + family.empty);
    QTRY_COMPARE_WITH_TIMEOUT(device->bytesAvailable(), bytesOf(2 * minute - 1), 60000);
    QTest::qWait(50);
    QCOMPARE(simulated.commands(), QByteArray("\1\1\t\t\t"));
    simulated.feed(family.empty);
    QVERIFY(simulated.waitForCommands("\1\1\t\t\t\t\t"));
}

void PortAcqLinkTest::aSilentDeviceIsAReadError()
{
    QFETCH(bool, highRate);
    const TSimulatedDevice simulated;
    const auto device = makeDevice(highRate, simulated.path());
    device->setReadTimeout(50);
    device->start();
    QTRY_VERIFY_WITH_TIMEOUT(!device->isOk(), 20000);
    QCOMPARE(device->lastError(), "Device read error");
    device->stop();
    // Nothing is said to a device that does not answer.
    QCOMPARE(simulated.commands(), QByteArray("\1\1\t"));
    QCOMPARE(device->lastError(), "Device read error");
}

void PortAcqLinkTest::aCutLineIsAReadError()
{
    QFETCH(bool, highRate);
    TSimulatedDevice simulated;
    const auto device = makeDevice(highRate, simulated.path());
    device->start();
    QVERIFY(simulated.waitForCommands("\1\1\t"));
    QElapsedTimer timer;
    timer.start();
    simulated.hangUp();
    QTRY_VERIFY(!device->isOk());
    QVERIFY(timer.elapsed() < 3000);
    QCOMPARE(device->lastError(), "Device read error");
    device->stop();
    device->start();
    QTRY_VERIFY(!device->isOk());
    QCOMPARE(device->lastError(), "No se pudo abrir el puerto (CreateFile)");
}

void PortAcqLinkTest::aPortThatCannotBeOpenedIsAnError()
{
    for (const char* path : {"ttyThatIsNone", "", "/", "/absent/tty"}) {
        const auto device = makeDevice(false, path);
        device->start();
        QTRY_VERIFY(!device->isOk());
        QCOMPARE(device->lastError(), "No se pudo abrir el puerto (CreateFile)");
        device->stop();
    }
}

void PortAcqLinkTest::aFailedReaderStartsAgain()
{
    QFETCH(bool, highRate);
    TSimulatedDevice simulated;
    const auto device = makeDevice(highRate, simulated.path());
    for (int i = 0; i < 3; ++i) {
        device->setReadTimeout(50);
        device->start();
        QTRY_VERIFY_WITH_TIMEOUT(!device->isOk(), 20000);
        simulated.forgetCommands();
        device->stop();
        device->setReadTimeout(10000);
        device->start();
        // The old failure is gone at once, or it would be restarted again.
        QVERIFY(device->isOk());
        QCOMPARE(device->lastError(), "");
        QVERIFY(simulated.waitForCommands("\1\1\t"));
        device->stop();
    }
    simulated.forgetCommands();
    simulated.feed(frames(familyOf(highRate), 0, 100));
    device->start();
    QTRY_COMPARE_WITH_TIMEOUT(device->bytesAvailable(), highRate ? 1400 : 2800, 20000);
    QVERIFY(device->isOk());
    QCOMPARE(device->lastError(), "");
}

void PortAcqLinkTest::aStopIsQuickWhileAReadWaits()
{
    QFETCH(bool, highRate);
    // The quickest of a few: the machine may be busy with something else.
    qint64 quickest = 10000;
    qint64 slowest = 0;
    for (int i = 0; i < 5 && quickest >= 200; ++i) {
        const TSimulatedDevice simulated;
        const auto device = makeDevice(highRate, simulated.path());
        device->start();
        QVERIFY(simulated.waitForCommands("\1\1\t"));
        QElapsedTimer timer;
        timer.start();
        device->stop();
        const qint64 ms = timer.elapsed();
        quickest = qMin(quickest, ms);
        slowest = qMax(slowest, ms);
        QVERIFY(device->isOk());
    }
    QVERIFY(quickest < 200);
    QVERIFY(quickest >= 99);
    QVERIFY(slowest < 2000);
}

void PortAcqLinkTest::aStopIsQuickRightAfterTheStart()
{
    for (const int delayMs : {0, 1, 5, 50}) {
        qint64 quickest = 10000;
        qint64 slowest = 0;
        for (int i = 0; i < 5 && quickest >= 200; ++i) {
            const TSimulatedDevice simulated;
            const auto device = makeDevice(false, simulated.path());
            device->start();
            QTest::qSleep(delayMs + 1);
            QElapsedTimer timer;
            timer.start();
            device->stop();
            const qint64 ms = timer.elapsed();
            quickest = qMin(quickest, ms);
            slowest = qMax(slowest, ms);
            QVERIFY(simulated.commands().endsWith("\2\2") || simulated.waitForCommands("\1\2\2"));
        }
        QVERIFY(quickest < 200);
        QVERIFY(slowest < 2000);
    }
}

void PortAcqLinkTest::aStopIsQuickWhileFramesPour()
{
    QFETCH(bool, highRate);
    qint64 quickest = 10000;
    qint64 slowest = 0;
    for (int i = 0; i < 5 && quickest >= 200; ++i) {
        TSimulatedDevice simulated;
        simulated.feed(frames(familyOf(highRate), 0, 100000));
        const auto device = makeDevice(highRate, simulated.path());
        device->start();
        QTRY_VERIFY_WITH_TIMEOUT(device->bytesAvailable() > 0, 20000);
        QElapsedTimer timer;
        timer.start();
        device->stop();
        const qint64 ms = timer.elapsed();
        quickest = qMin(quickest, ms);
        slowest = qMax(slowest, ms);
        QVERIFY(device->isOk());
    }
    QVERIFY(quickest < 200);
    QVERIFY(slowest < 2000);
}

void PortAcqLinkTest::aDeviceMayGoWhileItReads()
{
    QFETCH(bool, highRate);
    const TSimulatedDevice simulated;
    auto device = makeDevice(highRate, simulated.path());
    device->start();
    QVERIFY(simulated.waitForCommands("\1\1\t"));
    device.reset();
    QVERIFY(simulated.waitForCommands("\1\1\t\2\2"));
}

void PortAcqLinkTest::whatNobodyExpectsIsAnErrorToo()
{
    const TSimulatedDevice simulated;
    TAcqBuffer buffer;
    TFailingReader reader(buffer, simulated.path());
    reader.startReading();
    QTRY_VERIFY(reader.hasFailed());
    QCOMPARE(reader.errorText(), "Unexpected error");
    reader.stopReading();
    // The port has been closed.
    QVERIFY(simulated.waitForCommands("\1\1\t"));
    const auto device = makeDevice(false, simulated.path());
    device->start();
    QVERIFY(simulated.waitForCommands("\1\1\t\1\1\t"));
}

void PortAcqLinkTest::aThreadThatDoesNotStartIsAnError()
{
    TAcqBuffer buffer;
    TStdAcqThread reader(buffer, "ttyThatIsNone", standardBaud, -1);
    reader.setStackSize(1); // less than a thread can have
    reader.startReading();
    QVERIFY(reader.hasFailed());
    QCOMPARE(reader.errorText(), "Unexpected error");
    reader.stopReading();
}

void PortAcqLinkTest::startsAndStopsLeaveNothingBehind()
{
    // Side by side, as each takes its tenth of a second.
    constexpr int cycles = 25;
    const TSimulatedDevice simulated[8];
    std::vector<std::unique_ptr<TPortAcqDevice>> devices;
    for (const TSimulatedDevice& one : simulated)
        devices.push_back(makeDevice(devices.size() % 2 == 0, one.path()));
    int failed = startAndStop(devices, 1);
    const int descriptors = openDescriptors();
    // A thread that has just ended may still count here, so fewer are right later; leaked ones would be
    // hundreds more.
    const int threads = runningThreads();
    failed += startAndStop(devices, cycles);
    QCOMPARE(failed, 0);
    QCOMPARE(openDescriptors(), descriptors);
    QTRY_VERIFY(runningThreads() <= threads);
    devices.clear();
    for (int i = 0; i < 8; ++i)
        devices.push_back(makeDevice(i % 2 == 0, "ttyThatIsNone"));
    QTRY_VERIFY(runningThreads() <= threads);
    // Each port has an event of its own only while its reader runs.
    startAndStop(devices, cycles);
    QCOMPARE(openDescriptors(), descriptors);
    QTRY_VERIFY(runningThreads() <= threads);
}

QTEST_GUILESS_MAIN(PortAcqLinkTest)
#include "PortAcqLinkTest.moc"
