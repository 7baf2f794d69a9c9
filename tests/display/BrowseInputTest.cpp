#include "display/BrowseFixture.h"

#include <QtTest>

namespace {

void send(QWidget& widget, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, QPointF(at), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void press(QWidget& widget, QPoint at, Qt::MouseButton button = Qt::LeftButton)
{
    send(widget, QEvent::MouseButtonPress, at, button, button);
}

void move(QWidget& widget, QPoint at, Qt::MouseButtons buttons = Qt::NoButton)
{
    send(widget, QEvent::MouseMove, at, Qt::NoButton, buttons);
}

void release(QWidget& widget, QPoint at, Qt::MouseButton button = Qt::LeftButton)
{
    send(widget, QEvent::MouseButtonRelease, at, button, Qt::NoButton);
}

} // namespace

class BrowseInputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Mouse
    void clickSelectsTheBeatUnderIt();
    void clickFarFromAnyBeatClearsTheSelection();
    void sameBeatIsNotToldTwice();
    void draggingSelectsBeatAfterBeat();
    void clickOutsideSelectionModeSelectsNothing();
    void clickInTheInsetSelectsNothing();
    void middleButtonPans();
    void panStopsAtTheEnds();
    void panDoesNotBeginInTheInset();
    void pressTakesFocusAndTracksTheMouse();
    void caliperInTheTrace();
    void caliperInTheInset();
    void caliperOnlyInItsMode();

    // Keys
    void keysMoveTheSelection();
    void keysScrollToTheSelection();
    void endOfTheListStaysSelected();
    void pageDownPastTheLastBeatSelectsIt();
    void withoutSelectionKeysWorkTheScrollBar();
    void withoutBeatsKeysWorkTheScrollBar();
    void otherKeysAreLeftToTheParent();
};

void BrowseInputTest::clickSelectsTheBeatUnderIt()
{
    BrowseFixture browse;
    browse.display.setMouseMode(SelectBeatsMode);
    QSignalSpy selected(&browse.display, &QSignalBrowseDisplay::selectedBeatChanged);
    press(browse.display, QPoint(browse.xOf(3.5 + 0.18), 100));
    QCOMPARE(browse.display.selectedBeat(), 3);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected[0][0].toInt(), 3);
}

void BrowseInputTest::clickFarFromAnyBeatClearsTheSelection()
{
    BrowseFixture browse;
    browse.display.setMouseMode(SelectBeatsMode);
    browse.display.setSelectedBeat(3);
    QSignalSpy selected(&browse.display, &QSignalBrowseDisplay::selectedBeatChanged);
    press(browse.display, QPoint(browse.xOf(3.5 + 0.22), 100));
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected[0][0].toInt(), -1);
    QCOMPARE(browse.display.selectedBeat(), -1);
}

void BrowseInputTest::sameBeatIsNotToldTwice()
{
    BrowseFixture browse;
    browse.display.setMouseMode(SelectBeatsMode);
    QSignalSpy selected(&browse.display, &QSignalBrowseDisplay::selectedBeatChanged);
    press(browse.display, QPoint(browse.xOf(3.5), 100));
    press(browse.display, QPoint(browse.xOf(3.6), 100));
    QCOMPARE(selected.count(), 1);
}

void BrowseInputTest::draggingSelectsBeatAfterBeat()
{
    BrowseFixture browse;
    browse.display.setMouseMode(SelectBeatsMode);
    press(browse.display, QPoint(browse.xOf(3.5), 100));
    move(browse.display, QPoint(browse.xOf(5.5), 100), Qt::LeftButton);
    QCOMPARE(browse.display.selectedBeat(), 5);
    release(browse.display, QPoint(browse.xOf(5.5), 100));
    move(browse.display, QPoint(browse.xOf(7.5), 100), Qt::LeftButton);
    QCOMPARE(browse.display.selectedBeat(), 5);
}

void BrowseInputTest::clickOutsideSelectionModeSelectsNothing()
{
    BrowseFixture browse;
    press(browse.display, QPoint(browse.xOf(3.5), 100));
    browse.display.setMouseMode(CaliperMode);
    press(browse.display, QPoint(browse.xOf(3.5), 100));
    QCOMPARE(browse.display.selectedBeat(), -1);
}

void BrowseInputTest::clickInTheInsetSelectsNothing()
{
    BrowseFixture browse;
    browse.display.setShowAverageBeat(true);
    browse.display.setMouseMode(SelectBeatsMode);
    browse.display.setStartTime(10.1);
    browse.display.setSelectedBeat(20);
    press(browse.display, QPoint(browse.xOf(10.1) - 2, 100));
    move(browse.display, QPoint(browse.xOf(10.1) - 4, 100), Qt::LeftButton);
    QCOMPARE(browse.display.selectedBeat(), 20);
}

void BrowseInputTest::middleButtonPans()
{
    BrowseFixture browse;
    browse.display.setStartTime(20.0);
    QSignalSpy moved(&browse.display, &QSignalBrowseDisplay::startTimeChanged);
    const double held = browse.display.timeAt(500);
    press(browse.display, QPoint(500, 100), Qt::MiddleButton);
    for (const int x : {499, 498, 450, 351, 350})
        move(browse.display, QPoint(x, 100), Qt::MiddleButton);
    // What was held is still under the pointer.
    QVERIFY(std::fabs(browse.display.timeAt(350) - held) < 1e-9);
    QVERIFY(browse.display.startTime() > 21.0);
    QCOMPARE(moved.count(), 5);
    QCOMPARE(browse.bar().value(), int(browse.display.startTime() * 100.0));
    const double start = browse.display.startTime();
    release(browse.display, QPoint(350, 100), Qt::MiddleButton);
    move(browse.display, QPoint(300, 100), Qt::MiddleButton);
    QCOMPARE(browse.display.startTime(), start);
}

void BrowseInputTest::panStopsAtTheEnds()
{
    BrowseFixture browse;
    browse.display.setStartTime(0.5);
    press(browse.display, QPoint(100, 100), Qt::MiddleButton);
    move(browse.display, QPoint(800, 100), Qt::MiddleButton);
    QCOMPARE(browse.display.startTime(), 0.0);
    // The anchor is taken anew, so that the way back begins at once.
    move(browse.display, QPoint(790, 100), Qt::MiddleButton);
    QVERIFY(browse.display.startTime() > 0.05);
    release(browse.display, QPoint(790, 100), Qt::MiddleButton);
    browse.display.setStartTime(50.0);
    press(browse.display, QPoint(800, 100), Qt::MiddleButton);
    move(browse.display, QPoint(10, 100), Qt::MiddleButton);
    QCOMPARE(browse.display.startTime(), 60.0 - browse.display.pageSeconds());
}

void BrowseInputTest::panDoesNotBeginInTheInset()
{
    BrowseFixture browse;
    browse.display.setShowAverageBeat(true);
    browse.display.setStartTime(20.0);
    press(browse.display, QPoint(30, 100), Qt::MiddleButton);
    move(browse.display, QPoint(300, 100), Qt::MiddleButton);
    QCOMPARE(browse.display.startTime(), 20.0);
}

void BrowseInputTest::pressTakesFocusAndTracksTheMouse()
{
    BrowseFixture browse;
    browse.display.show();
    QVERIFY(QTest::qWaitForWindowActive(&browse.display));
    browse.bar().setFocus();
    QVERIFY(!browse.display.hasMouseTracking());
    press(browse.display, QPoint(300, 100));
    QVERIFY(browse.display.hasFocus());
    QVERIFY(browse.display.hasMouseTracking());
    QCOMPARE(browse.bar().focusPolicy(), Qt::ClickFocus);
}

void BrowseInputTest::caliperInTheTrace()
{
    BrowseFixture browse;
    browse.display.setMouseMode(CaliperMode);
    QVERIFY(browse.display.hasMouseTracking());
    move(browse.display, QPoint(300, 50));
    QVERIFY(browse.display.caliper().shown);
    QCOMPARE(browse.display.caliper().from, browse.signal->indexOf(browse.display.timeAt(300)));
    press(browse.display, QPoint(300, 50));
    move(browse.display, QPoint(300, 50), Qt::LeftButton);
    move(browse.display, QPoint(360, 90), Qt::LeftButton);
    QVERIFY(browse.display.caliper().dragging);
    QCOMPARE(browse.display.caliper().to, browse.signal->indexOf(browse.display.timeAt(360)));
    release(browse.display, QPoint(360, 90));
    QVERIFY(browse.display.caliper().from != browse.display.caliper().to);
}

void BrowseInputTest::caliperInTheInset()
{
    BrowseFixture browse;
    browse.display.setShowAverageBeat(true);
    browse.display.setMouseMode(CaliperMode);
    browse.display.setStartTime(20.0);
    move(browse.display, QPoint(50, 50));
    QVERIFY(browse.display.caliper().shown);
    QVERIFY(browse.display.caliper().inBeat);
    move(browse.display, QPoint(70, 50), Qt::LeftButton);
    move(browse.display, QPoint(90, 50), Qt::LeftButton);
    QVERIFY(browse.display.caliper().dragging);
    QVERIFY(browse.display.caliper().to > browse.display.caliper().from);
    move(browse.display, QPoint(400, 50));
    move(browse.display, QPoint(401, 50));
    QVERIFY(!browse.display.caliper().inBeat);
}

void BrowseInputTest::caliperOnlyInItsMode()
{
    BrowseFixture browse;
    browse.display.setMouseMode(SelectBeatsMode);
    move(browse.display, QPoint(300, 50));
    QVERIFY(!browse.display.caliper().shown);
}

void BrowseInputTest::keysMoveTheSelection()
{
    BrowseFixture browse(60, {12});
    browse.display.setSelectedBeat(11);
    QSignalSpy selected(&browse.display, &QSignalBrowseDisplay::selectedBeatChanged);
    const int page = int(browse.display.pageSeconds());
    const std::pair<Qt::Key, int> steps[] = {
        {Qt::Key_Right, 13},  {Qt::Key_Left, 11}, {Qt::Key_PageDown, 12 + page},
        {Qt::Key_PageUp, 11}, {Qt::Key_Home, 0},  {Qt::Key_End, 59}};
    for (const auto& [key, id] : steps) {
        QTest::keyClick(&browse.display, key);
        QCOMPARE(browse.display.selectedBeat(), id);
        QCOMPARE(selected.takeLast()[0].toInt(), id);
    }
}

void BrowseInputTest::keysScrollToTheSelection()
{
    BrowseFixture browse;
    const double page = browse.display.pageSeconds();
    browse.display.setStartTime(20.0);
    browse.display.setSelectedBeat(21);
    QTest::keyClick(&browse.display, Qt::Key_Right);
    QCOMPARE(browse.display.startTime(), 20.0);
    QTest::keyClick(&browse.display, Qt::Key_PageDown);
    const double time = browse.display.selectedBeat() + 0.5;
    QVERIFY(std::fabs(browse.display.startTime() - (time + 0.3 - page)) < 1e-9);
    QCOMPARE(browse.bar().value(), int(browse.display.startTime() * 100.0));
    QTest::keyClick(&browse.display, Qt::Key_PageUp);
    QVERIFY(std::fabs(browse.display.startTime() - (browse.display.selectedBeat() + 0.2)) < 1e-9);
    QTest::keyClick(&browse.display, Qt::Key_End);
    QCOMPARE(browse.display.startTime(), 60.0 - page - 0.2);
    QTest::keyClick(&browse.display, Qt::Key_Home);
    QVERIFY(std::fabs(browse.display.startTime() - 0.2) < 1e-9);
}

void BrowseInputTest::endOfTheListStaysSelected()
{
    BrowseFixture browse;
    browse.display.setSelectedBeat(59);
    QSignalSpy selected(&browse.display, &QSignalBrowseDisplay::selectedBeatChanged);
    QTest::keyClick(&browse.display, Qt::Key_Right);
    QCOMPARE(browse.display.selectedBeat(), 59);
    browse.display.setSelectedBeat(0);
    QTest::keyClick(&browse.display, Qt::Key_Left);
    QCOMPARE(browse.display.selectedBeat(), 0);
    QCOMPARE(selected.count(), 0);
}

void BrowseInputTest::pageDownPastTheLastBeatSelectsIt()
{
    BrowseFixture browse;
    browse.display.setSelectedBeat(56);
    QTest::keyClick(&browse.display, Qt::Key_PageDown);
    QCOMPARE(browse.display.selectedBeat(), 59);
    browse.display.setSelectedBeat(2);
    QTest::keyClick(&browse.display, Qt::Key_PageUp);
    QCOMPARE(browse.display.selectedBeat(), 0);
}

void BrowseInputTest::withoutSelectionKeysWorkTheScrollBar()
{
    BrowseFixture browse;
    QSignalSpy selected(&browse.display, &QSignalBrowseDisplay::selectedBeatChanged);
    QScrollBar& bar = browse.bar();
    QTest::keyClick(&browse.display, Qt::Key_Right);
    QCOMPARE(bar.value(), bar.singleStep());
    QTest::keyClick(&browse.display, Qt::Key_PageDown);
    QCOMPARE(bar.value(), bar.singleStep() + bar.pageStep());
    QCOMPARE(browse.display.startTime(), bar.value() * 0.01);
    QTest::keyClick(&browse.display, Qt::Key_PageUp);
    QTest::keyClick(&browse.display, Qt::Key_Left);
    QCOMPARE(bar.value(), 0);
    QTest::keyClick(&browse.display, Qt::Key_End);
    QCOMPARE(bar.value(), bar.maximum());
    // The exact end, not that of the hundredths.
    QCOMPARE(browse.display.startTime(), 60.0 - browse.display.pageSeconds());
    QTest::keyClick(&browse.display, Qt::Key_Home);
    QCOMPARE(bar.value(), 0);
    browse.display.setStartTime(0.004);
    QTest::keyClick(&browse.display, Qt::Key_Home);
    QCOMPARE(browse.display.startTime(), 0.0);
    QCOMPARE(selected.count(), 0);
}

void BrowseInputTest::withoutBeatsKeysWorkTheScrollBar()
{
    BrowseFixture browse;
    browse.display.setSelectedBeat(5);
    browse.display.setBeatSource(nullptr);
    QTest::keyClick(&browse.display, Qt::Key_Right);
    QCOMPARE(browse.bar().value(), browse.bar().singleStep());
    TBeatRing none(1);
    TStoredBeats empty(&none);
    browse.display.setBeatSource(&empty);
    QTest::keyClick(&browse.display, Qt::Key_End);
    QCOMPARE(browse.bar().value(), browse.bar().maximum());
    QCOMPARE(browse.display.selectedBeat(), 5);
}

void BrowseInputTest::otherKeysAreLeftToTheParent()
{
    BrowseFixture browse;
    browse.display.setSelectedBeat(5);
    QKeyEvent event(QEvent::KeyPress, Qt::Key_F5, Qt::NoModifier);
    QApplication::sendEvent(&browse.display, &event);
    QVERIFY(!event.isAccepted());
    QKeyEvent known(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    QApplication::sendEvent(&browse.display, &known);
    QVERIFY(known.isAccepted());
}

QTEST_MAIN(BrowseInputTest)

#include "BrowseInputTest.moc"
