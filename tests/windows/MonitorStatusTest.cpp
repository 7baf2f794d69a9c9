#include "windows/MonitorSession.h"

#include "dialogs/ElectrodeStatusWidget.h"
#include "windows/BlinkingIcon.h"

namespace {

constexpr int labelWidth = 160;

QRect placeOf(const MonitorSession& session, const char* name)
{
    return session.part(name)->geometry();
}

QString styleOf(const QWidget& panel, const char* electrode)
{
    for (const QLabel* label : panel.findChildren<QLabel*>()) {
        if (label->text() == QLatin1String(electrode))
            return label->styleSheet();
    }
    return QString();
}

} // namespace

class MonitorStatusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void nothingIsMadeWithoutNeed();
    void aLowBatteryBlinks();
    void anUnknownOrGoodVoltageShowsNothing_data();
    void anUnknownOrGoodVoltageShowsNothing();
    void theThresholdIsASetting_data();
    void theThresholdIsASetting();
    void aLostConnectionBlinksUntilItIsBack();
    void aSilentDeviceCountsAsLost();
    void theRecordingGoesOnAfterALoss();
    void electrodesThatAreOffAreShown();
    void electrodesAreAskedInTheirOrder();
    void thePanelThatWasSentAwayStaysAway();
    void anInoperativeChannelIsTold();
    void overlaysFollowTheFrame();
    void overlaysLieAboveTheDisplaysAndLabelsLetTheMouseThrough();
    void alarmsDoNotCoverEachOther();
    void stopHidesWhatConcernsTheDevice();

private:
    SettingsFolder m_settings;
};

void MonitorStatusTest::nothingIsMadeWithoutNeed()
{
    MonitorSession session;
    session.tick();
    for (const char* name : {"lowBatteryIcon", "connectingIcon", "ElectrodeStatusWidget", "inoperativeLabel"})
        QVERIFY2(!session.part(name), name);
}

void MonitorStatusTest::aLowBatteryBlinks()
{
    MonitorSession session;
    session.device.battery = 2.2;
    QCOMPARE(session.shown("lowBatteryIcon", 5), QStringLiteral("10101"));
    const QWidget* frame = session.part("frameECG");
    QCOMPARE(session.part("lowBatteryIcon")->parentWidget(), frame);
    QCOMPARE(session.part("lowBatteryIcon")->styleSheet(), QStringLiteral("background:none"));
    QCOMPARE(placeOf(session, "lowBatteryIcon"), QRect(frame->width() - 60, frame->height() - 60, 50, 50));
    QVERIFY(!session.part("lowBatteryIcon")->accessibleName().isEmpty());
    session.device.battery = 2.3;
    QCOMPARE(session.shown("lowBatteryIcon", 2), QStringLiteral("00"));
    session.device.battery = 2.29;
    QCOMPARE(session.shown("lowBatteryIcon", 2), QStringLiteral("10"));
}

void MonitorStatusTest::anUnknownOrGoodVoltageShowsNothing_data()
{
    QTest::addColumn<double>("volts");
    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -1.0;
    QTest::newRow("threshold") << 2.3;
    QTest::newRow("full") << 3.0;
}

void MonitorStatusTest::anUnknownOrGoodVoltageShowsNothing()
{
    QFETCH(double, volts);
    MonitorSession session;
    session.device.battery = volts;
    QCOMPARE(session.shown("lowBatteryIcon", 3), QStringLiteral("000"));
}

void MonitorStatusTest::theThresholdIsASetting_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<double>("volts");
    QTest::addColumn<QString>("shown");
    QTest::newRow("below a higher one") << 2.6 << 2.5 << QStringLiteral("10");
    QTest::newRow("above a lower one") << 2.0 << 2.2 << QStringLiteral("00");
    QTest::newRow("zero is none") << 0.0 << 2.2 << QStringLiteral("10");
    QTest::newRow("negative is none") << -1.0 << 2.2 << QStringLiteral("10");
}

void MonitorStatusTest::theThresholdIsASetting()
{
    QFETCH(double, level);
    QFETCH(double, volts);
    settings::lowBatteryLevel.setValue(level);
    MonitorSession session;
    session.device.battery = volts;
    QTEST(session.shown("lowBatteryIcon", 2), "shown");
}

void MonitorStatusTest::aLostConnectionBlinksUntilItIsBack()
{
    MonitorSession session;
    QCOMPARE(session.shown("connectingIcon", 1), QStringLiteral("0"));
    session.device.ok = false;
    QCOMPARE(session.shown("connectingIcon", 5), QStringLiteral("10101"));
    const QWidget* frame = session.part("frameECG");
    QCOMPARE(placeOf(session, "connectingIcon"), QRect(frame->width() - 110, frame->height() - 110, 50, 50));
    session.device.ok = true;
    QCOMPARE(session.shown("connectingIcon", 2), QStringLiteral("00"));
}

void MonitorStatusTest::aSilentDeviceCountsAsLost()
{
    MonitorSession session;
    QCOMPARE(session.shown("connectingIcon", 5), QStringLiteral("00000"));
    session.click("btnStart");
    QVERIFY(session.record(1.0));
    QCOMPARE(session.shown("connectingIcon", 2), QStringLiteral("00"));
    // As long as the driver waits.
    QTest::qWait(3100);
    QVERIFY(session.device.isOk());
    QCOMPARE(session.shown("connectingIcon", 4), QStringLiteral("1010"));
    QVERIFY(session.record(1.0));
    QCOMPARE(session.shown("connectingIcon", 2), QStringLiteral("00"));
}

void MonitorStatusTest::theRecordingGoesOnAfterALoss()
{
    MonitorSession session;
    session.click("btnStart");
    QVERIFY(session.record(5.0));
    session.device.ok = false;
    QTRY_VERIFY(session.device.starts > 1);
    QCOMPARE(session.shown("connectingIcon", 2), QStringLiteral("10"));
    QVERIFY(session.button("btnStop")->isEnabled());
    session.device.ok = true;
    const int before = session.recordedFrames();
    QVERIFY(session.record(5.0));
    QVERIFY(session.recordedFrames() > before + 2000);
    QCOMPARE(session.shown("connectingIcon", 1), QStringLiteral("0"));
}

void MonitorStatusTest::electrodesThatAreOffAreShown()
{
    MonitorSession session;
    session.device.offElectrodes = QStringList{QStringLiteral("LA"), QStringLiteral("V4")};
    QCOMPARE(session.shown("ElectrodeStatusWidget", 2), QStringLiteral("11"));
    const auto* panel = session.window->findChild<ElectrodeStatusWidget*>();
    for (const char* electrode : {"LL", "LA", "RA", "V1", "V2", "V3", "V4", "V5", "V6"})
        QCOMPARE(styleOf(*panel, electrode), session.device.offElectrodes.contains(QLatin1String(electrode))
                                                 ? QStringLiteral("color: red")
                                                 : QStringLiteral("color: green"));
    const QWidget* frame = session.part("frameECG");
    QCOMPARE(panel->geometry().top(), 10);
    QCOMPARE(panel->geometry().right(), frame->width() - 11);
    session.device.offElectrodes = QStringList{QStringLiteral("V4")};
    session.tick();
    QCOMPARE(styleOf(*panel, "LA"), QStringLiteral("color: green"));
    session.device.offElectrodes.clear();
    QCOMPARE(session.shown("ElectrodeStatusWidget", 1), QStringLiteral("0"));
    session.device.offElectrodes = QStringList{QStringLiteral("V6")};
    QCOMPARE(session.shown("ElectrodeStatusWidget", 1), QStringLiteral("1"));
}

void MonitorStatusTest::electrodesAreAskedInTheirOrder()
{
    MonitorSession session;
    session.device.offElectrodes = QStringList{QStringLiteral("LL")};
    session.tick();
    QCOMPARE(session.device.asked.join(QLatin1Char(' ')), QStringLiteral("LL LL LA RA V1 V2 V3 V4 V5 V6"));
}

void MonitorStatusTest::thePanelThatWasSentAwayStaysAway()
{
    MonitorSession session;
    session.device.offElectrodes = QStringList{QStringLiteral("RA")};
    QCOMPARE(session.shown("ElectrodeStatusWidget", 1), QStringLiteral("1"));
    session.click("btnHide");
    QCOMPARE(session.shown("ElectrodeStatusWidget", 2), QStringLiteral("00"));
    session.device.offElectrodes.clear();
    session.tick();
    session.device.offElectrodes = QStringList{QStringLiteral("V1")};
    QCOMPARE(session.shown("ElectrodeStatusWidget", 2), QStringLiteral("00"));
}

void MonitorStatusTest::anInoperativeChannelIsTold()
{
    MonitorSession session;
    session.device.saturatedChannel = 3;
    QCOMPARE(session.shown("inoperativeLabel", 2), QStringLiteral("11"));
    const auto* label = session.part<QLabel>("inoperativeLabel");
    QCOMPARE(label->text(), QStringLiteral("Inoperative ECG"));
    QCOMPARE(label->alignment(), Qt::AlignCenter);
    QCOMPARE(label->styleSheet(),
             QStringLiteral("background: white; color: red; font-weight: bold; font-size: 15px"));
    QCOMPARE(label->geometry(), QRect(session.window->width() - 349, 10, labelWidth, 30));
    session.device.saturatedChannel = -1;
    QCOMPARE(session.shown("inoperativeLabel", 1), QStringLiteral("0"));
}

void MonitorStatusTest::overlaysFollowTheFrame()
{
    MonitorSession session;
    session.device.battery = 1.0;
    session.device.ok = false;
    session.device.saturatedChannel = 0;
    session.device.offElectrodes = QStringList{QStringLiteral("RA")};
    session.tick();
    session.window->resize(1600, 900);
    const QWidget* frame = session.part("frameECG");
    QTRY_COMPARE(frame->width(), 1600);
    QCOMPARE(placeOf(session, "lowBatteryIcon").topLeft(), QPoint(1540, frame->height() - 60));
    QCOMPARE(placeOf(session, "connectingIcon").topLeft(), QPoint(1490, frame->height() - 110));
    QCOMPARE(placeOf(session, "inoperativeLabel").topLeft(), QPoint(1251, 10));
    QCOMPARE(placeOf(session, "ElectrodeStatusWidget").right(), 1589);
}

void MonitorStatusTest::overlaysLieAboveTheDisplaysAndLabelsLetTheMouseThrough()
{
    settings::acqMode.setValue(QStringLiteral("demo"));
    MonitorSession session;
    session.device.battery = 1.0;
    session.device.ok = false;
    session.device.saturatedChannel = 0;
    session.device.offElectrodes = QStringList{QStringLiteral("RA")};
    session.tick();
    const QWidget* frame = session.part("frameECG");
    const QObjectList siblings = frame->children();
    for (const char* name : {"simulatedLabel", "inoperativeLabel"}) {
        QVERIFY2(siblings.indexOf(session.part(name)) > siblings.indexOf(&session.display2()), name);
        QVERIFY2(frame->childAt(placeOf(session, name).center()) != session.part(name), name);
    }
    // Their tool tips and the button of the panel want the mouse.
    for (const char* name : {"lowBatteryIcon", "connectingIcon", "ElectrodeStatusWidget"}) {
        const QWidget* hit = frame->childAt(placeOf(session, name).center());
        QVERIFY2(hit && (hit == session.part(name) || session.part(name)->isAncestorOf(hit)), name);
    }
}

void MonitorStatusTest::alarmsDoNotCoverEachOther()
{
    settings::acqMode.setValue(QStringLiteral("demo"));
    StudyInfo info = makeSampleInfo();
    info.lastName = QByteArray(200, 'W');
    MonitorSession session(14, info);
    session.device.saturatedChannel = 0;
    session.device.offElectrodes = QStringList{QStringLiteral("RA")};
    session.device.battery = 1.0;
    session.device.ok = false;
    session.tick();
    const char* const parts[] = {"simulatedLabel",        "lblPatientName", "inoperativeLabel",
                                 "ElectrodeStatusWidget", "lowBatteryIcon", "connectingIcon"};
    for (const char* one : parts) {
        for (const char* other : parts)
            QVERIFY2(one == other || !placeOf(session, one).intersects(placeOf(session, other)),
                     qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(one), QLatin1String(other))));
    }
}

void MonitorStatusTest::stopHidesWhatConcernsTheDevice()
{
    settings::acqMode.setValue(QStringLiteral("demo"));
    MonitorSession session;
    session.click("btnStart");
    session.device.battery = 1.0;
    session.device.ok = false;
    session.device.saturatedChannel = 0;
    session.device.offElectrodes = QStringList{QStringLiteral("RA")};
    session.tick();
    session.click("btnStop");
    for (const char* name : {"lowBatteryIcon", "connectingIcon", "inoperativeLabel", "ElectrodeStatusWidget"})
        QCOMPARE(session.shown(name, 2), QStringLiteral("00"));
    QVERIFY(session.part("simulatedLabel")->isVisible());
}

QTEST_MAIN(MonitorStatusTest)
#include "MonitorStatusTest.moc"
