#include "windows/MonitorSession.h"

#include "display/ColorTags.h"
#include "study/TBeatFile.h"
#include "windows/MonitorPictures.h"

#include <cmath>

namespace {

/// Beats that come every 0.7 s.
qint16 beatAt(int channel, int frame)
{
    const double seconds = frame % 350 / 500.0;
    const auto wave = [seconds](double middle, double width, double counts) {
        const double distance = (seconds - middle) / width;
        return counts * std::exp(-0.5 * distance * distance);
    };
    const double sum = wave(0.15, 0.02, 15.0) + wave(0.285, 0.008, -15.0) + wave(0.3, 0.01, 120.0) +
                       wave(0.318, 0.008, -25.0) + wave(0.52, 0.035, 30.0);
    return qint16(qRound(sum * (1.0 + 0.1 * channel)));
}

} // namespace

/// What the monitor does while it records.
class EcgMonitorRecordingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void recordingStartsWhenTheRecorderConfirms();
    void whatArrivesIsRecordedUntilStopIsPressed();
    void stopBringsTheRecordingToTheFile();
    void theInsetShowsTheAverageAndItsMeasuringPoints();
    void timeAndHeartRateRun();
    void timeIsWrittenWithTwoDigitsOfSeconds();
    void closingEndsARecording();
    void closingWithoutARecordingLeavesTheStudyAlone();

private:
    SettingsFolder m_settings;
};

void EcgMonitorRecordingTest::recordingStartsWhenTheRecorderConfirms()
{
    MonitorSession session;
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    session.click("btnStart");
    QCOMPARE(session.enabled(), QStringLiteral("- Sto - -"));
    QCOMPARE(QApplication::focusWidget(), session.part("btnStop"));
    const QString time = QString::fromLatin1(session.study->recordingDateTime());
    const QDateTime start = QDateTime::fromString(time, QStringLiteral("yyyyMMddHHmmss"));
    QVERIFY(start >= before && start <= QDateTime::currentDateTime());
    QCOMPARE(session.study->protocol()->name(), QByteArray("ECG"));
    QCOMPARE(session.study->protocol()->type(), TProtocolType::Ecg);
    QVERIFY(session.store.saves > 0);
}

void EcgMonitorRecordingTest::whatArrivesIsRecordedUntilStopIsPressed()
{
    MonitorSession session;
    session.click("btnStart");
    QVERIFY(session.record(20.0));
    session.click("btnStop");
    const int frames = session.recordedFrames();
    QVERIFY(frames > 9900 && frames <= 10000);
    QVERIFY(session.study->beats()->count() > 10);
    QCOMPARE(session.study->protocol()->stageCount(), 1);
    QCOMPARE(session.study->protocol()->stage(0).phase(), TStagePhase::Rest);
    session.device.send(1.0);
    QTest::qWait(50);
    QCOMPARE(session.recordedFrames(), frames);
    QVERIFY(session.device.stops > 0);
}

void EcgMonitorRecordingTest::stopBringsTheRecordingToTheFile()
{
    MonitorSession session;
    session.click("btnStart");
    QVERIFY(session.record(5.0));
    session.click("btnStop");
    TEcgFile stored(session.folder.ecgFile(session.info.baseFilename), 14, 500);
    QCOMPARE(stored.sampleCount(), session.recordedFrames());
    for (const int index : {0, 1000, stored.sampleCount() - 1}) {
        for (int channel = 0; channel < 14; ++channel)
            QCOMPARE(stored.sample(channel, index), int(session.device.sampleOf(channel, index)));
    }
}

void EcgMonitorRecordingTest::theInsetShowsTheAverageAndItsMeasuringPoints()
{
    MonitorSession session;
    session.click("btnSpeed50");
    const QColor tick(255, 0, 255);
    const QColor average(0, 255, 254);
    QSignalMonitorDisplay* const displays[] = {&session.display1(), &session.display2()};
    for (QSignalMonitorDisplay* display : displays) {
        display->setColor(FiducialColor, tick);
        display->setColor(AverageBeatColor, average);
        QCOMPARE(pixelsOf(*display, tick), 0);
        QCOMPARE(pixelsOf(*display, average), 0);
    }
    session.click("btnStart");
    QVERIFY(session.record(30.0));
    for (QSignalMonitorDisplay* display : displays) {
        QVERIFY(pixelsOf(*display, tick) > 0);
        QVERIFY(pixelsOf(*display, average) > 0);
    }
}

void EcgMonitorRecordingTest::timeAndHeartRateRun()
{
    MonitorSession session;
    session.device.sampleOf = beatAt;
    const QString unknown = session.text("lblHR");
    session.device.send(5.0);
    session.tick();
    QCOMPARE(session.text("lblTotalElapsedTime"), QStringLiteral("0:00"));
    QCOMPARE(session.text("lblHR"), unknown);

    session.click("btnStart");
    QVERIFY(session.record(20.0));
    session.tick();
    QCOMPARE(session.text("lblHR"), QStringLiteral("85"));
    const QString time = session.text("lblTotalElapsedTime");
    QVERIFY2(QRegularExpression(QStringLiteral("^ 0:(19|2\\d)$")).match(time).hasMatch(), qPrintable(time));
    // The last one stays when the heart cannot be heard any more.
    session.device.sampleOf = [](int, int) { return qint16(0); };
    QVERIFY(session.record(10.0));
    session.tick();
    QCOMPARE(session.text("lblHR"), QStringLiteral("85"));
}

void EcgMonitorRecordingTest::timeIsWrittenWithTwoDigitsOfSeconds()
{
    MonitorSession session;
    session.click("btnStart");
    QVERIFY(session.record(5.5));
    session.tick();
    QCOMPARE(session.text("lblTotalElapsedTime"), QStringLiteral(" 0:05"));
    QVERIFY(session.record(60.0));
    session.tick();
    QCOMPARE(session.text("lblTotalElapsedTime"), QStringLiteral(" 1:05"));
}

void EcgMonitorRecordingTest::closingEndsARecording()
{
    MonitorSession session;
    session.click("btnStart");
    QVERIFY(session.record(5.0));
    const int saves = session.store.saves;
    QVERIFY(session.window->close());
    QVERIFY(session.store.saves > saves);
    QCOMPARE(session.study->protocol()->stageCount(), 1);
    QVERIFY(!EcgMonitorWindow::repeatRequested(session.window.get()));
    const int frames = session.recordedFrames();
    session.window.reset();
    QCOMPARE(session.recordedFrames(), frames);
}

void EcgMonitorRecordingTest::closingWithoutARecordingLeavesTheStudyAlone()
{
    MonitorSession session;
    session.device.send(1.0);
    QVERIFY(session.window->close());
    session.window.reset();
    QCOMPARE(session.store.saves, 0);
    QCOMPARE(session.recordedFrames(), 0);
}

QTEST_MAIN(EcgMonitorRecordingTest)
#include "EcgMonitorRecordingTest.moc"
