#include "windows/MonitorSession.h"

#include "analysis/filters/TOfflineFilterChain.h"
#include "display/ColorSchemes.h"
#include "display/ColorTags.h"
#include "display/QSignalBrowseDisplay.h"
#include "study/TBeatFile.h"

#include <QLayout>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPointer>
#include <QTextDocument>

namespace {

/// Methods of the class itself, in the order of its meta-object.
QStringList slotsOf(const QMetaObject& meta)
{
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        names << QString::fromLatin1(meta.method(i).methodSignature());
    return names;
}

QSignalBrowseDisplay* browseOf(const MonitorSession& session)
{
    return session.window->findChild<QSignalBrowseDisplay*>();
}

/// Runs an examination of so many seconds up to the review.
bool reachReview(MonitorSession& session, double seconds)
{
    session.click("btnStart");
    const bool recorded = session.record(seconds);
    session.click("btnStop");
    return recorded;
}

QList<int> samplesOf(TSignal& signal)
{
    QList<int> samples;
    for (int index = 500; index < 600; ++index)
        samples << signal.sample(1, index);
    return samples;
}

} // namespace

class EcgMonitorWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void theSlotsStandInTheirOrder();
    void toolTipsAndAccessibleNames();
    void itOpensMonitoring();
    void theDisplaysShareTheLeads_data();
    void theDisplaysShareTheLeads();
    void thePatientIsNamed();
    void onlyASimulatedEcgIsCalledSo();
    void theScaleButtonsActOnBothLiveDisplays();
    void theFilterButtonsRebuildTheLiveSignal();
    void recordingStartsWhenTheRecorderConfirms();
    void whatArrivesIsRecordedUntilStopIsPressed();
    void theInsetShowsTheAverageAndItsMeasuringPoints();
    void timeAndHeartRateRun();
    void timeIsWrittenWithTwoDigitsOfSeconds();
    void stopLeadsToTheReview();
    void nothingIsLeftOnTheDisplaysAfterStop();
    void theReviewTakesTheButtonsOver();
    void theReviewFiltersTheRecording();
    void theReviewObeysTheKeyboard();
    void anEmptyRecordingCanBeReviewed();
    void savingAndRepeatingAreToldApart();
    void closingEndsARecording();
    void closingWithoutARecordingLeavesTheStudyAlone();
    void settingsAreReadAndWritten();
    void withoutSettingsTheWidgetsKeepTheirColors();
    void tooFewLeadsKeepTheStoredOrder();
    void failuresAreShownOneByOneOnceEach();
    void aFailureDoesNotOutliveTheWindow();
    void aFailureOfTheDeviceIsShown();
    void theKeyboardAloneIsEnough();
    void everythingFitsOnASmallScreen();

private:
    SettingsFolder m_settings;
};

void EcgMonitorWindowTest::theSlotsStandInTheirOrder()
{
    QCOMPARE(
        slotsOf(EcgMonitorWindow::staticMetaObject),
        QStringList({QStringLiteral("on_btnSpeed12_clicked()"), QStringLiteral("on_btnSpeed25_clicked()"),
                     QStringLiteral("on_btnSpeed50_clicked()"), QStringLiteral("on_btnAmp5_clicked()"),
                     QStringLiteral("on_btnAmp10_clicked()"), QStringLiteral("on_btnAmp20_clicked()"),
                     QStringLiteral("on_btnFilterNotch_clicked()"),
                     QStringLiteral("on_btnFilterLowpass_clicked()"),
                     QStringLiteral("on_btnFilterBaseline_clicked()"),
                     QStringLiteral("on_btnStart_clicked()"), QStringLiteral("on_btnStop_clicked()"),
                     QStringLiteral("on_ecgDisplay1_customContextMenuRequested(QPoint)"),
                     QStringLiteral("on_ecgDisplay2_customContextMenuRequested(QPoint)"),
                     QStringLiteral("on_btnRepeat_clicked()"), QStringLiteral("on_btnSave_clicked()")}));
}

void EcgMonitorWindowTest::toolTipsAndAccessibleNames()
{
    MonitorSession session;
    const std::pair<const char*, const char*> toolTips[] = {
        {"btnStart", "Start recording"},          {"btnStop", "Stop recording"},
        {"btnRepeat", "Repeat recording"},        {"btnSave", "Save recording"},
        {"btnFilterBaseline", "Baseline filter"}, {"btnFilterLowpass", "Muscle noise filter"},
        {"btnFilterNotch", "Line notch filter"}};
    for (const auto& [name, toolTip] : toolTips) {
        QCOMPARE(session.part(name)->toolTip(), QLatin1String(toolTip));
        QCOMPARE(session.part(name)->accessibleName(), QLatin1String(toolTip));
    }
    QCOMPARE(session.button("btnSpeed12")->text(), QStringLiteral("12.5"));
    QVERIFY(Qt::mightBeRichText(session.part("btnSpeed12")->toolTip()));
    QCOMPARE(session.part("btnSpeed12")->toolTip().remove(QRegularExpression(QStringLiteral("<[^>]*>"))),
             QStringLiteral("Speed: 12.5 mm/sec"));
    QCOMPARE(session.button("btnAmp20")->text(), QStringLiteral("20"));
    QCOMPARE(session.part("btnAmp20")->toolTip().remove(QRegularExpression(QStringLiteral("<[^>]*>"))),
             QStringLiteral("Amplitude: 20 mm/mV"));
    QCOMPARE(session.text("lblTotalElapsedTime"), QStringLiteral("0:00"));
    for (const auto* button : session.window->findChildren<QAbstractButton*>())
        QVERIFY2(!button->accessibleName().isEmpty(), qPrintable(button->objectName()));
    for (const auto* display : session.window->findChildren<QSignalMonitorDisplay*>())
        QVERIFY(!display->accessibleName().isEmpty());
}

void EcgMonitorWindowTest::itOpensMonitoring()
{
    MonitorSession session;
    QCOMPARE(session.enabled(), QStringLiteral("Sta - - -"));
    QCOMPARE(QApplication::focusWidget(), session.part("btnStart"));
    for (const char* filter : {"btnFilterNotch", "btnFilterLowpass", "btnFilterBaseline"})
        QVERIFY(session.button(filter)->isChecked());
    QVERIFY(session.button("btnSpeed25")->isChecked());
    QVERIFY(session.button("btnAmp10")->isChecked());
    QVERIFY(session.display1().isVisible() && session.display2().isVisible());
    QVERIFY(session.display1().signal());
    QCOMPARE(session.display1().signal(), session.display2().signal());
    QVERIFY(!session.display1().autoCenter() && !session.display2().autoCenter());
    QTRY_COMPARE(session.device.starts.load(), 1);

    session.device.send(10.0);
    QTRY_VERIFY(session.display1().signal()->sampleCount() > 1000);
    QCOMPARE(session.recordedFrames(), 0);
    QVERIFY(!EcgMonitorWindow::repeatRequested(session.window.get()));
}

void EcgMonitorWindowTest::theDisplaysShareTheLeads_data()
{
    QTest::addColumn<int>("channels");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::newRow("5") << 5 << QStringLiteral("0 1 2 3 4") << QString();
    QTest::newRow("7") << 7 << QStringLiteral("0 1 2 3 4 5 6") << QString();
    QTest::newRow("8") << 8 << QStringLiteral("0 1 2 3 4 5") << QStringLiteral("6 7");
    QTest::newRow("12") << 12 << QStringLiteral("0 1 2 3 4 5") << QStringLiteral("6 7 8 9 10 11");
    QTest::newRow("14") << 14 << QStringLiteral("0 1 2 3 4 5") << QStringLiteral("6 7 8 9 10 11");
}

void EcgMonitorWindowTest::theDisplaysShareTheLeads()
{
    QFETCH(int, channels);
    MonitorSession session(channels);
    const auto visible = [channels](const QSignalMonitorDisplay& display) {
        QStringList leads;
        for (int channel = 0; display.isVisible() && channel < channels; ++channel) {
            if (display.channelVisible(channel))
                leads << QString::number(channel);
        }
        return leads.join(QLatin1Char(' '));
    };
    QTEST(visible(session.display1()), "first");
    QTEST(visible(session.display2()), "second");
}

void EcgMonitorWindowTest::thePatientIsNamed()
{
    StudyInfo info = makeSampleInfo();
    info.lastName = "Garc\xc3\xad"
                    "a <b>%1";
    info.firstName = "Mar\xc3\xad"
                     "a";
    MonitorSession session(14, info);
    QCOMPARE(session.text("lblPatientName"), QString::fromUtf8("Garc\xc3\xad"
                                                               "a <b>%1, Mar\xc3\xad"
                                                               "a"));
}

void EcgMonitorWindowTest::onlyASimulatedEcgIsCalledSo()
{
    QVERIFY(!MonitorSession().part("simulatedLabel"));
    settings::acqMode.setValue(QStringLiteral("demo"));
    MonitorSession session;
    const auto* label = session.part<QLabel>("simulatedLabel");
    QVERIFY(label && label->isVisible());
    QCOMPARE(label->parentWidget(), session.part("frameECG"));
    QCOMPARE(label->text(), QStringLiteral("Simulated ECG"));
    QCOMPARE(label->styleSheet(),
             QStringLiteral("background: white; color: red; font-weight: bold; font-size: 15px"));
    QCOMPARE(label->geometry(), QRect(40, 10, 160, 30));
    QCOMPARE(label->alignment(), Qt::AlignCenter);
}

void EcgMonitorWindowTest::theScaleButtonsActOnBothLiveDisplays()
{
    MonitorSession session;
    const std::pair<const char*, double> speeds[] = {
        {"btnSpeed12", 12.5}, {"btnSpeed50", 50.0}, {"btnSpeed25", 25.0}};
    for (const auto& [name, speed] : speeds) {
        session.click(name);
        QCOMPARE(session.display1().speed(), speed);
        QCOMPARE(session.display2().speed(), speed);
        QVERIFY(session.button(name)->isChecked());
    }
    const std::pair<const char*, double> amplitudes[] = {
        {"btnAmp5", 5.0}, {"btnAmp20", 20.0}, {"btnAmp10", 10.0}};
    for (const auto& [name, amplitude] : amplitudes) {
        session.click(name);
        QCOMPARE(session.display1().amplitude(), amplitude);
        QCOMPARE(session.display2().amplitude(), amplitude);
        QVERIFY(session.button(name)->isChecked());
    }
    QVERIFY(!session.button("btnAmp5")->isChecked() && session.button("btnSpeed25")->isChecked());
}

void EcgMonitorWindowTest::theFilterButtonsRebuildTheLiveSignal()
{
    MonitorSession session;
    session.device.send(10.0);
    QTRY_VERIFY(session.display1().signal()->sampleCount() > 1000);
    for (const char* name :
         {"btnFilterBaseline", "btnFilterNotch", "btnFilterLowpass", "btnFilterBaseline"}) {
        session.click(name);
        QCOMPARE(session.display1().signal(), session.display2().signal());
        QVERIFY(session.display1().signal()->sampleCount() > 1000);
        QCOMPARE(session.display1().autoCenter(), !session.button("btnFilterBaseline")->isChecked());
        QCOMPARE(session.display2().autoCenter(), !session.button("btnFilterBaseline")->isChecked());
    }
}

void EcgMonitorWindowTest::recordingStartsWhenTheRecorderConfirms()
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

void EcgMonitorWindowTest::whatArrivesIsRecordedUntilStopIsPressed()
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

void EcgMonitorWindowTest::theInsetShowsTheAverageAndItsMeasuringPoints()
{
    MonitorSession session;
    session.click("btnSpeed50");
    const QColor tick(255, 0, 255);
    session.display1().setColor(FiducialColor, tick);
    const auto hasTicks = [&] {
        const QImage picture = session.display1().grab().toImage();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y) == tick)
                    return true;
            }
        }
        return false;
    };
    QVERIFY(!hasTicks());
    session.click("btnStart");
    QVERIFY(session.record(30.0));
    QVERIFY(hasTicks());
}

void EcgMonitorWindowTest::timeAndHeartRateRun()
{
    MonitorSession session;
    const QString unknown = session.text("lblHR");
    session.device.send(5.0);
    session.tick();
    QCOMPARE(session.text("lblTotalElapsedTime"), QStringLiteral("0:00"));
    QCOMPARE(session.text("lblHR"), unknown);

    session.click("btnStart");
    QVERIFY(session.record(20.0));
    session.tick();
    bool isNumber = false;
    const int rate = session.text("lblHR").toInt(&isNumber);
    QVERIFY2(isNumber && rate > 40 && rate < 120, qPrintable(session.text("lblHR")));
    const QString time = session.text("lblTotalElapsedTime");
    QVERIFY2(QRegularExpression(QStringLiteral("^ 0:(19|2\\d)$")).match(time).hasMatch(), qPrintable(time));
}

void EcgMonitorWindowTest::timeIsWrittenWithTwoDigitsOfSeconds()
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

void EcgMonitorWindowTest::stopLeadsToTheReview()
{
    MonitorSession session;
    session.click("btnAmp20");
    session.click("btnSpeed12");
    QVERIFY(!browseOf(session));
    QVERIFY(reachReview(session, 12.0));
    QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
    QCOMPARE(QApplication::focusWidget(), session.part("btnSave"));
    QVERIFY(session.display1().isHidden() && session.display2().isHidden());
    const QSignalBrowseDisplay* browse = browseOf(session);
    QVERIFY(browse && browse->isVisible());
    QCOMPARE(browse->parentWidget(), session.part("frameECG"));
    QCOMPARE(browse->amplitude(), 20.0);
    QCOMPARE(browse->speed(), 12.5);
    QVERIFY(browse->signal());
    QCOMPARE(browse->signal()->sampleCount(), session.recordedFrames());
    QVERIFY(!browse->accessibleName().isEmpty());
    session.tick();
    QVERIFY(browse->isVisible());
}

void EcgMonitorWindowTest::nothingIsLeftOnTheDisplaysAfterStop()
{
    MonitorSession session;
    QVERIFY(reachReview(session, 12.0));
    for (QSignalMonitorDisplay* display : {&session.display1(), &session.display2()}) {
        QVERIFY(!display->signal());
        // Reads whatever it still has; the sanitizers see what is gone.
        display->show();
        QVERIFY(!display->grab().isNull());
        display->hide();
    }
}

void EcgMonitorWindowTest::theReviewTakesTheButtonsOver()
{
    MonitorSession session;
    QVERIFY(reachReview(session, 12.0));
    QSignalBrowseDisplay* browse = browseOf(session);
    QCOMPARE(browse->speed(), 25.0);
    const std::pair<const char*, double> speeds[] = {
        {"btnSpeed12", 12.5}, {"btnSpeed50", 50.0}, {"btnSpeed25", 25.0}, {"btnSpeed50", 50.0}};
    for (const auto& [name, speed] : speeds) {
        session.click(name);
        QCOMPARE(browse->speed(), speed);
    }
    const std::pair<const char*, double> amplitudes[] = {
        {"btnAmp5", 5.0}, {"btnAmp20", 20.0}, {"btnAmp10", 10.0}, {"btnAmp20", 20.0}};
    for (const auto& [name, amplitude] : amplitudes) {
        session.click(name);
        QCOMPARE(browse->amplitude(), amplitude);
    }
    QCOMPARE(session.display1().speed(), 25.0);
    QCOMPARE(session.display2().amplitude(), 10.0);
}

void EcgMonitorWindowTest::theReviewFiltersTheRecording()
{
    MonitorSession session;
    session.click("btnFilterLowpass");
    QVERIFY(reachReview(session, 12.0));
    QSignalBrowseDisplay* browse = browseOf(session);
    TOfflineFilterChain expected(session.study->ecg());
    expected.apply(true, false, true);
    QCOMPARE(samplesOf(*browse->signal()), samplesOf(*expected.current()));

    session.click("btnFilterLowpass");
    session.click("btnFilterBaseline");
    expected.apply(true, true, false);
    QCOMPARE(samplesOf(*browse->signal()), samplesOf(*expected.current()));
    session.click("btnFilterNotch");
    session.click("btnFilterLowpass");
    expected.apply(false, false, false);
    QCOMPARE(samplesOf(*browse->signal()), samplesOf(*expected.current()));
    QVERIFY(!browse->grab().isNull());
}

void EcgMonitorWindowTest::theReviewObeysTheKeyboard()
{
    MonitorSession session;
    QVERIFY(reachReview(session, 30.0));
    QSignalBrowseDisplay* browse = browseOf(session);
    for (int i = 0; i < 20 && QApplication::focusWidget() != browse; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), browse);
    QTest::keyClick(browse, Qt::Key_Right);
    QVERIFY(browse->startTime() > 0.0);
}

void EcgMonitorWindowTest::anEmptyRecordingCanBeReviewed()
{
    MonitorSession session;
    session.click("btnStart");
    session.click("btnStop");
    QCOMPARE(session.recordedFrames(), 0);
    QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
    QVERIFY(!session.window->grab().isNull());
    session.click("btnFilterNotch");
    QVERIFY(!session.window->grab().isNull());
}

void EcgMonitorWindowTest::savingAndRepeatingAreToldApart()
{
    for (const bool repeats : {false, true}) {
        MonitorSession session;
        QVERIFY(reachReview(session, 1.0));
        EcgMonitorWindow* window = session.window.release();
        window->setAttribute(Qt::WA_DeleteOnClose);
        bool told = !repeats;
        connect(window, &QObject::destroyed, this,
                [&told](const QObject* left) { told = EcgMonitorWindow::repeatRequested(left); });
        const QPointer<EcgMonitorWindow> guard(window);
        const int saves = session.store.saves;
        window->findChild<QAbstractButton*>(QLatin1String(repeats ? "btnRepeat" : "btnSave"))->click();
        QTRY_VERIFY(!guard);
        QCOMPARE(told, repeats);
        QCOMPARE(session.store.saves, saves);
    }
}

void EcgMonitorWindowTest::closingEndsARecording()
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

void EcgMonitorWindowTest::closingWithoutARecordingLeavesTheStudyAlone()
{
    MonitorSession session;
    session.device.send(1.0);
    QVERIFY(session.window->close());
    session.window.reset();
    QCOMPARE(session.store.saves, 0);
    QCOMPARE(session.recordedFrames(), 0);
}

void EcgMonitorWindowTest::settingsAreReadAndWritten()
{
    settings::ecgMonitorDisplay.displayColorScheme.setValue(QStringLiteral("Blue"));
    settings::ecgMonitorDisplay.hexaxialOrder.setValue(true);
    settings::ecgMonitorDisplay.showAverageBeat.setValue(false);
    {
        MonitorSession session;
        for (const QSignalMonitorDisplay* display : {&session.display1(), &session.display2()}) {
            QCOMPARE(display->color(TraceColor), schemeColors(QStringLiteral("Blue")).value(TraceColor));
            QVERIFY(!display->showAverageBeat());
        }
        QCOMPARE(session.display1().channelOrder(0), 4);
        QVERIFY(session.display1().channelInverted(3));
        QCOMPARE(session.display2().channelOrder(0), 0);
        QVERIFY(reachReview(session, 1.0));
        QCOMPARE(browseOf(session)->color(TraceColor),
                 schemeColors(QStringLiteral("Blue")).value(TraceColor));
        QSettings().clear();
    }
    QCOMPARE(QSettings().value(QStringLiteral("EcgMonitorWindow/DisplayColorScheme")).toString(),
             QStringLiteral("Blue"));
    QCOMPARE(QSettings().value(QStringLiteral("EcgMonitorWindow/HexaxialOrder")).toBool(), true);
    QVERIFY(QSettings().contains(QStringLiteral("EcgMonitorWindow/ShowAverageBeat")));
    QCOMPARE(QSettings().value(QStringLiteral("EcgMonitorWindow/ShowAverageBeat")).toBool(), false);
}

void EcgMonitorWindowTest::withoutSettingsTheWidgetsKeepTheirColors()
{
    const QSignalMonitorDisplay plain;
    {
        MonitorSession session;
        for (int tag = 0; tag < 11; ++tag)
            QCOMPARE(session.display2().color(tag), plain.color(tag));
        QVERIFY(session.display1().showAverageBeat() && session.display2().showAverageBeat());
        QCOMPARE(session.display1().channelOrder(0), 0);
    }
    QCOMPARE(settings::ecgMonitorDisplay.displayColorScheme.value(), QString());
    QCOMPARE(settings::ecgMonitorDisplay.showAverageBeat.valueOr(false), true);
}

void EcgMonitorWindowTest::tooFewLeadsKeepTheStoredOrder()
{
    settings::ecgMonitorDisplay.hexaxialOrder.setValue(true);
    {
        MonitorSession session(5);
        QCOMPARE(session.display1().channelOrder(0), 0);
        QSettings().clear();
    }
    QCOMPARE(settings::ecgMonitorDisplay.hexaxialOrder.value(), true);
}

void EcgMonitorWindowTest::failuresAreShownOneByOneOnceEach()
{
    MonitorSession session;
    session.device.readFails = true;
    session.device.send(1.0);
    QTRY_VERIFY(QApplication::activeModalWidget());
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    QVERIFY(box);
    QCOMPARE(box->windowTitle(), QStringLiteral("Warning"));
    QCOMPARE(box->text(), QStringLiteral("Device read error"));
    QCOMPARE(box->icon(), QMessageBox::Warning);
    QVERIFY(box->isModal());
    QCOMPARE(session.window->findChildren<QMessageBox*>().size(), 1);
    box->button(QMessageBox::Ok)->click();
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QCOMPARE(session.enabled(), QStringLiteral("Sta - - -"));
}

void EcgMonitorWindowTest::aFailureDoesNotOutliveTheWindow()
{
    for (const bool isOpen : {true, false}) {
        MonitorSession session;
        session.device.readFails = true;
        session.device.send(1.0);
        if (isOpen)
            QTRY_VERIFY(QApplication::activeModalWidget());
        else
            QTRY_VERIFY(session.device.bytesAvailable() == 0);
        session.window->close();
        session.window.reset();
        QTest::qWait(20);
        QVERIFY(!QApplication::activeModalWidget());
    }
}

void EcgMonitorWindowTest::aFailureOfTheDeviceIsShown()
{
    // While it records, and with the box open the recording can be stopped.
    MonitorSession session;
    session.click("btnStart");
    QVERIFY(session.record(2.0));
    session.device.readFails = true;
    session.device.send(1.0);
    QTRY_VERIFY(QApplication::activeModalWidget());
    session.click("btnStop");
    QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
    QVERIFY(session.recordedFrames() > 900);
}

void EcgMonitorWindowTest::theKeyboardAloneIsEnough()
{
    MonitorSession session;
    QStringList reached;
    const QWidget* first = QApplication::focusWidget();
    do {
        reached << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && reached.size() < 30);
    for (const char* name : {"btnStart", "btnSpeed25", "btnAmp10", "btnFilterBaseline", "btnFilterLowpass",
                             "btnFilterNotch", "ecgDisplay1", "ecgDisplay2"})
        QVERIFY2(reached.contains(QLatin1String(name)), qPrintable(reached.join(QLatin1Char(' '))));

    session.button("btnSpeed25")->setFocus();
    QTest::keyClick(session.part("btnSpeed25"), Qt::Key_Right);
    QCOMPARE(session.display1().speed(), 50.0);
    session.button("btnStart")->setFocus();
    QTest::keyClick(session.part("btnStart"), Qt::Key_Return);
    QCOMPARE(session.enabled(), QStringLiteral("- Sto - -"));
    QTest::keyClick(session.part("btnStop"), Qt::Key_Space);
    QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
}

void EcgMonitorWindowTest::everythingFitsOnASmallScreen()
{
    MonitorSession session;
    QVERIFY(session.window->minimumSizeHint().width() <= 1280);
    QVERIFY(session.window->minimumSizeHint().height() <= 800);
    QCOMPARE(session.window->size(), QSize(1280, 800));
    const QWidget* bottom = session.part("frameBottom");
    for (const auto* control : bottom->findChildren<QAbstractButton*>()) {
        const QRect place(control->mapTo(bottom, QPoint()), control->size());
        QVERIFY2(bottom->rect().contains(place), qPrintable(control->objectName()));
    }
}

QTEST_MAIN(EcgMonitorWindowTest)
#include "EcgMonitorWindowTest.moc"
