#include "windows/MonitorSession.h"

#include "display/ColorSchemes.h"
#include "display/ColorTags.h"
#include "windows/LeadMenu.h"

namespace {

const QPoint somewhere(40, 60);

/// The menu of a display, as a right click opens it.
LeadMenu* menuOf(const MonitorSession& session, const QSignalMonitorDisplay& display)
{
    const bool isFirst = &display == &session.display1();
    QMetaObject::invokeMethod(session.window.get(),
                              isFirst ? "on_ecgDisplay1_customContextMenuRequested"
                                      : "on_ecgDisplay2_customContextMenuRequested",
                              Q_ARG(QPoint, somewhere));
    return session.window->findChild<LeadMenu*>();
}

/// Texts of the actions; "*" behind those that are checked, "-" for a separator.
QStringList contentOf(const QMenu& menu)
{
    QStringList content;
    for (const QAction* action : menu.actions())
        content << (action->isSeparator()
                        ? QStringLiteral("-")
                        : action->text() + (action->isChecked() ? QStringLiteral("*") : QString()));
    return content;
}

QAction* actionOf(const QMenu& menu, const char* text)
{
    for (QAction* action : menu.actions()) {
        if (action->text() == QLatin1String(text))
            return action;
    }
    return nullptr;
}

QMenu* schemesOf(const QMenu& menu)
{
    return actionOf(menu, "Color scheme")->menu();
}

/// Chooses an action by the keyboard, as its user would.
void choose(QMenu& menu, QAction* action)
{
    menu.setActiveAction(action);
    QTest::keyClick(&menu, Qt::Key_Return);
}

} // namespace

class LeadMenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }
    void cleanup()
    {
        while (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
    }

    void itsContentFollowsTheChannels_data();
    void itsContentFollowsTheChannels();
    void leadsAreThoseOfTheClickedDisplay();
    void aLeadIsSwitchedAndTheMenuComesAgain();
    void theOtherDisplayIsShownAndHidden();
    void theHexaxialOrderIsThatOfTheFirstDisplay();
    void theAverageBeatIsShownOnBothOrNone();
    void aSchemeColorsBothDisplaysAndIsRemembered();
    void itIsMadeAnewEachTime();
    void theContextMenuKeyOpensIt();

private:
    SettingsFolder m_settings;
};

void LeadMenuTest::itsContentFollowsTheChannels_data()
{
    QTest::addColumn<int>("channels");
    QTest::addColumn<QString>("rest");
    QTest::newRow("5") << 5 << QStringLiteral("-|Average beat*|Color scheme");
    QTest::newRow("6") << 6 << QStringLiteral("-|Hexaxial order|Average beat*|Color scheme");
    QTest::newRow("7") << 7 << QStringLiteral("-|Hexaxial order|Average beat*|Color scheme");
    QTest::newRow("8") << 8 << QStringLiteral("-|Double panel*|Hexaxial order|Average beat*|Color scheme");
    QTest::newRow("12") << 12 << QStringLiteral("-|Double panel*|Hexaxial order|Average beat*|Color scheme");
    QTest::newRow("14") << 14 << QStringLiteral("-|Double panel*|Hexaxial order|Average beat*|Color scheme");
}

void LeadMenuTest::itsContentFollowsTheChannels()
{
    QFETCH(int, channels);
    QFETCH(QString, rest);
    MonitorSession session(channels);
    const LeadMenu* menu = menuOf(session, session.display1());
    QVERIFY(menu && menu->isVisible());
    QCOMPARE(menu->title(), QStringLiteral("Show leads"));
    const int onFirst = channels == 7 ? 7 : 6;
    QStringList expected;
    for (int channel = 0; channel < channels; ++channel)
        expected << QLatin1String(acq::channelNames[channel]) +
                        (channel < onFirst ? QStringLiteral("*") : QString());
    expected += rest.split(QLatin1Char('|'));
    QCOMPARE(contentOf(*menu), expected);
    for (int channel = 0; channel < channels; ++channel) {
        QCOMPARE(menu->actions().at(channel)->data().toInt(), channel);
        QVERIFY(menu->actions().at(channel)->isCheckable());
    }
    QCOMPARE(contentOf(*schemesOf(*menu)),
             QStringList({QStringLiteral("Black"), QStringLiteral("Blue"), QStringLiteral("Light")}));
}

void LeadMenuTest::leadsAreThoseOfTheClickedDisplay()
{
    MonitorSession session(12);
    const QStringList content = contentOf(*menuOf(session, session.display2()));
    QCOMPARE(content.at(0), QStringLiteral("I"));
    QCOMPARE(content.at(5), QStringLiteral("aVF"));
    QCOMPARE(content.at(6), QStringLiteral("V1*"));
    QCOMPARE(content.at(11), QStringLiteral("V6*"));
}

void LeadMenuTest::aLeadIsSwitchedAndTheMenuComesAgain()
{
    MonitorSession session;
    LeadMenu* menu = menuOf(session, session.display1());
    const QPoint place = menu->pos();
    choose(*menu, actionOf(*menu, "II"));
    QVERIFY(!session.display1().channelVisible(1));
    QVERIFY(menu->isVisible());
    QCOMPARE(menu->pos(), place);
    choose(*menu, actionOf(*menu, "V3"));
    QVERIFY(session.display1().channelVisible(8));
    QVERIFY(session.display2().channelVisible(8));
    choose(*menu, actionOf(*menu, "II"));
    QVERIFY(session.display1().channelVisible(1));
    QVERIFY(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_Escape);
    QVERIFY(!menu->isVisible());
}

void LeadMenuTest::theOtherDisplayIsShownAndHidden()
{
    MonitorSession session;
    LeadMenu* menu = menuOf(session, session.display1());
    choose(*menu, actionOf(*menu, "Double panel"));
    QVERIFY(session.display1().isVisible() && session.display2().isHidden());
    QVERIFY(!menu->isVisible());
    menu = menuOf(session, session.display1());
    QVERIFY(!actionOf(*menu, "Double panel")->isChecked());
    choose(*menu, actionOf(*menu, "Double panel"));
    QVERIFY(session.display2().isVisible());

    menu = menuOf(session, session.display2());
    QVERIFY(actionOf(*menu, "Double panel")->isChecked());
    choose(*menu, actionOf(*menu, "Double panel"));
    QVERIFY(session.display1().isHidden() && session.display2().isVisible());
}

void LeadMenuTest::theHexaxialOrderIsThatOfTheFirstDisplay()
{
    {
        MonitorSession session;
        LeadMenu* menu = menuOf(session, session.display2());
        choose(*menu, actionOf(*menu, "Hexaxial order"));
        const int channels[] = {4, 0, 3, 1, 5, 2};
        for (int row = 0; row < 6; ++row) {
            QCOMPARE(session.display1().channelOrder(row), channels[row]);
            QCOMPARE(session.display2().channelOrder(row), row);
        }
        QVERIFY(session.display1().channelInverted(3));
        menu = menuOf(session, session.display1());
        QVERIFY(actionOf(*menu, "Hexaxial order")->isChecked());
    }
    QCOMPARE(settings::ecgMonitorDisplay.hexaxialOrder.value(), true);
    {
        MonitorSession session;
        LeadMenu* menu = menuOf(session, session.display1());
        choose(*menu, actionOf(*menu, "Hexaxial order"));
        QCOMPARE(session.display1().channelOrder(0), 0);
        QVERIFY(!session.display1().channelInverted(3));
    }
    QCOMPARE(settings::ecgMonitorDisplay.hexaxialOrder.valueOr(true), false);
}

void LeadMenuTest::theAverageBeatIsShownOnBothOrNone()
{
    {
        MonitorSession session;
        LeadMenu* menu = menuOf(session, session.display2());
        choose(*menu, actionOf(*menu, "Average beat"));
        QVERIFY(!session.display1().showAverageBeat() && !session.display2().showAverageBeat());
        QVERIFY(!actionOf(*menuOf(session, session.display1()), "Average beat")->isChecked());
    }
    QCOMPARE(settings::ecgMonitorDisplay.showAverageBeat.value(), false);
}

void LeadMenuTest::aSchemeColorsBothDisplaysAndIsRemembered()
{
    const QColor blackTrace = schemeColors(QStringLiteral("Black")).value(TraceColor);
    for (const bool isFirst : {true, false}) {
        QSettings().clear();
        {
            MonitorSession session;
            LeadMenu* menu = menuOf(session, isFirst ? session.display1() : session.display2());
            QMenu* schemes = schemesOf(*menu);
            schemes->actions().constFirst()->trigger();
            QCOMPARE(session.display1().color(TraceColor), blackTrace);
            QCOMPARE(session.display2().color(TraceColor), blackTrace);
            QCOMPARE(schemes->actions().constFirst()->data().toString(), QStringLiteral("Black"));
            menu->close();
            menu = menuOf(session, session.display1());
            QCOMPARE(contentOf(*schemesOf(*menu)).constFirst(), QStringLiteral("Black*"));
            schemesOf(*menu)->actions().constLast()->trigger();
            QCOMPARE(
                contentOf(*schemesOf(*menu)),
                QStringList({QStringLiteral("Black"), QStringLiteral("Blue"), QStringLiteral("Light*")}));
            menu->close();
        }
        QCOMPARE(settings::ecgMonitorDisplay.displayColorScheme.value(), QStringLiteral("Light"));
    }
}

void LeadMenuTest::itIsMadeAnewEachTime()
{
    MonitorSession session;
    for (int i = 0; i < 3; ++i)
        menuOf(session, session.display1())->close();
    const LeadMenu* menu = menuOf(session, session.display1());
    QCOMPARE(session.window->findChildren<LeadMenu*>().size(), 1);
    QCOMPARE(menu->findChildren<QMenu*>().size(), 1);
    QCOMPARE(menu->actions().size(), 14 + 5);
}

void LeadMenuTest::theContextMenuKeyOpensIt()
{
    MonitorSession session;
    session.display2().setFocus();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, somewhere, session.display2().mapToGlobal(somewhere));
    QCoreApplication::sendEvent(&session.display2(), &key);
    const auto* menu = session.window->findChild<LeadMenu*>();
    QVERIFY(menu && menu->isVisible());
    QCOMPARE(contentOf(*menu).at(6), QStringLiteral("V1*"));
}

QTEST_MAIN(LeadMenuTest)
#include "LeadMenuTest.moc"
