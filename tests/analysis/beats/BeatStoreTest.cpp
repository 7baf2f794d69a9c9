#include "analysis/beats/TBeatRing.h"

#include <QtTest>

#include <limits>
#include <random>

/// Look-ups of every store, shown on the one in memory.
class BeatStoreTest : public QObject
{
    Q_OBJECT

private:
    static void add(TBeatStore& store, double start, double length, bool valid = true)
    {
        TBeat beat(1);
        beat.setWindow(start, length);
        beat.setValid(valid);
        beat.setNumber(valid ? 1 : -1);
        store.add(beat);
    }

    /// Windows [1, 1.5), [2, 2.5), ... up to `beats`.
    static void fill(TBeatStore& store, int beats)
    {
        for (int i = 0; i < beats; ++i)
            add(store, i + 1.0, 0.5);
    }

    static constexpr int none = -99;

    static int at(const TBeatStore& store, double t)
    {
        TBeat beat;
        return store.beatAt(t, beat) ? beat.index() : none;
    }

    static int after(const TBeatStore& store, double t)
    {
        TBeat beat;
        return store.firstBeatAfter(t, beat) ? beat.index() : none;
    }

    static int before(const TBeatStore& store, double t)
    {
        TBeat beat;
        return store.lastBeatBefore(t, beat) ? beat.index() : none;
    }

private Q_SLOTS:
    void anEmptyStoreHasNothing()
    {
        const TBeatRing store(1, 4);
        TBeat beat(1);
        beat.setNumber(77);
        QVERIFY(!store.beat(0, beat));
        QVERIFY(!store.nextBeat(beat, beat));
        QVERIFY(!store.previousBeat(beat, beat));
        QVERIFY(!store.nextValidBeat(beat, beat));
        QVERIFY(!store.previousValidBeat(beat, beat));
        QVERIFY(!store.beatAt(0.0, beat));
        QVERIFY(!store.firstBeatAfter(-1.0, beat));
        QVERIFY(!store.lastBeatBefore(1e9, beat));
        QCOMPARE(beat.number(), 77);
    }

    void lookUpsByTimeKeepTheirBoundaries()
    {
        TBeatRing store(1, 10);
        fill(store, 3);
        QCOMPARE(at(store, 0.999), none);
        QCOMPARE(at(store, 1.0), 0);
        QCOMPARE(at(store, 1.499), 0);
        QCOMPARE(at(store, 1.5), none);
        QCOMPARE(at(store, 2.0), 1);
        QCOMPARE(at(store, 3.25), 2);
        QCOMPARE(at(store, 3.5), none);

        QCOMPARE(after(store, 0.0), 0);
        QCOMPARE(after(store, 1.0), 1);
        QCOMPARE(after(store, 2.999), 2);
        QCOMPARE(after(store, 3.0), none);

        QCOMPARE(before(store, 1.0), none);
        QCOMPARE(before(store, 1.001), 0);
        QCOMPARE(before(store, 3.0), 1);
        QCOMPARE(before(store, 100.0), 2);
    }

    void noTimeIsNowhere()
    {
        TBeatRing store(1, 10);
        fill(store, 3);
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QCOMPARE(at(store, nan), none);
        QCOMPARE(after(store, nan), none);
        QCOMPARE(before(store, nan), none);
    }

    void ofOverlappingWindowsTheLaterBeatIsTaken()
    {
        TBeatRing store(1, 10);
        add(store, 1.0, 1.0);
        add(store, 1.4, 0.2);
        QCOMPARE(at(store, 1.3), 0);
        QCOMPARE(at(store, 1.5), 1);
        QCOMPARE(at(store, 1.7), 0);
    }

    void aLongWindowIsFoundBehindSeveralShortOnes()
    {
        TBeatRing store(1, 10);
        add(store, 1.0, 1.0);
        add(store, 1.3, 0.2);
        add(store, 1.6, 0.2);
        QCOMPARE(at(store, 1.4), 1);
        QCOMPARE(at(store, 1.55), 0);
        QCOMPARE(at(store, 1.7), 2);
        QCOMPARE(at(store, 1.9), 0);
        QCOMPARE(at(store, 2.0), none);
    }

    void lookUpsByTimeFindWhatAWalkFinds()
    {
        std::mt19937 random(46);
        std::uniform_real_distribution<double> gap(0.3, 2.0);
        std::uniform_real_distribution<double> length(0.1, 2.0);
        TBeatRing store(1, 64);
        double start = 0.0;
        for (int i = 0; i < 150; ++i)
            add(store, start += gap(random), length(random));
        for (double t = 0.0; t < start + 3.0; t += 0.05) {
            int covering = none;
            int next = none;
            int previous = none;
            TBeat beat;
            while (store.nextBeat(beat, beat)) {
                covering = beat.covers(t) ? beat.index() : covering;
                next = next == none && beat.windowStart() > t ? beat.index() : next;
                previous = beat.windowStart() < t ? beat.index() : previous;
            }
            QCOMPARE(at(store, t), covering);
            QCOMPARE(after(store, t), next);
            QCOMPARE(before(store, t), previous);
        }
    }

    void neighboursGoByTheIndex()
    {
        TBeatRing store(1, 10);
        fill(store, 3);
        TBeat beat;
        QVERIFY(store.beat(1, beat));
        TBeat other;
        QVERIFY(store.nextBeat(beat, other));
        QCOMPARE(other.index(), 2);
        QVERIFY(!store.nextBeat(other, other));
        QVERIFY(store.previousBeat(beat, other));
        QCOMPARE(other.index(), 0);
        QVERIFY(!store.previousBeat(other, other));
    }

    void indicesBeyondTheStoreHaveNoNeighbours()
    {
        TBeatRing store(1, 10);
        fill(store, 3);
        TBeat beat;
        beat.setIndex(std::numeric_limits<int>::max());
        QVERIFY(!store.nextBeat(beat, beat));
        QVERIFY(!store.previousBeat(beat, beat));
        beat.setIndex(std::numeric_limits<int>::min());
        QVERIFY(!store.previousBeat(beat, beat));
        QVERIFY(store.nextBeat(beat, beat));
        QCOMPARE(beat.index(), 0);
    }

    void rejectedBeatsArePassedOver()
    {
        TBeatRing store(1, 10);
        add(store, 1.0, 0.5, false);
        add(store, 2.0, 0.5);
        add(store, 3.0, 0.5, false);
        add(store, 4.0, 0.5, false);
        add(store, 5.0, 0.5);
        add(store, 6.0, 0.5, false);
        TBeat beat;
        QVERIFY(store.nextValidBeat(beat, beat));
        QCOMPARE(beat.index(), 1);
        QVERIFY(store.nextValidBeat(beat, beat));
        QCOMPARE(beat.index(), 4);
        QVERIFY(!store.nextValidBeat(beat, beat));
        QCOMPARE(beat.index(), 4);
        QVERIFY(store.previousValidBeat(beat, beat));
        QCOMPARE(beat.index(), 1);
        QVERIFY(!store.previousValidBeat(beat, beat));
        QVERIFY(store.nextBeat(beat, beat));
        QVERIFY(!beat.valid());
    }
};

QTEST_GUILESS_MAIN(BeatStoreTest)
#include "BeatStoreTest.moc"
