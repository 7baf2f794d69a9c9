#include "display/BeatNavigation.h"
#include "analysis/beats/TBeatRing.h"
#include "display/DisplaySignal.h"
#include "display/TStoredBeats.h"

#include <QtTest>

namespace {

/// Beats at 1.5 s, 2.5 s and so on to 20.5 s; those of the given indices are rejected.
void fill(TBeatRing& ring, std::initializer_list<int> rejected = {})
{
    for (int i = 0; i < 20; ++i) {
        TBeat beat = display_signal::beatAt(1.5 + i, 1.0, nullptr);
        if (std::find(rejected.begin(), rejected.end(), i) != rejected.end())
            beat.setNumber(-1);
        ring.add(beat);
    }
}

int idOf(const std::optional<TBeatMark>& beat)
{
    return beat ? beat->id : -1;
}

} // namespace

class BeatNavigationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storedBeatTellsTimeIntervalAndWhetherItCounts();
    void nearestIsByTimeAndNotByWindow();
    void nearestOfAnEmptyListIsNone();
    void firstAfterAndLastBeforeLeaveTheTimeItselfOut();
    void firstAndLast();
    void forgottenBeatsAreNoneOfTheList();
    void rejectedBeatsAreNotSelectable();
    void keysAreKnown();
    void movesBeatByBeat();
    void movesByPages();
    void pageEndingOnARejectedBeatGoesOnToTheNext();
    void endsStayWhereTheyAre();
    void endsThatAreRejectedAreNotSelected();
    void selectionThatIsNoneGoesToTheEnds();
    void forwardShowsTheBeatWithRoomBehindIt();
    void backwardShowsTheBeatWithRoomBeforeIt();
};

void BeatNavigationTest::storedBeatTellsTimeIntervalAndWhetherItCounts()
{
    TBeatRing ring(1);
    fill(ring, {3});
    const TStoredBeats beats(&ring);
    QCOMPARE(beats.count(), 20);
    const auto beat = beats.beat(2);
    QVERIFY(beat);
    QCOMPARE(beat->id, 2);
    QCOMPARE(beat->time, 3.5);
    QCOMPARE(beat->rr, 1.0);
    QVERIFY(beat->marked);
    QVERIFY(!beats.beat(3)->marked);
    QVERIFY(!beats.beat(20));
    QVERIFY(!beats.beat(-1));
    QCOMPARE(idOf(beats.beatAfter(2)), 3);
    QCOMPARE(idOf(beats.beatAfter(19)), -1);
}

void BeatNavigationTest::nearestIsByTimeAndNotByWindow()
{
    TBeatRing ring(1);
    fill(ring);
    const TStoredBeats beats(&ring);
    // The window of beat 2 starts at 3.05 s.
    QCOMPARE(idOf(beats.nearestBeat(2.98)), 1);
    QCOMPARE(idOf(beats.nearestBeat(3.02)), 2);
    QCOMPARE(idOf(beats.nearestBeat(0.0)), 0);
    QCOMPARE(idOf(beats.nearestBeat(100.0)), 19);
}

void BeatNavigationTest::nearestOfAnEmptyListIsNone()
{
    TBeatRing ring(1);
    const TStoredBeats beats(&ring);
    QCOMPARE(beats.count(), 0);
    QVERIFY(!beats.nearestBeat(1.0));
    QVERIFY(!beats.firstBeat());
    QVERIFY(!beats.lastBeat());
    QVERIFY(!beats.selectableAfter(-1));
    QVERIFY(!beats.selectableBefore(5));
    QVERIFY(!moveSelection(beats, 3, BeatMove::next, 8.0));
}

void BeatNavigationTest::firstAfterAndLastBeforeLeaveTheTimeItselfOut()
{
    TBeatRing ring(1);
    fill(ring);
    const TStoredBeats beats(&ring);
    QCOMPARE(idOf(beats.firstBeatAfter(4.4)), 3);
    QCOMPARE(idOf(beats.firstBeatAfter(4.5)), 4);
    QCOMPARE(idOf(beats.firstBeatAfter(20.5)), -1);
    QCOMPARE(idOf(beats.lastBeatBefore(4.6)), 3);
    QCOMPARE(idOf(beats.lastBeatBefore(4.5)), 2);
    QCOMPARE(idOf(beats.lastBeatBefore(1.5)), -1);
}

void BeatNavigationTest::firstAndLast()
{
    TBeatRing ring(1);
    fill(ring);
    const TStoredBeats beats(&ring);
    QCOMPARE(idOf(beats.firstBeat()), 0);
    QCOMPARE(idOf(beats.lastBeat()), 19);
}

void BeatNavigationTest::forgottenBeatsAreNoneOfTheList()
{
    TBeatRing ring(1);
    const int more = 5;
    for (int i = 0; i < ring.maxCount() + more; ++i)
        ring.add(display_signal::beatAt(1.5 + i, 1.0, nullptr));
    const TStoredBeats beats(&ring);
    QCOMPARE(beats.count(), ring.maxCount());
    QCOMPARE(idOf(beats.firstBeat()), more);
    QCOMPARE(idOf(beats.beatAfter(0)), more);
    QCOMPARE(idOf(beats.nearestBeat(0.0)), more);
    QCOMPARE(idOf(beats.lastBeatBefore(1.5 + more)), -1);
}

void BeatNavigationTest::rejectedBeatsAreNotSelectable()
{
    TBeatRing ring(1);
    fill(ring, {3, 4});
    const TStoredBeats beats(&ring);
    QCOMPARE(idOf(beats.selectableAfter(2)), 5);
    QCOMPARE(idOf(beats.selectableBefore(5)), 2);
}

void BeatNavigationTest::keysAreKnown()
{
    QCOMPARE(*beatMove(Qt::Key_Right), BeatMove::next);
    QCOMPARE(*beatMove(Qt::Key_Left), BeatMove::previous);
    QCOMPARE(*beatMove(Qt::Key_PageDown), BeatMove::nextPage);
    QCOMPARE(*beatMove(Qt::Key_PageUp), BeatMove::previousPage);
    QCOMPARE(*beatMove(Qt::Key_Home), BeatMove::first);
    QCOMPARE(*beatMove(Qt::Key_End), BeatMove::last);
    QVERIFY(!beatMove(Qt::Key_Up));
}

void BeatNavigationTest::movesBeatByBeat()
{
    TBeatRing ring(1);
    fill(ring, {6});
    const TStoredBeats beats(&ring);
    QCOMPARE(idOf(moveSelection(beats, 5, BeatMove::next, 8.0)), 7);
    QCOMPARE(idOf(moveSelection(beats, 7, BeatMove::previous, 8.0)), 5);
    QCOMPARE(idOf(moveSelection(beats, 7, BeatMove::first, 8.0)), 0);
    QCOMPARE(idOf(moveSelection(beats, 7, BeatMove::last, 8.0)), 19);
}

void BeatNavigationTest::movesByPages()
{
    TBeatRing ring(1);
    fill(ring);
    const TStoredBeats beats(&ring);
    QCOMPARE(idOf(moveSelection(beats, 2, BeatMove::nextPage, 7.9)), 10);
    QCOMPARE(idOf(moveSelection(beats, 10, BeatMove::previousPage, 7.9)), 2);
}

void BeatNavigationTest::pageEndingOnARejectedBeatGoesOnToTheNext()
{
    TBeatRing ring(1);
    fill(ring, {2, 10});
    const TStoredBeats beats(&ring);
    QCOMPARE(idOf(moveSelection(beats, 3, BeatMove::nextPage, 6.9)), 11);
    QCOMPARE(idOf(moveSelection(beats, 9, BeatMove::previousPage, 6.9)), 1);
}

void BeatNavigationTest::endsStayWhereTheyAre()
{
    TBeatRing ring(1);
    fill(ring);
    const TStoredBeats beats(&ring);
    QCOMPARE(idOf(moveSelection(beats, 19, BeatMove::next, 8.0)), 19);
    QCOMPARE(idOf(moveSelection(beats, 15, BeatMove::nextPage, 8.0)), 19);
    QCOMPARE(idOf(moveSelection(beats, 0, BeatMove::previous, 8.0)), 0);
    QCOMPARE(idOf(moveSelection(beats, 4, BeatMove::previousPage, 8.0)), 0);
}

void BeatNavigationTest::endsThatAreRejectedAreNotSelected()
{
    TBeatRing ring(1);
    fill(ring, {0, 19});
    const TStoredBeats beats(&ring);
    QCOMPARE(idOf(moveSelection(beats, 18, BeatMove::next, 8.0)), 18);
    QCOMPARE(idOf(moveSelection(beats, 1, BeatMove::previous, 8.0)), 1);
    QCOMPARE(idOf(moveSelection(beats, 9, BeatMove::first, 8.0)), 1);
    QCOMPARE(idOf(moveSelection(beats, 9, BeatMove::last, 8.0)), 18);
}

void BeatNavigationTest::selectionThatIsNoneGoesToTheEnds()
{
    TBeatRing ring(1);
    fill(ring);
    const TStoredBeats beats(&ring);
    QCOMPARE(idOf(moveSelection(beats, 500, BeatMove::nextPage, 8.0)), 19);
    QCOMPARE(idOf(moveSelection(beats, 500, BeatMove::previousPage, 8.0)), 0);
    QCOMPARE(idOf(moveSelection(beats, 500, BeatMove::next, 8.0)), 19);
}

void BeatNavigationTest::forwardShowsTheBeatWithRoomBehindIt()
{
    const TBeatMark beat{0, 20.0, 1.0, true};
    QCOMPARE(startTimeShowing(beat, BeatMove::next, 12.0, 8.0), 12.3);
    QCOMPARE(startTimeShowing(beat, BeatMove::next, 12.4, 8.0), 12.4);
    // Seen or not, a beat left of the page is none that forward moves scroll to.
    QCOMPARE(startTimeShowing(beat, BeatMove::last, 30.0, 8.0), 30.0);
}

void BeatNavigationTest::backwardShowsTheBeatWithRoomBeforeIt()
{
    const TBeatMark beat{0, 20.0, 1.0, true};
    QCOMPARE(startTimeShowing(beat, BeatMove::previous, 19.9, 8.0), 19.7);
    QCOMPARE(startTimeShowing(beat, BeatMove::previousPage, 19.6, 8.0), 19.6);
    QCOMPARE(startTimeShowing(beat, BeatMove::first, 50.0, 8.0), 19.7);
}

QTEST_MAIN(BeatNavigationTest)

#include "BeatNavigationTest.moc"
