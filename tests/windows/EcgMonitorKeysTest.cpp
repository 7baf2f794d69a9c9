#include "windows/MonitorSession.h"

/// The monitor at the keyboard.
class EcgMonitorKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void theKeyboardAloneIsEnough();
    void aHeldKeyPressesOneButton_data();
    void aHeldKeyPressesOneButton();
    void shortcutsRunAnExamination();
    void shortcutsEndAnExamination_data();
    void shortcutsEndAnExamination();

private:
    SettingsFolder m_settings;
};

void EcgMonitorKeysTest::theKeyboardAloneIsEnough()
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

void EcgMonitorKeysTest::aHeldKeyPressesOneButton_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Space") << int(Qt::Key_Space);
}

void EcgMonitorKeysTest::aHeldKeyPressesOneButton()
{
    QFETCH(int, key);
    MonitorSession session;
    QTest::keyPress(QApplication::focusWidget(), Qt::Key(key));
    for (int time = 0; time < 10; ++time) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(QApplication::focusWidget(), &press);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(QApplication::focusWidget(), &release);
    }
    QTest::keyRelease(QApplication::focusWidget(), Qt::Key(key));
    QCOMPARE(session.enabled(), QStringLiteral("- Sto - -"));
    QVERIFY(session.window->isVisible());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
    QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
}

void EcgMonitorKeysTest::shortcutsRunAnExamination()
{
    MonitorSession session;
    QTest::keyClick(session.window.get(), Qt::Key_F6);
    QTest::keyClick(session.window.get(), Qt::Key_F7);
    QTest::keyClick(session.window.get(), Qt::Key_S, Qt::ControlModifier);
    QTest::qWait(150);
    QCOMPARE(session.enabled(), QStringLiteral("Sta - - -"));
    QTest::keyClick(session.window.get(), Qt::Key_F5);
    QTRY_COMPARE(session.enabled(), QStringLiteral("- Sto - -"));
    QTest::keyClick(session.window.get(), Qt::Key_F6);
    QTRY_COMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
}

void EcgMonitorKeysTest::shortcutsEndAnExamination_data()
{
    QTest::addColumn<QKeySequence>("keys");
    QTest::addColumn<bool>("repeats");
    QTest::newRow("repeat") << QKeySequence(Qt::Key_F7) << true;
    QTest::newRow("save") << QKeySequence(QStringLiteral("Ctrl+S")) << false;
    QTest::newRow("close") << QKeySequence(QStringLiteral("Ctrl+W")) << false;
}

void EcgMonitorKeysTest::shortcutsEndAnExamination()
{
    QFETCH(QKeySequence, keys);
    QFETCH(bool, repeats);
    MonitorSession session;
    session.click("btnStart");
    session.click("btnStop");
    QTest::keySequence(session.window.get(), keys);
    QTRY_VERIFY(!session.window->isVisible());
    QCOMPARE(EcgMonitorWindow::repeatRequested(session.window.get()), repeats);
}

QTEST_MAIN(EcgMonitorKeysTest)
#include "EcgMonitorKeysTest.moc"
