#include "acq/FakeAcqDevice.h"
#include "acq/TQtAcqDriverThread.h"
#include "base/Error.h"

#include <QtTest>

#include <stdexcept>

Q_DECLARE_METATYPE(std::function<void()>)

/// What the pump emits, taken on its own thread.
class PumpLog : public QObject
{
public:
    explicit PumpLog(TQtAcqDriverThread& pump)
    {
        connect(
            &pump, &TQtAcqDriverThread::data, this,
            [this](const QVector<char>& block) {
                const std::lock_guard lock(m_mutex);
                m_events += QStringLiteral("data");
                m_blocks.push_back(block);
            },
            Qt::DirectConnection);
        connect(
            &pump, &TQtAcqDriverThread::pacemaker, this,
            [this](int sampleOffset) { add(QStringLiteral("pulse %1").arg(sampleOffset)); },
            Qt::DirectConnection);
        connect(
            &pump, &TQtAcqDriverThread::error, this,
            [this, &pump] { add(QStringLiteral("error ") + pump.errorText()); }, Qt::DirectConnection);
    }

    QStringList events() const
    {
        const std::lock_guard lock(m_mutex);
        return m_events;
    }

    std::vector<QVector<char>> blocks() const
    {
        const std::lock_guard lock(m_mutex);
        return m_blocks;
    }

    QVector<int> frameCounts(int frameBytes) const
    {
        QVector<int> counts;
        for (const QVector<char>& block : blocks())
            counts += block.size() % frameBytes == 0 ? block.size() / frameBytes : -1;
        return counts;
    }

private:
    void add(const QString& event)
    {
        const std::lock_guard lock(m_mutex);
        m_events += event;
    }

    mutable std::mutex m_mutex;
    QStringList m_events;
    std::vector<QVector<char>> m_blocks;
};

class AcqPumpTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_device = std::make_unique<FakeAcqDevice>();
        m_muted = std::make_unique<TQtAcqDriverThread::TMuteFlags>(14);
        m_pump = std::make_unique<TQtAcqDriverThread>(m_device.get(), *m_muted);
        m_log = std::make_unique<PumpLog>(*m_pump);
    }

    void cleanup()
    {
        QVERIFY(ended());
        m_pump.reset();
    }

    void fiftyOneFramesAreABlock()
    {
        m_device->pushFrames(51);
        m_pump->start();
        QTRY_COMPARE(frameCounts(), QVector<int>{51});
        QCOMPARE(m_device->bytesAvailable(), 0);
        QCOMPARE(bytesOf(m_log->blocks().front()), m_device->frames(0, 51));
    }

    void fiftyFramesWaitForTheNext()
    {
        m_device->pushFrames(50);
        m_pump->start();
        QTest::qWait(100);
        QCOMPARE(frameCounts(), QVector<int>());
        m_device->pushFrames(1);
        QTRY_COMPARE(frameCounts(), QVector<int>{51});
    }

    void theLeastBlockFollowsTheSamplingRate()
    {
        FakeAcqDevice device(3, 259);
        TQtAcqDriverThread pump(&device, *m_muted);
        const PumpLog log(pump);
        device.pushFrames(1295 + 26);
        pump.start();
        QTRY_COMPARE(log.frameCounts(6), (QVector<int>{1295, 26}));
        device.pushFrames(25);
        QTest::qWait(50);
        pump.requestInterruption();
        QVERIFY(pump.waitForEnd(5000));
        QCOMPARE(log.frameCounts(6), (QVector<int>{1295, 26}));
    }

    void aLongQueueComesInBlocksOfFiveSeconds()
    {
        m_device->pushFrames(2 * 2500 + 60);
        m_pump->start();
        QTRY_COMPARE(frameCounts(), (QVector<int>{2500, 2500, 60}));
        std::vector<char> all;
        for (const QVector<char>& block : m_log->blocks())
            all.insert(all.end(), block.begin(), block.end());
        QCOMPARE(all, m_device->frames(0, 5060));
    }

    void exactlyFiveSecondsAreOneBlock()
    {
        m_device->pushFrames(2500);
        m_pump->start();
        QTRY_COMPARE(frameCounts(), QVector<int>{2500});
    }

    void aPartOfAFrameStaysBehind()
    {
        m_device->pushFrames(51);
        m_device->promisedBytes = 27;
        m_pump->start();
        QTRY_COMPARE(frameCounts(), QVector<int>{51});
        QCOMPARE(m_device->bytesAvailable(), 27);
    }

    void aShortReadIsFatal()
    {
        m_device->pushFrames(60);
        m_device->promisedBytes = m_device->frameBytes();
        m_pump->start();
        QVERIFY(m_pump->waitForEnd(5000));
        QCOMPARE(m_log->events(), QStringList{QStringLiteral("error Device read error")});
        QCOMPARE(int(m_device->stops), 1);
    }

    void aNegativeReadIsFatal()
    {
        m_device->pushFrames(60);
        m_device->readFails = true;
        m_pump->start();
        QVERIFY(m_pump->waitForEnd(5000));
        QCOMPARE(m_log->events(), QStringList{QStringLiteral("error Device read error")});
        QCOMPARE(int(m_device->stops), 1);
    }

    void anInterruptedPumpStopsTheDeviceWithoutAnError()
    {
        m_pump->start();
        QTRY_COMPARE(int(m_device->starts), 1);
        QVERIFY(ended());
        QCOMPARE(int(m_device->stops), 1);
        QCOMPARE(m_log->events(), QStringList());
    }

    void aDeviceThatIsDeadAtTheEndIsAnError()
    {
        m_device->ok = false;
        m_pump->start();
        QTRY_VERIFY(m_device->starts >= 2);
        QCOMPARE(m_log->events(), QStringList());
        QVERIFY(ended());
        QCOMPARE(m_log->events(), QStringList{QStringLiteral("error Device read error")});
    }

    void aDeadDeviceIsRestartedWithoutAnError()
    {
        m_device->startRevives = true;
        m_device->pushFrames(51);
        m_pump->start();
        QTRY_COMPARE(frameCounts(), QVector<int>{51});
        m_device->ok = false;
        QTRY_COMPARE(int(m_device->starts), 2);
        QCOMPARE(int(m_device->stops), 1);
        m_device->pushFrames(52);
        QTRY_COMPARE(frameCounts(), (QVector<int>{51, 52}));
        QVERIFY(ended());
        QCOMPARE(m_log->events(), (QStringList{QStringLiteral("data"), QStringLiteral("data")}));
    }

    void mutedChannelsAreZerosInTheirPlace()
    {
        for (const int channel : {0, 4, 13})
            (*m_muted)[channel] = 1;
        m_device->pushFrames(51);
        m_pump->start();
        QTRY_COMPARE(frameCounts(), QVector<int>{51});
        QCOMPARE(bytesOf(m_log->blocks().front()), withZeros(m_device->frames(0, 51), {0, 4, 13}));
    }

    void fewerMuteFlagsThanChannelsMuteThose()
    {
        TQtAcqDriverThread::TMuteFlags flags(2);
        flags[1] = 1;
        TQtAcqDriverThread pump(m_device.get(), flags);
        const PumpLog log(pump);
        m_device->pushFrames(51);
        pump.start();
        QTRY_COMPARE(log.blocks().size(), std::size_t(1));
        pump.requestInterruption();
        QVERIFY(pump.waitForEnd(5000));
        QCOMPARE(bytesOf(log.blocks().front()), withZeros(m_device->frames(0, 51), {1}));
    }

    void aResetComesOnceWithTheNextBlock()
    {
        m_pump->requestReset(); // before the start: of no effect
        m_pump->start();
        m_device->pushFrames(51);
        QTRY_COMPARE(frameCounts(), QVector<int>{51});
        QCOMPARE(int(m_device->resets), 0);
        m_pump->requestReset();
        QTest::qWait(50);
        QCOMPARE(int(m_device->resets), 0);
        m_device->pushFrames(51);
        QTRY_COMPARE(int(m_device->resets), 1);
        m_device->pushFrames(51);
        QTRY_COMPARE(frameCounts(), (QVector<int>{51, 51, 51}));
        QCOMPARE(int(m_device->resets), 1);
    }

    void pulsesComeBeforeTheirBlock()
    {
        m_device->pushPulse(17);
        m_device->pushPulse(-3);
        m_pump->start();
        QTest::qWait(50);
        QCOMPARE(m_log->events(), QStringList());
        m_device->pushFrames(51);
        QTRY_COMPARE(m_log->events(), (QStringList{QStringLiteral("pulse 17"), QStringLiteral("pulse -3"),
                                                   QStringLiteral("data")}));
        QCOMPARE(m_pump->lastPulse(), -3);
    }

    void pulsesWithoutEndDoNotKeepThePumpFromEnding()
    {
        m_device->endlessPulse = 5;
        m_device->pushFrames(51);
        m_pump->start();
        QTRY_VERIFY(m_log->events().size() > 3);
        QVERIFY(ended());
    }

    void exceptionsBecomeTexts_data()
    {
        QTest::addColumn<std::function<void()>>("onStart");
        QTest::addColumn<QString>("text");
        QTest::newRow("ours") << std::function<void()>([] { throw TError("Gerät fort"); })
                              << QStringLiteral("Error: Gerät fort");
        QTest::newRow("standard") << std::function<void()>([] { throw std::out_of_range("far off"); })
                                  << QStringLiteral("Unspecified application error");
        QTest::newRow("other") << std::function<void()>([] { throw 7; })
                               << QStringLiteral("Unspecified application error");
    }

    void exceptionsBecomeTexts()
    {
        QFETCH(std::function<void()>, onStart);
        QFETCH(QString, text);
        m_device->onStart = onStart;
        m_pump->start();
        QVERIFY(m_pump->waitForEnd(5000));
        QCOMPARE(m_log->events(), QStringList{QStringLiteral("error ") + text});
        QCOMPARE(int(m_device->stops), 1);
    }

    void aDeviceWithoutChannelsGivesNothing()
    {
        FakeAcqDevice device(0);
        device.promisedBytes = 100000;
        TQtAcqDriverThread pump(&device, *m_muted);
        const PumpLog log(pump);
        pump.start();
        QTest::qWait(30);
        pump.requestInterruption();
        QVERIFY(pump.waitForEnd(5000));
        QCOMPARE(log.events(), QStringList());
    }

    void aLimitOfPendingBlocksLeavesTheRestWithTheDevice()
    {
        m_pump->setPendingBlockLimit(2);
        m_device->pushFrames(3 * 2500);
        m_pump->start();
        QTRY_COMPARE(frameCounts(), (QVector<int>{2500, 2500}));
        QTest::qWait(50);
        QCOMPARE(m_device->bytesAvailable(), 2500 * m_device->frameBytes());
        m_pump->blockArrived();
        QTRY_COMPARE(frameCounts(), (QVector<int>{2500, 2500, 2500}));
    }

    void aLargestBlockCutsALongQueue()
    {
        m_pump->setLargestBlock(100);
        m_device->pushFrames(3 * 100 + 51);
        m_pump->start();
        QTRY_COMPARE(frameCounts(), (QVector<int>{100, 100, 100, 51}));
        std::vector<char> all;
        for (const QVector<char>& block : m_log->blocks())
            all.insert(all.end(), block.begin(), block.end());
        QCOMPARE(all, m_device->frames(0, 351));
    }

    void theLargestBlockIsNeverBelowTheLeast()
    {
        m_pump->setLargestBlock(1);
        m_device->pushFrames(3 * 51 + 50);
        m_pump->start();
        QTRY_COMPARE(frameCounts(), (QVector<int>{51, 51, 51}));
        QTest::qWait(30);
        QCOMPARE(m_device->bytesAvailable(), 50 * m_device->frameBytes());
    }

    void aLargestBlockBeyondFiveSecondsChangesNothing()
    {
        m_pump->setLargestBlock(100000);
        m_device->pushFrames(2500 + 60);
        m_pump->start();
        QTRY_COMPARE(frameCounts(), (QVector<int>{2500, 60}));
    }

private:
    bool ended()
    {
        m_pump->requestInterruption();
        return m_pump->waitForEnd(5000);
    }

    QVector<int> frameCounts() const { return m_log->frameCounts(m_device->frameBytes()); }

    static std::vector<char> bytesOf(const QVector<char>& block) { return {block.begin(), block.end()}; }

    static std::vector<char> withZeros(std::vector<char> frames, const std::vector<int>& channels)
    {
        for (std::size_t start = 0; start < frames.size(); start += 28) {
            for (const int channel : channels)
                frames[start + 2 * channel] = frames[start + 2 * channel + 1] = 0;
        }
        return frames;
    }

    std::unique_ptr<FakeAcqDevice> m_device;
    std::unique_ptr<TQtAcqDriverThread::TMuteFlags> m_muted;
    std::unique_ptr<TQtAcqDriverThread> m_pump;
    std::unique_ptr<PumpLog> m_log;
};

QTEST_GUILESS_MAIN(AcqPumpTest)
#include "AcqPumpTest.moc"
