#include "analysis/beats/TBeatRing.h"

#include "analysis/beats/BeatSamples.h"

#include <QtTest>

class BeatRingTest : public QObject
{
    Q_OBJECT

private:
    static TBeat beatOf(int n)
    {
        TBeat beat(1);
        beat.setWindow(n + 1.0, 0.5);
        beat.setNumber(n);
        return beat;
    }

    static void fill(TBeatRing& ring, int beats)
    {
        for (int n = 0; n < beats; ++n)
            QCOMPARE(ring.add(beatOf(n)), n);
    }

private Q_SLOTS:
    void holdsTenThousandBeats()
    {
        TBeatRing ring(1);
        QCOMPARE(ring.maxCount(), 10000);
        fill(ring, 10001);
        TBeat beat;
        QVERIFY(!ring.beat(0, beat));
        QVERIFY(ring.beat(1, beat));
        QCOMPARE(beat.number(), 1);
        QVERIFY(ring.beat(10000, beat));
        QCOMPARE(beat.number(), 10000);
    }

    void theCopyGetsItsPlaceNotTheBeat()
    {
        TBeatRing ring(1, 4);
        TBeat beat = beatOf(0);
        beat.setIndex(33);
        QCOMPARE(ring.add(beat), 0);
        QCOMPARE(ring.add(beat), 1);
        QCOMPARE(beat.index(), 33);
        QVERIFY(ring.beat(1, beat));
        QCOMPARE(beat.index(), 1);
    }

    void numbersGoOnWhenTheOldestIsOverwritten()
    {
        TBeatRing ring(1, 4);
        fill(ring, 4);
        QCOMPARE(ring.firstIndex(), 0);
        QCOMPARE(ring.add(beatOf(4)), 4);
        QCOMPARE(ring.add(beatOf(5)), 5);
        QCOMPARE(ring.count(), 6);
        QCOMPARE(ring.firstIndex(), 2);
        TBeat beat;
        for (int n = -1; n <= 6; ++n) {
            const bool held = n >= 2 && n < 6;
            QCOMPARE(ring.beat(n, beat), held);
            if (held) {
                QCOMPARE(beat.number(), n);
                QCOMPARE(beat.index(), n);
            }
        }
    }

    void aBeatReadBeforeTheWrapFindsItsNeighbours()
    {
        TBeatRing ring(1, 4);
        fill(ring, 4);
        TBeat held;
        QVERIFY(ring.beat(3, held));
        ring.add(beatOf(4));
        ring.add(beatOf(5));
        TBeat beat;
        QVERIFY(ring.nextBeat(held, beat));
        QCOMPARE(beat.number(), 4);
        QVERIFY(ring.previousBeat(held, beat));
        QCOMPARE(beat.number(), 2);
        QVERIFY(!ring.previousBeat(beat, beat));
    }

    void aForgottenBeatIsFollowedByTheOldest()
    {
        TBeatRing ring(1, 4);
        fill(ring, 1);
        TBeat forgotten;
        QVERIFY(ring.beat(0, forgotten));
        for (int n = 1; n < 10; ++n)
            ring.add(beatOf(n));
        TBeat beat;
        QVERIFY(ring.nextBeat(forgotten, beat));
        QCOMPARE(beat.number(), 6);
        QVERIFY(!ring.previousBeat(forgotten, beat));
    }

    void lookUpsByTimeWorkAfterTheWrap()
    {
        TBeatRing ring(1, 4);
        fill(ring, 11);
        TBeat beat;
        QVERIFY(ring.beatAt(8.0, beat));
        QCOMPARE(beat.number(), 7);
        QVERIFY(ring.beatAt(11.25, beat));
        QCOMPARE(beat.number(), 10);
        QVERIFY(!ring.beatAt(7.25, beat));
        QVERIFY(ring.firstBeatAfter(0.0, beat));
        QCOMPARE(beat.number(), 7);
        QVERIFY(!ring.lastBeatBefore(8.0, beat));
        QVERIFY(ring.lastBeatBefore(100.0, beat));
        QCOMPARE(beat.number(), 10);
    }

    void aRingHoldsAtLeastOneBeat()
    {
        TBeatRing ring(1, 0);
        QCOMPARE(ring.maxCount(), 1);
        fill(ring, 3);
        TBeat beat;
        QVERIFY(ring.beat(2, beat));
        QVERIFY(!ring.beat(1, beat));
    }

    void randomBeatsComeBackWhole()
    {
        std::mt19937 random(47);
        TBeatRing ring(16, 50);
        std::vector<TBeat> beats;
        for (int n = 0; n < 120; ++n) {
            beats.push_back(samples::randomBeat(random, 16));
            ring.add(beats.back());
        }
        TBeat beat;
        for (int n = ring.firstIndex(); n < ring.count(); ++n) {
            QVERIFY(ring.beat(n, beat));
            QVERIFY(samples::sameBeat(beat, beats[n]));
        }
    }
};

QTEST_GUILESS_MAIN(BeatRingTest)
#include "BeatRingTest.moc"
