#include "analysis/signals/TCountLog.h"
#include "analysis/signals/TDoubleSignal.h"

#include <QtTest>

#include <limits>

class DoubleSignalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itsSamplesHave64Bits()
    {
        const TDoubleSignal signal(4, 8, 2, 500);
        QCOMPARE(signal.storageBits(), 64);
        QCOMPARE(signal.resolutionBits(), 64);
        QCOMPARE(signal.countValue(), 2.0 / 18446744073709551616.0);
    }

    void doublesAreKeptAndSamplesTruncated()
    {
        TDoubleSignal signal(2, 8, 1, 500);
        const double values[] = {1.75, -1.75, 1e12, qQNaN()};
        const double* const rows[] = {values};
        signal.addPerChannel(rows, 4);
        double read[6] = {};
        signal.readDoubles(0, -1, 6, read);
        QCOMPARE(read[0], 0.0);
        QCOMPARE(read[1], 1.75);
        QCOMPARE(read[2], -1.75);
        QCOMPARE(read[3], 1e12);
        QVERIFY(qIsNaN(read[4]));
        QCOMPARE(read[5], 0.0);
        QCOMPARE(signal.sample(0, 0), 1);
        QCOMPARE(signal.sample(0, 1), -1);
        QCOMPARE(signal.sample(0, 2), std::numeric_limits<int>::max());
        QCOMPARE(signal.sample(0, 3), 0);
        QCOMPARE(signal.sample(0, 4), 0);
        QCOMPARE(signal.sample(1, 0), 0);
    }

    void blocksAreTruncatedAndClampedTo16Bits()
    {
        TDoubleSignal signal(2, 8, 1, 500);
        const double values[] = {-1.75, 40000.0};
        const double* const rows[] = {values};
        signal.addPerChannelDouble(rows, 2);
        QCOMPARE(signal.lockBlock(0, 0)[0], short(-1));
        QCOMPARE(signal.lockBlock(0, 0)[1], short(32767));
    }

    void interleavedFramesAreDoubles()
    {
        TDoubleSignal signal(2, 8, 2, 500);
        const double frames[] = {1.5, -1.5, 2.5, -2.5, 9.0};
        signal.addInterleaved(reinterpret_cast<const char*>(frames), sizeof frames);
        QCOMPARE(signal.sampleCount(), 2);
        double read[2] = {};
        signal.readDoubles(1, 0, 2, read);
        QCOMPARE(read[0], -1.5);
        QCOMPARE(read[1], -2.5);
        signal.addInterleaved(reinterpret_cast<const char*>(frames), -16);
        QCOMPARE(signal.sampleCount(), 2);
    }

    void sixteenBitSamplesAreTakenToo()
    {
        TDoubleSignal signal(2, 8, 1, 500);
        const short values[] = {-32768, 7};
        const short* const rows[] = {values};
        signal.addPerChannel(rows, 2);
        QCOMPARE(signal.sample(0, 0), -32768);
        QCOMPARE(signal.sample(0, 1), 7);
    }

    void theFirstSampleLeavesAFullRing()
    {
        TDoubleSignal signal(2, 4, 1, 500);
        const double values[] = {1.0, 2.0, 3.0, 4.0, 5.0};
        const double* const rows[] = {values};
        signal.addPerChannelDouble(rows, 5);
        QCOMPARE(signal.sample(0, 0), 0);
        QCOMPARE(signal.sample(0, 1), 2);
        QCOMPARE(signal.sample(0, 4), 5);
        QCOMPARE(signal.sample(0, 5), 0);
    }

    void everyFormOfAppendTellsTheListenersInOrderWhenTheCountsAreRight()
    {
        TDoubleSignal signal(2, 8, 1, 500);
        TCountLog::TCalls calls;
        const TCountLog first(signal, 1, calls);
        const TCountLog second(signal, 2, calls);
        const double doubles[] = {1.5, 2.5, 3.5};
        const double* const rows[] = {doubles};
        const short shorts[] = {1, 2};
        const short* const shortRows[] = {shorts};
        signal.addInterleaved(reinterpret_cast<const char*>(doubles), sizeof doubles);
        signal.addPerChannel(rows, 1);
        signal.addPerChannelDouble(rows, 3);
        signal.addPerChannel(shortRows, 2);
        QCOMPARE(
            calls,
            (TCountLog::TCalls{
                {1, 3, 1}, {2, 3, 1}, {1, 4, 2}, {2, 4, 2}, {1, 7, 3}, {2, 7, 3}, {1, 9, 4}, {2, 9, 4}}));
    }
};

QTEST_GUILESS_MAIN(DoubleSignalTest)
#include "DoubleSignalTest.moc"
