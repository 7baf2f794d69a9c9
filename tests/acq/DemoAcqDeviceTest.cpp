#include "acq/DemoFile.h"
#include "acq/TDemoAcqDevice.h"
#include "base/Error.h"

#include <QtTest>

#include <cstring>
#include <mutex>
#include <numeric>

/// A clock that stands still: it notes the sleeps and what lay in the queue at each, up to a number of them;
/// then the reader waits for its end.
class SleepLog
{
public:
    struct TSleep
    {
        int milliseconds;
        int bytesQueued;
    };

    SleepLog(TDemoAcqDevice& device, std::size_t limit) : m_device(device), m_limit(limit)
    {
        device.setSleep([this](int milliseconds) { sleep(milliseconds); });
    }

    std::vector<TSleep> sleeps() const
    {
        const std::lock_guard lock(m_mutex);
        return m_sleeps;
    }

    bool isFull() const { return sleeps().size() >= m_limit; }

private:
    void sleep(int milliseconds)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_sleeps.size() < m_limit) {
                m_sleeps.push_back({milliseconds, m_device.bytesAvailable()});
                return;
            }
        }
        while (!QThread::currentThread()->isInterruptionRequested())
            QThread::msleep(1);
    }

    TDemoAcqDevice& m_device;
    const std::size_t m_limit;
    mutable std::mutex m_mutex;
    std::vector<TSleep> m_sleeps;
};

class DemoAcqDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMissingFileIsRefused_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("missing") << QFile::encodeName(m_folder.filePath(QStringLiteral("none.dat")));
        QTest::newRow("folder") << QFile::encodeName(m_folder.path());
        QTest::newRow("no name") << QByteArray("");
    }

    void aMissingFileIsRefused()
    {
        QFETCH(QByteArray, path);
        QString text;
        try {
            const TDemoAcqDevice device(path.constData(), 14, 500, 2, 16, 300.0, 0, -1);
        } catch (const TError& error) {
            text = error.text();
        }
        QCOMPARE(text, QStringLiteral("Cannot open file"));
    }

    void itTellsWhatItDelivers()
    {
        const DemoFile file(14, 3);
        QVERIFY(file.isValid());
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, -1);
        QCOMPARE(device.channelCount(), 14);
        QCOMPARE(device.samplingRate(), 500);
        QCOMPARE(device.bytesPerSample(), 2);
        QCOMPARE(device.resolutionBits(), 16);
        QCOMPARE(device.rangeMin(), -300.0);
        QCOMPARE(device.rangeMax(), 300.0);
        QCOMPARE(device.batteryVoltage(), 0.0);
        QCOMPARE(device.lastError(), "");
        QCOMPARE(device.nextPacemakerPulse(), 0);
        QVERIFY(device.isOk());
        QVERIFY(!device.isWaiting());
        QVERIFY(!device.isChannelSaturated(0));
        QVERIFY(!device.isElectrodeOff("LA"));
        QCOMPARE(device.bytesAvailable(), 0);
    }

    void namesFollowTheMask_data()
    {
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("mask");
        QTest::addColumn<QString>("names");
        const QString all = QStringLiteral("I II III aVR aVL aVF V1 V2 V3 V4 V5 V6 CM5 CR5");
        QTest::newRow("14, all") << 14 << -1 << all;
        QTest::newRow("16, all") << 16 << -1 << all + QStringLiteral(" XX1 XX2");
        QTest::newRow("14, reduced") << 14 << 1154 << QStringLiteral("II V2 V5");
        QTest::newRow("16, reduced") << 16 << 1154 << QStringLiteral("II V2 V5");
        QTest::newRow("3, all") << 3 << -1 << QStringLiteral("I II III");
        QTest::newRow("none") << 14 << 0 << QString();
    }

    void namesFollowTheMask()
    {
        QFETCH(int, channels);
        QFETCH(int, mask);
        const DemoFile file(channels, 3);
        TDemoAcqDevice device(file.path(), channels, 500, 2, 16, 300.0, 0, mask);
        QStringList names;
        for (int i = 0; i < device.channelCount(); ++i)
            names += QString::fromLatin1(device.channelName(i));
        QTEST(names.join(QLatin1Char(' ')), "names");
        QCOMPARE(device.channelName(-1), "");
        QCOMPARE(device.channelName(device.channelCount()), "");
    }

    void theFileComesOverAndOverWithoutItsRest_data()
    {
        QTest::addColumn<QByteArray>("rest");
        QTest::newRow("whole frames") << QByteArray();
        QTest::newRow("one byte more") << QByteArray(1, 'r');
        QTest::newRow("nearly a frame more") << QByteArray(27, 'r');
    }

    void theFileComesOverAndOverWithoutItsRest()
    {
        QFETCH(QByteArray, rest);
        const DemoFile file(14, 40, QByteArray(), rest);
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, -1);
        const auto samples = firstSamples(device, 100 * 14);
        for (int frame = 0; frame < 100; ++frame) {
            for (int channel = 0; channel < 14; ++channel)
                QCOMPARE(samples[frame * 14 + channel], DemoFile::sampleAt(channel, frame % 40));
        }
    }

    void framesBeginAtTheOffset()
    {
        const DemoFile file(14, 40, QByteArray(100, 'h'), QByteArray(5, 'r'));
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 100, -1);
        const auto samples = firstSamples(device, 60 * 14);
        for (int frame = 0; frame < 60; ++frame)
            QCOMPARE(samples[frame * 14 + 3], DemoFile::sampleAt(3, frame % 40));
    }

    void onlyTheSelectedChannelsComeAtTheSameRate()
    {
        const DemoFile file(14, 40);
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, 1154);
        const SleepLog log(device, 4);
        const auto samples = firstSamples(device, 50 * 3, log);
        for (int frame = 0; frame < 50; ++frame) {
            QCOMPARE(samples[frame * 3], DemoFile::sampleAt(1, frame % 40));
            QCOMPARE(samples[frame * 3 + 1], DemoFile::sampleAt(7, frame % 40));
            QCOMPARE(samples[frame * 3 + 2], DemoFile::sampleAt(10, frame % 40));
        }
        QCOMPARE(log.sleeps().front().bytesQueued, 13 * 3 * 2);
    }

    void thirteenFramesComeInABurstThenASleepAsLong()
    {
        const DemoFile file(14, 40);
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, -1);
        const SleepLog log(device, 200);
        runUntilFull(device, log);
        int total = 0;
        int queued = 0;
        for (const auto& sleep : log.sleeps()) {
            QCOMPARE(sleep.bytesQueued - queued, 13 * 28);
            queued = sleep.bytesQueued;
            QVERIFY(sleep.milliseconds == 25 || sleep.milliseconds == 26);
            total += sleep.milliseconds;
        }
        QVERIFY(total > 200 * 25 && total <= 200 * 26);
    }

    void pacingCountsTheBytesOfTheFile_data()
    {
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("samplingRate");
        QTest::addColumn<int>("framesPerBurst");
        QTest::newRow("1000 per second") << 14 << 1000 << 26;
        QTest::newRow("three channels") << 3 << 500 << 13;
        QTest::newRow("10 per second") << 14 << 10 << 1;
    }

    void pacingCountsTheBytesOfTheFile()
    {
        QFETCH(int, channels);
        QFETCH(int, samplingRate);
        QFETCH(int, framesPerBurst);
        const DemoFile file(channels, 40);
        TDemoAcqDevice device(file.path(), channels, samplingRate, 2, 16, 300.0, 0, -1);
        const SleepLog log(device, 3);
        runUntilFull(device, log);
        const auto sleeps = log.sleeps();
        QCOMPARE(sleeps[0].bytesQueued, framesPerBurst * channels * 2);
        const int expected = 1000 * framesPerBurst / samplingRate;
        QVERIFY(std::abs(sleeps[0].milliseconds - expected) <= 1);
    }

    void aFileShorterThanAFrameComesAsItStands()
    {
        // Two samples and half a one, zeros behind them; each turn counts as its five bytes.
        const DemoFile file(QByteArray("\x01\x02\x03\x04\x05", 5));
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, -1);
        const SleepLog log(device, 2);
        const auto samples = firstSamples(device, 3 * 14, log);
        for (int frame = 0; frame < 3; ++frame) {
            QCOMPARE(samples[frame * 14], qint16(0x0201));
            QCOMPARE(samples[frame * 14 + 1], qint16(0x0403));
            QCOMPARE(samples[frame * 14 + 2], qint16(0x0005));
            QCOMPARE(samples[frame * 14 + 3], qint16(0));
        }
        QCOMPARE(log.sleeps()[0].bytesQueued, 71 * 28); // 71 * 5 bytes are just more than 25 ms
        QCOMPARE(log.sleeps()[0].milliseconds, 25);
    }

    void whereThereIsNothingTheReaderSleeps_data()
    {
        QTest::addColumn<int>("fileSize");
        QTest::addColumn<int>("offset");
        QTest::newRow("empty") << 0 << 0;
        QTest::newRow("offset at the end") << 280 << 280;
        QTest::newRow("offset beyond the end") << 280 << 1000;
    }

    void whereThereIsNothingTheReaderSleeps()
    {
        QFETCH(int, fileSize);
        QFETCH(int, offset);
        const DemoFile file(QByteArray(fileSize, 'x'));
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, offset, -1);
        const SleepLog log(device, 5);
        runUntilFull(device, log);
        for (const auto& sleep : log.sleeps()) {
            QCOMPARE(sleep.milliseconds, 25);
            QCOMPARE(sleep.bytesQueued, 0);
        }
        QVERIFY(device.isOk());
    }

    void otherSampleSizesGiveNothing_data()
    {
        QTest::addColumn<int>("bytesPerSample");
        QTest::newRow("1") << 1;
        QTest::newRow("3") << 3;
        QTest::newRow("4") << 4;
    }

    void otherSampleSizesGiveNothing()
    {
        QFETCH(int, bytesPerSample);
        const DemoFile file(14, 40);
        TDemoAcqDevice device(file.path(), 14, 500, bytesPerSample, 16, 300.0, 0, -1);
        const SleepLog log(device, 10);
        runUntilFull(device, log);
        QCOMPARE(device.bytesAvailable(), 0);
        QVERIFY(log.sleeps()[0].milliseconds == 25 || log.sleeps()[0].milliseconds == 26);
    }

    void withoutPacingNothingWantedTakesNoProcessor_data()
    {
        QTest::addColumn<int>("bytesPerSample");
        QTest::addColumn<int>("mask");
        QTest::newRow("no channel") << 2 << 0;
        QTest::newRow("another sample size") << 4 << -1;
    }

    void withoutPacingNothingWantedTakesNoProcessor()
    {
        QFETCH(int, bytesPerSample);
        QFETCH(int, mask);
        const DemoFile file(14, 40);
        TDemoAcqDevice device(file.path(), 14, 500, bytesPerSample, 16, 300.0, 0, mask);
        device.setPaced(false);
        const SleepLog log(device, 10);
        runUntilFull(device, log);
        QCOMPARE(device.bytesAvailable(), 0);
        for (const SleepLog::TSleep& sleep : log.sleeps())
            QVERIFY(sleep.milliseconds >= 1);
    }

    void withoutPacingFiveSecondsWaitAtMost()
    {
        const DemoFile file(14, 40);
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, -1);
        device.setPaced(false);
        device.start();
        QTRY_VERIFY(device.bytesAvailable() > 2500 * 28);
        QTest::qSleep(30);
        QCOMPARE(device.bytesAvailable(), 2501 * 28);
        std::vector<char> taken(1000 * 28);
        QCOMPARE(device.read(taken.data(), 1000 * 28), 1000 * 28);
        QTRY_COMPARE(device.bytesAvailable(), 2501 * 28);
        device.stop();
    }

    void aStoppedDeviceStartsAgainFromTheBeginning()
    {
        const DemoFile file(14, 40);
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, -1);
        for (int turn = 0; turn < 3; ++turn) {
            const SleepLog log(device, 3);
            const auto samples = firstSamples(device, 39 * 14, log);
            QCOMPARE(samples[0], DemoFile::sampleAt(0, 0));
            QCOMPARE(device.bytesAvailable(), 13 * 28); // the burst before the sleep that was cut short
            std::vector<char> rest(13 * 28);
            QCOMPARE(device.read(rest.data(), 13 * 28), 13 * 28);
        }
    }

    void itPlaysInRealTime()
    {
        const DemoFile file(14, 40);
        TDemoAcqDevice device(file.path(), 14, 500, 2, 16, 300.0, 0, -1);
        QElapsedTimer time;
        time.start();
        device.start();
        QTRY_VERIFY(device.bytesAvailable() >= 130 * 28);
        QVERIFY(time.elapsed() >= 9 * 25); // nine whole sleeps lie before the tenth burst
        device.stop();
    }

private:
    static void runUntilFull(TDemoAcqDevice& device, const SleepLog& log)
    {
        device.start();
        QTRY_VERIFY(log.isFull());
        device.stop();
    }

    static std::vector<qint16> firstSamples(TDemoAcqDevice& device, int count, const SleepLog& log)
    {
        std::vector<qint16> samples(count);
        device.start();
        if (!QTest::qWaitFor([&] { return log.isFull() && device.bytesAvailable() >= count * 2; }, 10000) ||
            device.read(reinterpret_cast<char*>(samples.data()), count * 2) != count * 2)
            samples.assign(count, -1);
        device.stop();
        return samples;
    }

    static std::vector<qint16> firstSamples(TDemoAcqDevice& device, int count)
    {
        const SleepLog log(device, static_cast<std::size_t>(count));
        return firstSamples(device, count, log);
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(DemoAcqDeviceTest)
#include "DemoAcqDeviceTest.moc"
