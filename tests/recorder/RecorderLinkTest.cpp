#include "recorder/RecorderSession.h"
#include "study/TEcgFile.h"

#include <QtTest>

/// The recorder and its device, through the pump and the event loop.
class RecorderLinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void samplesArriveByTheEventLoopAndAreRecorded()
    {
        RecorderSession session;
        session.recorder->startAcquisition();
        session.device.pushFrames(1000);
        QTRY_COMPARE(session.recorder->rawSignal().sampleCount(), 1000);
        session.start();
        session.device.pushFrames(2000);
        QTRY_COMPARE(session.recorder->rawSignal().sampleCount(), 3000);
        QCOMPARE(session.recorder->duration(), 4.0);
        session.recorder->finishStudy();
        QCOMPARE(session.study->ecg()->sampleCount(), 2000);
        for (int i = 0; i < 2000; ++i)
            QCOMPARE(session.study->ecg()->sample(13, i), int(FakeAcqDevice::sampleAt(13, 1000 + i)));
        session.recorder->stopAcquisition();
        QCOMPARE(int(session.device.stops), 1);
    }

    void theRawSignalHasTheFormOfTheDevice()
    {
        RecorderSession session;
        TInt16Signal& raw = session.recorder->rawSignal();
        QCOMPARE(raw.channelCount(), 14);
        QCOMPARE(raw.samplingRate(), 500);
        QCOMPARE(raw.blockSize(), 4096);
        QCOMPARE(raw.resolutionBits(), 16);
        QCOMPARE(raw.rangeMin(), -300.0);
        QCOMPARE(raw.rangeMax(), 300.0);
        for (int channel = 0; channel < 14; ++channel)
            QCOMPARE(QByteArray(raw.channel(channel)->name()),
                     QByteArray(session.device.channelName(channel)));
    }

    void pulsesOfThePumpAreEntered()
    {
        RecorderSession session;
        session.start();
        session.recorder->startAcquisition();
        session.device.pushPulse(250);
        session.device.pushFrames(1000);
        QTRY_COMPARE(session.list("pacemakerPulses"), std::vector<double>{0.5});
    }

    void aFailureOfTheDeviceIsToldAndTheStudyIsLeftToTheUser()
    {
        RecorderSession session;
        session.recorder->startAcquisition();
        session.start();
        session.device.pushFrames(1000);
        QTRY_COMPARE(session.recorder->rawSignal().sampleCount(), 1000);
        session.device.readFails = true;
        session.device.pushFrames(60);
        QTRY_COMPARE(session.log,
                     (QStringList{QStringLiteral("started"), QStringLiteral("failed: Device read error")}));
        QVERIFY(session.recorder->isRecording());
        session.recorder->finishStudy();
        QCOMPARE(session.study->ecg()->sampleCount(), 1000);
    }

    void itCanBeDestroyedWhileSamplesArrive()
    {
        for (int i = 0; i < 5; ++i) {
            RecorderSession session;
            session.recorder->startAcquisition();
            session.start();
            session.device.endlessPulse = 5;
            session.device.pushFrames(20000);
            QTRY_VERIFY(!session.recorder->pacemakerPulses().empty());
            session.recorder.reset();
            QCOMPARE(int(session.device.stops), 1);
            QCoreApplication::processEvents();
        }
    }

    void electrodesAreAskedUntilOneIsOff_data()
    {
        QTest::addColumn<QStringList>("off");
        QTest::addColumn<QString>("asked");
        QTest::newRow("none") << QStringList() << QStringLiteral("LL LA RA V1 V2 V3 V4 V5 V6");
        QTest::newRow("LL") << QStringList{QStringLiteral("LL")} << QStringLiteral("LL");
        QTest::newRow("RA and V6") << QStringList{QStringLiteral("V6"), QStringLiteral("RA")}
                                   << QStringLiteral("LL LA RA");
        QTest::newRow("V6") << QStringList{QStringLiteral("V6")}
                            << QStringLiteral("LL LA RA V1 V2 V3 V4 V5 V6");
    }

    void electrodesAreAskedUntilOneIsOff()
    {
        QFETCH(QStringList, off);
        QFETCH(QString, asked);
        RecorderSession session;
        session.device.offElectrodes = off;
        QCOMPARE(session.recorder->isAnyElectrodeOff(), !off.isEmpty());
        QCOMPARE(session.device.asked.join(QLatin1Char(' ')), asked);
    }

    void aSaturatedChannelIsSeen()
    {
        RecorderSession session;
        QVERIFY(!session.recorder->isAnyChannelSaturated());
        for (const int channel : {0, 13}) {
            session.device.saturatedChannel = channel;
            QVERIFY(session.recorder->isAnyChannelSaturated());
        }
        session.device.saturatedChannel = 14;
        QVERIFY(!session.recorder->isAnyChannelSaturated());
    }

    void theBatteryIsLowBelowItsLevelIfItIsKnown_data()
    {
        QTest::addColumn<double>("volts");
        QTest::addColumn<bool>("isLow");
        QTest::newRow("unknown") << 0.0 << false;
        QTest::newRow("nearly empty") << 0.1 << true;
        QTest::newRow("just below") << 2.29 << true;
        QTest::newRow("at the level") << 2.3 << false;
        QTest::newRow("full") << 3.0 << false;
    }

    void theBatteryIsLowBelowItsLevelIfItIsKnown()
    {
        QFETCH(double, volts);
        QFETCH(bool, isLow);
        RecorderSession session;
        session.device.battery = volts;
        QCOMPARE(session.recorder->batteryIsLow(), isLow);
        session.recorder->setLowBatteryLevel(5.0);
        QCOMPARE(session.recorder->batteryIsLow(), volts > 0.0);
    }
};

QTEST_GUILESS_MAIN(RecorderLinkTest)

#include "RecorderLinkTest.moc"
