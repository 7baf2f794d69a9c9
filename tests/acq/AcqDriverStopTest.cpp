#include "acq/FakeAcqDevice.h"
#include "acq/ListenerLog.h"
#include "acq/TDemoAcqDevice.h"
#include "acq/TQtAcqDriver.h"
#include "analysis/signals/TInt16Signal.h"

#include <QTemporaryDir>
#include <QtTest>

#include <thread>

/// A pump that is not released hangs these tests; ctest ends them then.
class AcqDriverStopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log.clear();
        m_device = std::make_unique<FakeAcqDevice>();
        m_signal = std::make_unique<TInt16Signal>(4096, 10000, 14, 500);
        m_driver = std::make_unique<TQtAcqDriver>(m_device.get(), m_signal.get());
        m_listener = std::make_unique<ListenerLog>(m_log);
        m_driver->addListener(m_listener.get());
    }

    void cleanup() { m_driver.reset(); }

    void aDriverMayGoWithoutAStart()
    {
        m_driver.reset();
        QCOMPARE(int(m_device->starts), 0);
        QCOMPARE(int(m_device->stops), 0);
    }

    void stoppingWithoutAStartDoesNothing()
    {
        m_driver->stop();
        QCOMPARE(int(m_device->stops), 0);
    }

    void theDestructorStops()
    {
        m_driver->start();
        QTRY_COMPARE(int(m_device->starts), 1);
        m_driver.reset();
        QCOMPARE(int(m_device->stops), 1);
    }

    void stoppingReleasesAPumpWhoseErrorIsPosted()
    {
        m_device->pushFrames(60);
        m_driver->start();
        waitUntilTheQueueIsTaken();
        m_device->readFails = true;
        m_device->pushFrames(60);
        waitUntilTheQueueIsTaken();
        m_driver->stop();
        QCOMPARE(int(m_device->stops), 1);
        QCOMPARE(m_log, QStringList());
        QCoreApplication::processEvents();
        QCOMPARE(m_log, QStringList{QStringLiteral("data 60")});
    }

    void stoppingReleasesAPumpWhosePulseIsPosted()
    {
        m_device->pushFrames(60);
        m_driver->start();
        waitUntilTheQueueIsTaken();
        m_device->pushPulse(5);
        m_device->pushPulse(6);
        m_device->pushFrames(60);
        waitUntilTheQueueIsTaken();
        m_driver->stop();
        QCOMPARE(int(m_device->stops), 1);
        QCoreApplication::processEvents();
        QCOMPARE(m_log, QStringList{QStringLiteral("data 60")});
    }

    void theDestructorReleasesThePump()
    {
        m_device->readFails = true;
        m_device->pushFrames(60);
        m_driver->start();
        waitUntilTheQueueIsTaken();
        m_driver.reset();
        QCOMPARE(int(m_device->stops), 1);
        QCOMPARE(m_log, QStringList());
    }

    void stoppingInABlockReleasesAPumpWhoseErrorIsPosted()
    {
        m_listener->onData = [this] {
            m_device->readFails = true;
            m_device->pushFrames(60);
            waitUntilTheQueueIsTaken();
            m_driver->stop();
        };
        m_device->pushFrames(60);
        m_driver->start();
        QTRY_COMPARE(int(m_device->stops), 1);
        QCoreApplication::processEvents();
        QCOMPARE(m_log, QStringList{QStringLiteral("data 60")});
    }

    void anErrorCallbackMayStop()
    {
        m_listener->onError = [this] { m_driver->stop(); };
        m_device->readFails = true;
        m_device->pushFrames(60);
        m_driver->start();
        QTRY_COMPARE(m_log, QStringList{QStringLiteral("error Device read error")});
        m_driver->stop();
        QCOMPARE(int(m_device->stops), 1);
        QCoreApplication::processEvents();
        QCOMPARE(m_log.size(), 1);
    }

    void aPacemakerCallbackMayStop()
    {
        m_listener->onPulse = [this] { m_driver->stop(); };
        m_device->pushPulse(5);
        m_device->pushPulse(6);
        m_device->pushFrames(60);
        m_driver->start();
        QTRY_COMPARE(m_log, QStringList{QStringLiteral("pulse 5")});
        m_driver.reset();
        QCOMPARE(int(m_device->stops), 1);
        QCoreApplication::processEvents();
        QCOMPARE(m_log.size(), 1);
    }

    void aPumpMayEmitAtAnyMomentOfStopping()
    {
        for (int turn = 0; turn < 100; ++turn) {
            FakeAcqDevice device;
            device.endlessPulse = 1;
            device.pushFrames(60);
            TQtAcqDriver driver(&device, m_signal.get());
            driver.start();
            while (device.bytesAvailable() > 0)
                std::this_thread::yield();
            std::this_thread::sleep_for(std::chrono::microseconds(turn * 20));
            if (turn % 2 == 0)
                QCoreApplication::processEvents();
            driver.stop();
            QCOMPARE(int(device.stops), 1);
        }
    }

    void twoHundredStartsLeaveNoThreadAndNoDescriptor()
    {
        if (!QDir(QStringLiteral("/proc/self/task")).exists())
            QSKIP("This system does not list the threads of a process.");
        QTemporaryDir folder;
        const QByteArray path = QFile::encodeName(folder.filePath(QStringLiteral("ecg")));
        QFile file(QFile::decodeName(path));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(QByteArray(28 * 100, 'x')), qint64(2800));
        file.close();

        runDemo(path);
        QTest::qWait(50); // a thread that has been waited for is not quite gone
        const int threads = entriesOf("/proc/self/task");
        const int descriptors = entriesOf("/proc/self/fd");
        for (int turn = 0; turn < 200; ++turn)
            runDemo(path);
        QTRY_VERIFY(entriesOf("/proc/self/task") <= threads);
        QCOMPARE(entriesOf("/proc/self/fd"), descriptors);
    }

private:
    /// The pump emits at once after taking; the time that it needs for that is not seen from outside.
    void waitUntilTheQueueIsTaken()
    {
        while (m_device->bytesAvailable() > 0)
            QTest::qSleep(1);
        QTest::qSleep(20);
    }

    void runDemo(const QByteArray& path)
    {
        TDemoAcqDevice device(path.constData(), 14, 500, 2, 16, 300.0, 0, -1);
        device.setPaced(false);
        TQtAcqDriver driver(&device, m_signal.get());
        driver.setPendingBlockLimit(2);
        const int before = m_signal->sampleCount();
        driver.start();
        while (m_signal->sampleCount() == before)
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        driver.stop();
    }

    static int entriesOf(const char* folder)
    {
        return QDir(QString::fromLatin1(folder))
            .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
            .size();
    }

    QStringList m_log;
    std::unique_ptr<FakeAcqDevice> m_device;
    std::unique_ptr<TInt16Signal> m_signal;
    std::unique_ptr<TQtAcqDriver> m_driver;
    std::unique_ptr<ListenerLog> m_listener;
};

QTEST_GUILESS_MAIN(AcqDriverStopTest)
#include "AcqDriverStopTest.moc"
