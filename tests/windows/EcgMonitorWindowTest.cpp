#include "windows/MonitorSession.h"

#include "display/ColorSchemes.h"
#include "display/ColorTags.h"

#include <QMetaMethod>
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
    void settingsAreReadAndWritten();
    void withoutSettingsTheWidgetsKeepTheirColors();
    void tooFewLeadsKeepTheStoredOrder();
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
