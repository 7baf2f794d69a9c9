#include "acq/FakeAcqDevice.h"
#include "acq/ListenerLog.h"
#include "acq/TQtAcqDriver.h"
#include "analysis/signals/TInt16Signal.h"

#include <QMetaMethod>
#include <QSequentialIterable>
#include <QtTest>

class AcqDriverTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log.clear();
        m_device = std::make_unique<FakeAcqDevice>();
        m_signal = std::make_unique<TInt16Signal>(4096, 10000, 14, 500);
        m_driver = std::make_unique<TQtAcqDriver>(m_device.get(), m_signal.get());
    }

    void cleanup() { m_driver.reset(); }

    void samplesArriveInTheSignalBeforeTheListenersAreTold()
    {
        ListenerLog listener(m_log);
        m_driver->addListener(&listener);
        m_device->pushFrames(60);
        m_driver->start();
        QTRY_COMPARE(m_log, QStringList{QStringLiteral("data 60")});
        for (int channel = 0; channel < 14; ++channel) {
            for (int i = 0; i < 60; ++i)
                QCOMPARE(m_signal->sample(channel, i), int(FakeAcqDevice::sampleAt(channel, i)));
        }
    }

    void listenersAreToldInTheOrderOfTheirComing()
    {
        ListenerLog first(m_log, QStringLiteral("1 "));
        ListenerLog second(m_log, QStringLiteral("2 "));
        m_driver->addListener(&first);
        m_driver->addListener(&second);
        m_device->pushFrames(60);
        m_device->pushPulse(42);
        m_driver->start();
        QTRY_COMPARE(m_log, (QStringList{QStringLiteral("1 pulse 42"), QStringLiteral("2 pulse 42"),
                                         QStringLiteral("1 data 60"), QStringLiteral("2 data 60")}));
        m_device->readFails = true;
        m_device->pushFrames(60);
        QTRY_COMPARE(m_log.mid(4), (QStringList{QStringLiteral("1 error Device read error"),
                                                QStringLiteral("2 error Device read error")}));
    }

    void aListenerAddedWhileListenersAreToldIsToldFromTheNextBlockOn()
    {
        ListenerLog first(m_log, QStringLiteral("1 "));
        ListenerLog second(m_log, QStringLiteral("2 "));
        first.onData = [this, &first, &second] {
            m_driver->addListener(&second);
            first.onData = nullptr;
        };
        m_driver->addListener(&first);
        m_device->pushFrames(2600);
        m_driver->start();
        QTRY_COMPARE(m_log, (QStringList{QStringLiteral("1 data 2500"), QStringLiteral("1 data 2600"),
                                         QStringLiteral("2 data 2600")}));
    }

    void thePumpWaitsUntilAFailureHasBeenTold()
    {
        ListenerLog listener(m_log);
        int stopsMeanwhile = -1;
        listener.onError = [this, &stopsMeanwhile] {
            QTest::qSleep(30);
            stopsMeanwhile = m_device->stops;
        };
        m_driver->addListener(&listener);
        m_device->readFails = true;
        m_device->pushFrames(60);
        m_driver->start();
        QTRY_COMPARE(m_log.size(), 1);
        QCOMPARE(stopsMeanwhile, 0);
        QTRY_COMPARE(int(m_device->stops), 1);
    }

    void thePumpWaitsUntilAPulseHasBeenTold()
    {
        ListenerLog listener(m_log);
        std::vector<int> waiting;
        listener.onPulse = [this, &waiting] {
            QTest::qSleep(30);
            waiting.push_back(m_device->pulsesWaiting());
        };
        m_driver->addListener(&listener);
        m_device->pushPulse(9);
        m_device->pushPulse(10);
        m_device->pushFrames(60);
        m_driver->start();
        QTRY_COMPARE(m_log, (QStringList{QStringLiteral("pulse 9"), QStringLiteral("pulse 10"),
                                         QStringLiteral("data 60")}));
        QCOMPARE(waiting, (std::vector<int>{1, 0})); // The second one is not taken before its turn.
    }

    void aRestartedDeviceIsNoError()
    {
        ListenerLog listener(m_log);
        m_driver->addListener(&listener);
        m_device->startRevives = true;
        m_device->ok = false;
        m_driver->start();
        QTRY_VERIFY(m_device->isOk());
        m_device->pushFrames(60);
        QTRY_COMPARE(m_log, QStringList{QStringLiteral("data 60")});
    }

    void mutingFollowsTheDriver()
    {
        QVERIFY(!m_driver->isChannelMuted(1));
        m_driver->setChannelMuted(1, true);
        m_driver->setChannelMuted(2, true);
        m_driver->setChannelMuted(2, false);
        m_driver->setChannelMuted(14, true); // no such channel
        m_driver->setChannelMuted(-1, true);
        QVERIFY(m_driver->isChannelMuted(1));
        QVERIFY(!m_driver->isChannelMuted(2));
        QVERIFY(!m_driver->isChannelMuted(14));
        QVERIFY(!m_driver->isChannelMuted(-1));
        m_device->pushFrames(60);
        m_driver->start();
        QTRY_COMPARE(m_signal->sampleCount(), 60);
        QCOMPARE(m_signal->sample(1, 7), 0);
        QCOMPARE(m_signal->sample(2, 7), int(FakeAcqDevice::sampleAt(2, 7)));
    }

    void aResetRequestReachesTheDevice()
    {
        m_driver->start();
        m_device->pushFrames(60);
        QTRY_COMPARE(m_signal->sampleCount(), 60);
        m_driver->resetDevice();
        m_device->pushFrames(60);
        QTRY_COMPARE(int(m_device->resets), 1);
    }

    void queriesGoToTheDevice()
    {
        QVERIFY(m_driver->isChannelSaturated(3));
        QVERIFY(!m_driver->isChannelSaturated(4));
        QVERIFY(m_driver->isElectrodeOff("LA"));
        QVERIFY(!m_driver->isElectrodeOff("RA"));
        QCOMPARE(m_driver->batteryVoltage(), 2.5);
        QCOMPARE(m_driver->device(), m_device.get());
        QCOMPARE(m_driver->signal(), m_signal.get());
    }

    void aDeviceThatFailsIsNotConnected()
    {
        QVERIFY(m_driver->isConnected());
        m_device->ok = false;
        QVERIFY(!m_driver->isConnected());
        m_device->ok = true;
        QVERIFY(m_driver->isConnected());
    }

    void aDeviceThatFallsSilentIsNotConnected()
    {
        m_driver->setLongestSilence(200);
        m_driver->start();
        QTest::qWait(250);
        QVERIFY2(m_driver->isConnected(), "has not sent anything yet");
        m_device->pushFrames(60);
        QTRY_COMPARE(m_signal->sampleCount(), 60);
        QVERIFY(m_driver->isConnected());
        QTRY_VERIFY(!m_driver->isConnected());
        m_device->pushFrames(60);
        QTRY_COMPARE(m_signal->sampleCount(), 120);
        QVERIFY(m_driver->isConnected());
    }

    void aDriverStartsOnce()
    {
        m_driver->start();
        m_driver->start();
        QTRY_COMPARE(int(m_device->starts), 1);
        m_driver->stop();
        m_driver->start();
        QTest::qWait(30);
        QCOMPARE(int(m_device->starts), 1);
        QCOMPARE(int(m_device->stops), 1);
    }

    void theSlotsStandInTheirOrder()
    {
        QStringList slotNames;
        const QMetaObject& meta = TQtAcqDriver::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).access(), QMetaMethod::Private);
            slotNames += QString::fromLatin1(meta.method(i).parameterTypes().join(','));
        }
        QCOMPARE(slotNames, (QStringList{QStringLiteral("QVector<char>"), QStringLiteral("int"), QString()}));
    }

    void blocksCanCrossThreadsAndBeWalkedAsSequences()
    {
        const int type = QMetaType::type("QVector<char>");
        QCOMPARE(type, qMetaTypeId<QVector<char>>());
        const QVector<char> block{'a', 'b'};
        const QVariant variant(type, &block);
        QVERIFY(variant.canConvert<QVariantList>());
        QCOMPARE(variant.value<QSequentialIterable>().size(), 2);
    }

private:
    QStringList m_log;
    std::unique_ptr<FakeAcqDevice> m_device;
    std::unique_ptr<TInt16Signal> m_signal;
    std::unique_ptr<TQtAcqDriver> m_driver;
};

QTEST_GUILESS_MAIN(AcqDriverTest)
#include "AcqDriverTest.moc"
