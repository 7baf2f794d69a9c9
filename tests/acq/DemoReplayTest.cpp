#include "acq/AcqChannels.h"
#include "acq/DemoFile.h"
#include "acq/TAcqListener.h"
#include "acq/TDemoAcqDevice.h"
#include "acq/TQtAcqDriver.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <functional>

/// Counts the samples of the signal that are not those of the file, as they come.
class FrameChecker : public TAcqListener
{
public:
    using TExpected = std::function<int(int channel, int frame)>;

    FrameChecker(std::vector<int> channels, int framesInFile, TExpected expected = DemoFile::sampleAt)
        : m_channels(std::move(channels)), m_framesInFile(framesInFile), m_expected(std::move(expected))
    {
    }

    void dataCallback(TAcqDriver* driver) override
    {
        TSignal* const signal = driver->signal();
        for (; m_checked < signal->sampleCount(); ++m_checked) {
            for (std::size_t i = 0; i < m_channels.size(); ++i) {
                if (signal->sample(static_cast<int>(i), m_checked) !=
                    m_expected(m_channels[i], m_checked % m_framesInFile))
                    ++m_differing;
            }
        }
    }
    void pacemakerCallback(TAcqDriver*, int) override { ++m_others; }
    void errorCallback(TAcqDriver*, const char*) override { ++m_others; }
    void communicationFailedCallback(TAcqDriver*) override { ++m_others; }

    int checked() const { return m_checked; }
    int differing() const { return m_differing; }
    int others() const { return m_others; }

private:
    const std::vector<int> m_channels;
    const int m_framesInFile;
    const TExpected m_expected;
    int m_checked = 0;
    int m_differing = 0;
    int m_others = 0;
};

/// From the file to the signal on the main thread.
class DemoReplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySampleArrivesOverTwoLoops_data()
    {
        QTest::addColumn<int>("mask");
        QTest::newRow("all channels") << -1;
        QTest::newRow("reduced channels") << 1154;
    }

    void everySampleArrivesOverTwoLoops()
    {
        QFETCH(int, mask);
        constexpr int frames = 3001;
        const DemoFile file(14, frames, QByteArray(), QByteArray(9, 'r'));
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, mask);
        const auto signal = signalFor(device);
        FrameChecker checker(acq::selectedChannels(mask, 14), frames);
        replay(device, *signal, checker, 2 * frames + 100);
        QCOMPARE(checker.differing(), 0);
        QCOMPARE(checker.others(), 0);
    }

    void everySampleArrivesAtFullSpeed()
    {
        constexpr int frames = 9000;
        const DemoFile file(14, frames);
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, -1);
        device.setPaced(false);
        const auto signal = signalFor(device);
        FrameChecker checker(acq::selectedChannels(-1, 14), frames);
        TQtAcqDriver driver(&device, signal.get());
        driver.setPendingBlockLimit(4);
        driver.addListener(&checker);
        driver.start();
        QTRY_VERIFY_WITH_TIMEOUT(checker.checked() >= 3 * frames, 60000);
        driver.stop();
        QCOMPARE(checker.differing(), 0);
        QCOMPARE(checker.others(), 0);
    }

    void tenLoopsOfTheDemoRecordingKeepMemoryBounded()
    {
        QFile file(QStringLiteral(ECG500));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray recording = file.readAll();
        QCOMPARE(recording.size() % frameBytes, 0);
        const int frames = recording.size() / frameBytes;
        QVERIFY(frames >= 60 * 500);
        TDemoAcqDevice device(ECG500, 14, 500, 2, 16, 300.0, 0, -1);
        const auto signal = signalFor(device);
        FrameChecker checker(acq::selectedChannels(-1, 14), frames, [&recording](int channel, int frame) {
            return qFromLittleEndian<qint16>(recording.constData() + frame * frameBytes + channel * 2);
        });
        const qint64 before = residentBytes();
        replay(device, *signal, checker, 10 * frames + 2500);
        QCOMPARE(checker.differing(), 0);
        QCOMPARE(checker.others(), 0);
        QVERIFY(m_mostQueued <= (2500 + 13) * 28);
        // What has been replayed is some 25 MB.
        QVERIFY(qint64(checker.checked()) * frameBytes > 20 * 1024 * 1024);
        if (before > 0)
            QVERIFY2(residentBytes() - before < 12 * 1024 * 1024, "memory grows with the recording");
        // Each sleep is cut to whole milliseconds, by one at most of every 26.
        const double seconds = m_sleptMs / 1000.0;
        QVERIFY(seconds <= checker.checked() / 500.0 + 10.0);
        QVERIFY(seconds >= frames * 10 / 500.0 * 25.0 / 26.0);
    }

private:
    static constexpr int frameBytes = 28;

    static std::unique_ptr<TInt16Signal> signalFor(const TDemoAcqDevice& device)
    {
        return std::make_unique<TInt16Signal>(4096, 10000, device.channelCount(), device.samplingRate());
    }

    /// By a clock that runs as fast as the samples are taken.
    void replay(TDemoAcqDevice& device, TSignal& signal, FrameChecker& checker, int frames)
    {
        m_sleptMs = 0;
        m_mostQueued = 0;
        const int room = 2500 * device.channelCount() * 2;
        device.setSleep([this, &device, room](int milliseconds) {
            m_sleptMs += milliseconds;
            m_mostQueued = std::max<int>(m_mostQueued, device.bytesAvailable());
            while (device.bytesAvailable() > room && !QThread::currentThread()->isInterruptionRequested())
                QThread::yieldCurrentThread();
        });
        TQtAcqDriver driver(&device, &signal);
        driver.setPendingBlockLimit(4);
        driver.addListener(&checker);
        driver.start();
        QTRY_VERIFY_WITH_TIMEOUT(checker.checked() >= frames, 120000);
        driver.stop();
    }

    /// 0 where the system does not tell, or where a sanitizer keeps freed memory back.
    static qint64 residentBytes()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return 0;
#endif
        QFile file(QStringLiteral("/proc/self/statm"));
        if (!file.open(QIODevice::ReadOnly))
            return 0;
        return file.readAll().split(' ').value(1).toLongLong() * 4096;
    }

    std::atomic<int> m_sleptMs = 0;
    std::atomic<int> m_mostQueued = 0;
};

QTEST_GUILESS_MAIN(DemoReplayTest)
#include "DemoReplayTest.moc"
