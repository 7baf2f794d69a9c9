#include "analysis/signals/TCountLog.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

#include <limits>

namespace {

/// A ring that can be told that almost as many samples as an int can count have passed.
class TOldSignal : public TInt16Signal
{
public:
    using TInt16Signal::TInt16Signal;
    using TSignal::setSampleCount;
};

void appendRamp(TSignal& signal, int from, int n)
{
    std::vector<short> ramp(n);
    for (int i = 0; i < n; ++i)
        ramp[i] = static_cast<short>(from + i);
    append(signal, {ramp}, 0, n);
}

std::vector<double> doublesOf(TSignal& signal, int channel, int start, int count)
{
    std::vector<double> values(count, -1.0);
    signal.readDoubles(channel, start, count, values.data());
    return values;
}

} // namespace

class Int16SignalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewSignalIsEmpty()
    {
        TInt16Signal signal(4, 8, 2, 500);
        QCOMPARE(signal.sampleCount(), 0);
        QCOMPARE(signal.storageBits(), 16);
        QCOMPARE(signal.resolutionBits(), 16);
        QCOMPARE(signal.sample(0, 0), 0);
        QCOMPARE(signal.lockBlock(0, 0), nullptr);
    }

    void interleavedFramesAreTakenApart()
    {
        TInt16Signal signal(2, 8, 2, 500);
        const short frames[] = {1, -1, 2, -2, 3, -3, 4};
        signal.addInterleaved(reinterpret_cast<const char*>(frames), sizeof frames);
        QCOMPARE(signal.sampleCount(), 3);
        QCOMPARE(signal.blockCount(), 1);
        QCOMPARE(doublesOf(signal, 0, 0, 3), (std::vector<double>{1, 2, 3}));
        QCOMPARE(doublesOf(signal, 1, 0, 3), (std::vector<double>{-1, -2, -3}));
    }

    void interleavedBytesMayLieAtAnOddAddress()
    {
        TInt16Signal signal(2, 8, 1, 500);
        const char bytes[] = {0, 1, 0, 2, 0};
        signal.addInterleaved(bytes + 1, 4);
        QCOMPARE(signal.sample(0, 0), int(qFromLittleEndian<qint16>(bytes + 1)));
        QCOMPARE(signal.sampleCount(), 2);
    }

    void appendsOfNothingChangeNothing()
    {
        TInt16Signal none(4, 8, 0, 500);
        const char bytes[4] = {};
        none.addInterleaved(bytes, 4);
        QCOMPARE(none.sampleCount(), 0);
        TInt16Signal signal(4, 8, 2, 500);
        signal.addInterleaved(bytes, -4);
        signal.addInterleaved(bytes, 3);
        signal.addPerChannel(nullptr, 0);
        signal.addPerChannel(nullptr, -1);
        signal.addPerChannelDouble(nullptr, -1);
        QCOMPARE(signal.sampleCount(), 0);
    }

    void doublesAreTruncatedAndClamped()
    {
        TInt16Signal signal(4, 8, 1, 500);
        const double values[] = {1.9, -1.9, 32767.9, 1e9, -32768.9, -1e300, qQNaN(), -qInf()};
        const double* const rows[] = {values};
        signal.addPerChannelDouble(rows, 8);
        QCOMPARE(doublesOf(signal, 0, 0, 8),
                 (std::vector<double>{1, -1, 32767, 32767, -32768, -32768, 0, -32768}));
    }

    void samplesOutOfRangeAreZero()
    {
        TInt16Signal signal(4, 8, 1, 500);
        appendRamp(signal, 1, 5);
        QCOMPARE(signal.sample(0, 4), 5);
        QCOMPARE(signal.sample(0, 5), 0);
        QCOMPARE(signal.sample(0, -1), 0);
        QCOMPARE(signal.sample(-1, 0), 0);
        QCOMPARE(signal.sample(1, 0), 0);
        QCOMPARE(signal.sample(0, std::numeric_limits<int>::max()), 0);
        QCOMPARE(signal.sample(0, std::numeric_limits<int>::min()), 0);
    }

    void oneSampleBeyondTheCapacityPushesTheFirstOut()
    {
        TInt16Signal signal(4, 8, 1, 500);
        appendRamp(signal, 100, 9);
        QCOMPARE(signal.sampleCount(), 9);
        QCOMPARE(signal.sample(0, 0), 0);
        QCOMPARE(signal.sample(0, 1), 101);
        QCOMPARE(signal.sample(0, 8), 108);
    }

    void anAppendLongerThanTheRingLeavesItsEnd()
    {
        TInt16Signal signal(4, 8, 1, 500);
        appendRamp(signal, 0, 3);
        appendRamp(signal, 3, 30);
        QCOMPARE(signal.sampleCount(), 33);
        QCOMPARE(doublesOf(signal, 0, 24, 9), (std::vector<double>{0, 25, 26, 27, 28, 29, 30, 31, 32}));
    }

    void doublesOutsideTheRingAreZeroOnBothSides()
    {
        TInt16Signal signal(4, 8, 1, 500);
        appendRamp(signal, 100, 10);
        QCOMPARE(doublesOf(signal, 0, 0, 12),
                 (std::vector<double>{0, 0, 102, 103, 104, 105, 106, 107, 108, 109, 0, 0}));
        QCOMPARE(doublesOf(signal, 0, -3, 3), (std::vector<double>{0, 0, 0}));
        QCOMPARE(doublesOf(signal, 0, 50, 2), (std::vector<double>{0, 0}));
        QCOMPARE(doublesOf(signal, 0, std::numeric_limits<int>::max(), 2), (std::vector<double>{0, 0}));
        QCOMPARE(doublesOf(signal, 0, std::numeric_limits<int>::min(), 2), (std::vector<double>{0, 0}));
        QCOMPARE(doublesOf(signal, 1, 2, 2), (std::vector<double>{0, 0}));
        double untouched = 7.0;
        signal.readDoubles(0, 2, 0, &untouched);
        signal.readDoubles(0, 2, -1, &untouched);
        QCOMPARE(untouched, 7.0);
    }

    void blocksSinceTheLastTurnOfTheRingAreReadOthersAreZero()
    {
        TInt16Signal signal(2, 8, 1, 500); // 4 slots
        appendRamp(signal, 100, 12);       // 6 blocks, 6 mod 4 = 2: blocks 4 and 5 have the places 0 and 1
        QCOMPARE(signal.lockBlock(0, 5)[0], short(110));
        QCOMPARE(signal.lockBlock(0, 5)[1], short(111));
        QCOMPARE(signal.lockBlock(0, 4)[0], short(108));
        QCOMPARE(signal.lockBlock(0, 3)[0], short(0));
        QCOMPARE(signal.lockBlock(0, 0)[0], short(0));
        QCOMPARE(signal.lockBlock(0, 6), nullptr);
    }

    void blocksAreRightWhereTheyDoNotFillTheRing()
    {
        TInt16Signal signal(4, 10, 1, 500); // 2 slots, and 2 samples over
        appendRamp(signal, 100, 21);        // 5 blocks, 5 mod 2 = 1: block 4 has a place
        QCOMPARE(signal.lockBlock(0, 4)[0], short(116));
        QCOMPARE(signal.lockBlock(0, 4)[3], short(119));
        QCOMPARE(signal.lockBlock(0, 3)[0], short(0));
    }

    void aRingSmallerThanABlockHasZeroBlocks()
    {
        TInt16Signal signal(4, 3, 1, 500);
        appendRamp(signal, 100, 5);
        QCOMPARE(signal.blockCount(), 1);
        QCOMPARE(signal.lockBlock(0, 0)[3], short(0));
        QCOMPARE(signal.sample(0, 4), 104);
    }

    void aCapacityBelowOneHoldsOneSample()
    {
        TInt16Signal signal(4, -3, 1, 500);
        appendRamp(signal, 100, 5);
        QCOMPARE(signal.sample(0, 4), 104);
        QCOMPARE(signal.sample(0, 3), 0);
    }

    void aBlockRoundedUpToIsZeroBeyondTheEnd()
    {
        TInt16Signal signal(4, 16, 1, 500);
        appendRamp(signal, 100, 6);
        signal.trimBlocks(true);
        const short* const block = signal.lockBlock(0, 1);
        QCOMPARE(block[1], short(105));
        QCOMPARE(block[2], short(0));
    }

    void theCountOfSamplesStopsAtTheLargestInt()
    {
        constexpr int maxInt = std::numeric_limits<int>::max();
        TOldSignal signal(4096, 8, 1, 500);
        signal.setSampleCount(maxInt - 3);
        appendRamp(signal, 100, 10);
        QCOMPARE(signal.sampleCount(), maxInt);
        QCOMPARE(signal.sample(0, maxInt - 1), 102);
        QCOMPARE(signal.sample(0, maxInt - 3), 100);
        appendRamp(signal, 100, 1);
        QCOMPARE(signal.sampleCount(), maxInt);
    }

    void howTheAppendsAreCutDoesNotMatter()
    {
        const int count = 5000;
        const auto samples = randomSamples(3, count, 5);
        TInt16Signal signal(64, 1000, 3, 500);
        cutAtRandom(count, 1500, 6, [&](int from, int n) { append(signal, samples, from, n); });
        QCOMPARE(signal.sampleCount(), count);
        for (int channel = 0; channel < 3; ++channel) {
            const auto values = doublesOf(signal, channel, 3900, 1200);
            for (int i = 0; i < 1200; ++i) {
                const int index = 3900 + i;
                const int expected = index >= 4000 && index < count ? samples[channel][index] : 0;
                QCOMPARE(values[i], double(expected));
                QCOMPARE(signal.sample(channel, index), expected);
            }
        }
    }

    void everyFormOfAppendTellsTheListenersOnceWhenTheCountsAreRight()
    {
        TInt16Signal signal(2, 8, 1, 500);
        TCountLog::TCalls calls;
        const TCountLog log(signal, 1, calls);
        const short shorts[] = {1, 2, 3, 4, 5};
        const short* const rows[] = {shorts};
        const double doubles[] = {1.0, 2.0};
        const double* const doubleRows[] = {doubles};
        signal.addInterleaved(reinterpret_cast<const char*>(shorts), 6);
        QCOMPARE(calls, (TCountLog::TCalls{{1, 3, 1}}));
        signal.addPerChannel(rows, 5);
        QCOMPARE(calls, (TCountLog::TCalls{{1, 3, 1}, {1, 8, 4}}));
        signal.addPerChannelDouble(doubleRows, 2);
        QCOMPARE(calls, (TCountLog::TCalls{{1, 3, 1}, {1, 8, 4}, {1, 10, 5}}));
    }

    void listenersAreToldInTheOrderOfTheirComing()
    {
        TInt16Signal signal(2, 8, 1, 500);
        TCountLog::TCalls calls;
        const TCountLog first(signal, 1, calls);
        const TCountLog second(signal, 2, calls);
        const TCountLog third(signal, 3, calls);
        appendRamp(signal, 0, 3);
        appendRamp(signal, 3, 1);
        QCOMPARE(calls,
                 (TCountLog::TCalls{{1, 3, 1}, {2, 3, 1}, {3, 3, 1}, {1, 4, 2}, {2, 4, 2}, {3, 4, 2}}));
    }

    void anAppendOfNothingTellsNobody()
    {
        TInt16Signal signal(2, 8, 2, 500);
        TCountLog::TCalls calls;
        const TCountLog log(signal, 1, calls);
        const char bytes[3] = {};
        signal.addInterleaved(bytes, 3);
        signal.addPerChannel(nullptr, 0);
        signal.addPerChannelDouble(nullptr, -1);
        QVERIFY(calls.empty());
    }

    void aRingFilledExactlyHasTurnedAndItsBlocksAreZero()
    {
        TInt16Signal full(2, 8, 1, 500); // 4 slots
        appendRamp(full, 100, 8);        // 4 blocks, 4 mod 4 = 0: none was written since the turn
        for (int block = 0; block < 4; ++block)
            QCOMPARE(full.lockBlock(0, block)[0], short(0));
        QCOMPARE(full.lockBlock(0, 4), nullptr);
        QCOMPARE(full.sample(0, 0), 100);
        QCOMPARE(full.sample(0, 7), 107);
    }

    void roundingUpTheLastBlockOfARingTurnsItToo()
    {
        TInt16Signal signal(2, 8, 1, 500);
        appendRamp(signal, 100, 7);
        QCOMPARE(signal.blockCount(), 3);
        QCOMPARE(signal.lockBlock(0, 2)[1], short(105));
        signal.unlockBlock(0, 2);
        signal.trimBlocks(true);
        QCOMPARE(signal.blockCount(), 4);
        QCOMPARE(signal.lockBlock(0, 2)[1], short(0));
        QCOMPARE(signal.lockBlock(0, 3)[0], short(0));
        QCOMPARE(signal.sample(0, 6), 106);
    }
};

QTEST_GUILESS_MAIN(Int16SignalTest)
#include "Int16SignalTest.moc"
