#include "analysis/beats/TBeat.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

#include <type_traits>

static_assert(std::is_trivially_copyable_v<TBeat>);

class BeatTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewBeatIsValidAndUnset()
    {
        const TBeat beat(2);
        QCOMPARE(beat.channelCount(), 2);
        QCOMPARE(beat.index(), -1);
        QVERIFY(beat.valid());
        QCOMPARE(beat.windowStart(), 0.0);
        for (int value = 0; value < 4; ++value) {
            QCOMPARE(beat.value(value), -1.0);
            QVERIFY(!beat.isValueSet(value));
        }
        for (int slot = 0; slot < 12; ++slot) {
            QCOMPARE(beat.fiducial(1, slot), -1.0);
            QVERIFY(!beat.isFiducialSet(1, slot));
        }
    }

    void theSignalGivesTheChannelCount()
    {
        const TInt16Signal signal(16, 16, 12, 500);
        QCOMPARE(TBeat(&signal).channelCount(), 12);
        QCOMPARE(TBeat(static_cast<const TSignal*>(nullptr)).channelCount(), 0);
    }

    void channelCountsAreKeptInRange()
    {
        QCOMPARE(TBeat().channelCount(), 0);
        QCOMPARE(TBeat(-3).channelCount(), 0);
        QCOMPARE(TBeat(17).channelCount(), 16);
    }

    void settingSetsTheFlag()
    {
        TBeat beat(1);
        beat.setValue(TBeat::fourthValue, 7.5);
        beat.setFiducial(0, TBeat::qtInterval, 0.4);
        QCOMPARE(beat.value(3), 7.5);
        QVERIFY(beat.isValueSet(3));
        QVERIFY(!beat.isValueSet(2));
        QCOMPARE(beat.fiducial(0, 11), 0.4);
        QVERIFY(beat.isFiducialSet(0, 11));
        QVERIFY(!beat.isFiducialSet(0, 10));
    }

    void outOfRangeReadsZeroAndIsNotSet_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<int>("slot");
        QTest::newRow("channel below") << -1 << 3;
        QTest::newRow("channel the signal lacks") << 2 << 3;
        QTest::newRow("channel above") << 16 << 3;
        QTest::newRow("slot below") << 0 << -1;
        QTest::newRow("slot above") << 0 << 12;
    }

    void outOfRangeReadsZeroAndIsNotSet()
    {
        QFETCH(int, channel);
        QFETCH(int, slot);
        TBeat beat(2);
        beat.setFiducial(channel, slot, 5.0);
        QCOMPARE(beat.fiducial(channel, slot), 0.0);
        QVERIFY(!beat.isFiducialSet(channel, slot));
        for (int c = 0; c < 2; ++c)
            for (int s = 0; s < 12; ++s)
                QCOMPARE(beat.fiducial(c, s), -1.0);
    }

    void valuesOutOfRangeReadZeroAndAreNotSet()
    {
        TBeat beat(1);
        for (const int value : {-1, 4}) {
            beat.setValue(value, 5.0);
            QCOMPARE(beat.value(value), 0.0);
            QVERIFY(!beat.isValueSet(value));
        }
        for (int value = 0; value < 4; ++value)
            QCOMPARE(beat.value(value), -1.0);
    }

    void addTimeShiftsTimesThatAreSetAndNothingElse()
    {
        TBeat beat(2);
        beat.setWindow(10.0, 0.75);
        beat.setValue(TBeat::beatTime, 10.25);
        beat.setValue(TBeat::rr, 0.5);
        for (int slot = 0; slot < 12; ++slot)
            beat.setFiducial(0, slot, slot);
        beat.setFiducial(1, TBeat::rPosition, 10.25);
        beat.addTime(-2.0);

        QCOMPARE(beat.windowStart(), 8.0);
        QCOMPARE(beat.windowLength(), 0.75);
        QCOMPARE(beat.value(TBeat::beatTime), 8.25);
        QCOMPARE(beat.value(TBeat::rr), 0.5);
        for (int slot = 0; slot < 12; ++slot)
            QCOMPARE(beat.fiducial(0, slot), slot >= 1 && slot <= 5 ? slot - 2.0 : double(slot));
        QCOMPARE(beat.fiducial(1, TBeat::rPosition), 8.25);
        QCOMPARE(beat.fiducial(1, TBeat::tPeak), -1.0);
    }

    void addTimeMarksTheBeatTimeAsSet()
    {
        TBeat beat(1);
        beat.addTime(3.0);
        QVERIFY(beat.isValueSet(TBeat::beatTime));
        QCOMPARE(beat.value(TBeat::beatTime), 2.0);
    }

    void theWindowCoversItsStartButNotItsEnd()
    {
        TBeat beat;
        beat.setWindow(1.0, 0.5);
        QVERIFY(!beat.covers(0.999));
        QVERIFY(beat.covers(1.0));
        QVERIFY(beat.covers(1.499));
        QVERIFY(!beat.covers(1.5));
    }
};

QTEST_GUILESS_MAIN(BeatTest)
#include "BeatTest.moc"
