#include "windows/MonitorSession.h"

#include "support/ProgramStyle.h"

#include <QFile>
#include <QTranslator>

/// The monitor under the style sheet of the program, in both languages.
class MonitorLookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { QSettings().clear(); }
    void cleanup() { QCoreApplication::removeTranslator(&m_spanish); }

    void theControlsFitOnASmallScreen_data() { languages(); }
    void theControlsFitOnASmallScreen();
    void panelAndAlarmStandSideBySide_data() { languages(); }
    void panelAndAlarmStandSideBySide();

private:
    static void languages()
    {
        QTest::addColumn<bool>("isSpanish");
        QTest::newRow("English") << false;
        QTest::newRow("Spanish") << true;
    }
    void setLanguage(bool isSpanish)
    {
        if (isSpanish)
            QCoreApplication::installTranslator(&m_spanish);
    }

    SettingsFolder m_settings;
    QTranslator m_spanish;
};

void MonitorLookTest::initTestCase()
{
    wearTheStyle();
    QVERIFY(m_spanish.load(QStringLiteral(VELANTOR_BIN "/VelantorStressECG_es.qm")));
}

void MonitorLookTest::theControlsFitOnASmallScreen()
{
    QFETCH(bool, isSpanish);
    setLanguage(isSpanish);
    MonitorSession session;
    QVERIFY(QTest::qWaitForWindowExposed(session.window.get()));
    QCOMPARE(session.window->size(), QSize(1280, 800));
    const QWidget* bottom = session.part("frameBottom");
    for (const auto* control : bottom->findChildren<QAbstractButton*>()) {
        const QRect place(control->mapTo(bottom, QPoint()), control->size());
        QVERIFY2(bottom->rect().contains(place), qPrintable(control->objectName()));
        QVERIFY2(control->width() >= control->minimumSizeHint().width(), qPrintable(control->objectName()));
    }
    for (const auto* label : bottom->findChildren<QLabel*>())
        QVERIFY2(label->width() >= label->minimumSizeHint().width(), qPrintable(label->objectName()));
}

void MonitorLookTest::panelAndAlarmStandSideBySide()
{
    QFETCH(bool, isSpanish);
    setLanguage(isSpanish);
    MonitorSession session;
    session.device.saturatedChannel = 0;
    session.device.offElectrodes = QStringList{QStringLiteral("RA")};
    session.tick();
    const QWidget* panel = session.part("ElectrodeStatusWidget");
    const QWidget* alarm = session.part("inoperativeLabel");
    QVERIFY(panel->isVisible() && alarm->isVisible());
    QVERIFY2(panel->width() <= 179, qPrintable(QString::number(panel->width())));
    QVERIFY(!panel->geometry().intersects(alarm->geometry()));
    for (const auto* label : panel->findChildren<QLabel*>())
        QVERIFY2(label->width() >= label->sizeHint().width(), qPrintable(label->text()));
}

QTEST_MAIN(MonitorLookTest)
#include "MonitorLookTest.moc"
