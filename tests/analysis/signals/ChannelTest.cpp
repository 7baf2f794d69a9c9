#include "analysis/signals/TDoubleSignal.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

namespace {

struct TPeaks
{
    TPeaks(TSignal& signal, int start, int count, int width, bool wrap = false)
        : low(width, -9999), high(width, -9999)
    {
        signal.channel(0)->peaks(start, count, low.data(), high.data(), 0, width, wrap);
    }

    std::vector<int> low;
    std::vector<int> high;
};

/// Column by column and sample by sample, as one would draw it by hand.
void naivePeaks(TSignal& signal, int start, int count, int width, bool wrap, int* low, int* high)
{
    const int step = count / width;
    int end = start;
    int carried = 0;
    for (int column = 0; column < width; ++column) {
        const int first = column == 0 ? start : end - 1;
        carried += count % width;
        end += step + (carried >= width ? 1 : 0);
        if (carried >= width)
            carried -= width;
        const int back = wrap && end - 1 >= signal.sampleCount() ? count : 0;
        low[column] = high[column] = signal.sample(0, end - 1 - back);
        for (int i = first; i < end; i += ((step - 1) >> 4) + 1) {
            low[column] = std::min(low[column], signal.sample(0, i - back));
            high[column] = std::max(high[column], signal.sample(0, i - back));
        }
    }
}

} // namespace

class ChannelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsBeginWithTheLastSampleOfTheOneBefore()
    {
        TStoredSignal signal(4, {{1, 5, 2, 7, 3, 9}});
        const TPeaks peaks(signal, 0, 6, 3);
        QCOMPARE(peaks.low, (std::vector<int>{1, 2, 3}));
        QCOMPARE(peaks.high, (std::vector<int>{5, 7, 9}));
    }

    void theRestIsSpreadOverTheColumns()
    {
        TStoredSignal signal(4, {{1, 2, 3, 4, 5, 6, 7, 8}});
        const TPeaks peaks(signal, 0, 8, 3); // 2, 3 and 3 samples
        QCOMPARE(peaks.low, (std::vector<int>{1, 2, 5}));
        QCOMPARE(peaks.high, (std::vector<int>{2, 5, 8}));
    }

    void columnsAreWrittenFromTheOffsetOn()
    {
        TStoredSignal signal(4, {{1, 2, 3, 4}});
        int low[4] = {-7, -7, -7, -7};
        int high[4] = {-7, -7, -7, -7};
        signal.channel(0)->peaks(0, 4, low, high, 1, 2, false);
        QCOMPARE(std::vector<int>(low, low + 4), (std::vector<int>{-7, 1, 2, -7}));
        QCOMPARE(std::vector<int>(high, high + 4), (std::vector<int>{-7, 2, 4, -7}));
    }

    void tooFewSamplesOrColumnsWriteNothing()
    {
        TStoredSignal signal(4, {{1, 2, 3, 4}});
        QCOMPARE(TPeaks(signal, 0, 3, 4).low, std::vector<int>(4, -9999));
        QCOMPARE(TPeaks(signal, 0, 0, 4).low, std::vector<int>(4, -9999));
        QCOMPARE(TPeaks(signal, 0, -8, 4).low, std::vector<int>(4, -9999));
        int value = -9999;
        signal.channel(0)->peaks(0, 4, &value, &value, 0, 0, false);
        signal.channel(0)->peaks(0, 4, &value, &value, 0, -1, false);
        QCOMPARE(value, -9999);
    }

    void longColumnsAreSampledButTheirLastSampleCounts()
    {
        // 32 samples a column: every second one is looked at, and the last.
        std::vector<short> samples(64, 0);
        samples[1] = 50;
        samples[2] = 10;
        samples[31] = 20;
        samples[32] = 60;
        samples[33] = 30;
        TStoredSignal signal(16, {samples});
        const TPeaks peaks(signal, 0, 64, 2);
        QCOMPARE(peaks.high, (std::vector<int>{20, 30}));
        QCOMPARE(peaks.low, (std::vector<int>{0, 0}));
    }

    void columnsBeyondTheEndShowThePageBefore()
    {
        TInt16Signal signal(4, 100, 1, 500);
        append(signal, {{1, 2, 3, 4, 5, 6, 7, 8, 11, 12}}, 0, 10);
        const TPeaks swept(signal, 8, 8, 4, true);
        QCOMPARE(swept.low, (std::vector<int>{11, 2, 4, 6}));
        QCOMPARE(swept.high, (std::vector<int>{12, 4, 6, 8}));
        const TPeaks plain(signal, 8, 8, 4, false);
        QCOMPARE(plain.low, (std::vector<int>{11, 0, 0, 0}));
        QCOMPARE(plain.high, (std::vector<int>{12, 12, 0, 0}));
    }

    void samplesBeyondTheLastWholeBlockAreSeen()
    {
        TStoredSignal signal(4, {{1, 1, 1, 1, 2, 9}});
        QCOMPARE(TPeaks(signal, 0, 6, 2).high, (std::vector<int>{1, 9}));
    }

    void peaksOfAStoredSignalGoThroughItsBlocks()
    {
        TStoredSignal signal(100, randomSamples(1, 1000, 3));
        const TPeaks peaks(signal, 0, 1000, 10);
        QCOMPARE(signal.samplesAsked, 0);
        QCOMPARE(signal.blocksLoaded, 10);
        signal.trimBlocks(false);
        QCOMPARE(signal.blocksFreed, 10);
    }

    void aRingKeepsNoBlocksForItsPeaks()
    {
        TInt16Signal signal(4, 100, 1, 500);
        append(signal, {{1, 2, 3, 4, 5, 6, 7, 8}}, 0, 8);
        QCOMPARE(TPeaks(signal, 0, 8, 2).high, (std::vector<int>{4, 8}));
        append(signal, randomSamples(1, 200, 2), 0, 200);
        QCOMPARE(TPeaks(signal, 0, 8, 2).high, (std::vector<int>{0, 0}));
    }

    void peaksOfDoublesAreNotClampedTo16Bits()
    {
        TDoubleSignal signal(4, 100, 1, 500);
        const double values[] = {100000.5, -100000.5};
        const double* const rows[] = {values};
        signal.addPerChannelDouble(rows, 2);
        QCOMPARE(TPeaks(signal, 0, 2, 1).high, (std::vector<int>{100000}));
        QCOMPARE(TPeaks(signal, 0, 2, 1).low, (std::vector<int>{-100000}));
    }

    void peaksAreThoseOfTheNaiveForm_data()
    {
        QTest::addColumn<bool>("ring");
        QTest::addColumn<bool>("wrap");
        QTest::newRow("stored") << false << false;
        QTest::newRow("stored, sweeping") << false << true;
        QTest::newRow("ring") << true << false;
        QTest::newRow("ring, sweeping") << true << true;
    }

    void peaksAreThoseOfTheNaiveForm()
    {
        QFETCH(bool, ring);
        QFETCH(bool, wrap);
        const auto samples = randomSamples(1, 10000, 11);
        TStoredSignal stored(256, samples);
        TInt16Signal live(256, 6000, 1, 500);
        append(live, samples, 0, 10000);
        TSignal& signal = ring ? static_cast<TSignal&>(live) : stored;
        std::mt19937 generator(12);
        for (int round = 0; round < 200; ++round) {
            const int start = static_cast<int>(generator() % 10500) - 200;
            const int width = 1 + generator() % 300;
            const int count = width + generator() % 6000;
            std::vector<int> low(width);
            std::vector<int> high(width);
            naivePeaks(signal, start, count, width, wrap, low.data(), high.data());
            const TPeaks peaks(signal, start, count, width, wrap);
            QCOMPARE(peaks.low, low);
            QCOMPARE(peaks.high, high);
        }
    }

    void theMeanIsTruncated()
    {
        TStoredSignal signal(4, {{1, 2, 2, -7, -7}});
        TChannel& channel = *signal.channel(0);
        QCOMPARE(channel.mean(0, 3), 1);
        QCOMPARE(channel.mean(2, 2), -2);
        QCOMPARE(channel.mean(3, 4), -3); // what is missing counts as 0
        QCOMPARE(channel.mean(0, 0), 0);
        QCOMPARE(channel.mean(0, -1), 0);
    }

    void spansThatBeginBeforeTheSignalReadZerosThere()
    {
        TInt16Signal ring(4, 100, 1, 500);
        append(ring, {{9, 9, 9, 9}}, 0, 4);
        TStoredSignal stored(4, {{9, 9, 9, 9}});
        for (TSignal* signal : {static_cast<TSignal*>(&ring), static_cast<TSignal*>(&stored)}) {
            TChannel& channel = *signal->channel(0);
            QCOMPARE(channel.mean(-2, 6), 6); // 36 / 6
            QCOMPARE(channel.mean(-6, 3), 0);
            int first = -9;
            int last = -9;
            QVERIFY(channel.findOutside(-3, 4, -5, 5, &first, &last));
            QCOMPARE(first, 0);
            QCOMPARE(last, 4);
            QVERIFY(channel.findOutside(-3, 4, 5, 10, &first, &last)); // the zeros are below the limit
            QCOMPARE(first, -3);
            QCOMPARE(last, 0);
        }
    }

    void theMeanOfALongSpanDoesNotOverflow()
    {
        TStoredSignal signal(4096, {std::vector<short>(200000, 32767)});
        QCOMPARE(signal.channel(0)->mean(0, 200000), 32767);
    }

    void stretchesOutsideALimitAreFound_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("end");
        QTest::addColumn<bool>("found");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::newRow("from the first outside to the first inside") << 0 << 9 << true << 2 << 4;
        QTest::newRow("the next one") << 4 << 9 << true << 6 << 7;
        QTest::newRow("begins outside") << 3 << 9 << true << 3 << 4;
        QTest::newRow("ends outside") << 4 << 7 << true << 6 << 7;
        QTest::newRow("none") << 7 << 9 << false << -1 << -1;
        QTest::newRow("empty") << 2 << 2 << false << -1 << -1;
        QTest::newRow("backward") << 4 << 2 << false << -1 << -1;
    }

    void stretchesOutsideALimitAreFound()
    {
        QFETCH(int, start);
        QFETCH(int, end);
        // Limits -10 to 10; the limits themselves are inside.
        TStoredSignal signal(4, {{0, 10, 11, -11, -10, 0, -20, 0, 0}});
        int first = -1;
        int last = -1;
        QTEST(signal.channel(0)->findOutside(start, end, -10, 10, &first, &last), "found");
        QTEST(first, "first");
        QTEST(last, "last");
    }

    void aLongStretchOutsideIsFoundWhole()
    {
        std::vector<short> samples(3000, 0);
        std::fill(samples.begin() + 500, samples.begin() + 2500, short(100));
        TStoredSignal signal(64, {samples});
        int first = -1;
        int last = -1;
        QVERIFY(signal.channel(0)->findOutside(0, 3000, -10, 10, &first, &last));
        QCOMPARE(first, 500);
        QCOMPARE(last, 2500);
        QVERIFY(signal.channel(0)->findOutside(0, 2000, -10, 10, &first, &last));
        QCOMPARE(last, 2000);
    }
};

QTEST_GUILESS_MAIN(ChannelTest)
#include "ChannelTest.moc"
