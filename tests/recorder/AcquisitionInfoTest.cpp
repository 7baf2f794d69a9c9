#include "recorder/AcquisitionInfo.h"

#include "acq/AcqChannels.h"
#include "acq/TDemoAcqDevice.h"
#include "study/StudyInfo.h"

#include <QTemporaryFile>
#include <QtTest>

class AcquisitionInfoTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStudyTellsHowItsDeviceTakesTheSamples_data()
    {
        QTest::addColumn<int>("mask");
        QTest::addColumn<QByteArray>("names");
        QTest::addColumn<int>("count");
        QTest::newRow("all") << acq::allChannels
                             << QByteArray("I,II,III,aVR,aVL,aVF,V1,V2,V3,V4,V5,V6,CM5,CR5") << 14;
        QTest::newRow("tilt test") << acq::reducedChannels << QByteArray("II,V2,V5") << 3;
    }

    void aStudyTellsHowItsDeviceTakesTheSamples()
    {
        QFETCH(int, mask);
        QTemporaryFile samples;
        QVERIFY(samples.open());
        const TDemoAcqDevice device(QFile::encodeName(samples.fileName()).constData(), 14, 500, 2, 16, 300.0,
                                    0, mask);
        StudyInfo info;
        info.lastName = "Diaz";
        fillAcquisition(info, device);
        QTEST(info.channelNames, "names");
        QTEST(info.channelCount, "count");
        QCOMPARE(info.samplingRate, 500);
        QCOMPARE(info.resolution, 16);
        QCOMPARE(info.gain, 300.0);
        QCOMPARE(info.sampleFormat, QByteArray("short"));
        QCOMPARE(info.lastName, QByteArray("Diaz"));
    }
};

QTEST_GUILESS_MAIN(AcquisitionInfoTest)
#include "AcquisitionInfoTest.moc"
