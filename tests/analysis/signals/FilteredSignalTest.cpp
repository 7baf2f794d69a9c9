#include "analysis/signals/TBlockProcessor.h"
#include "analysis/signals/TCountLog.h"
#include "analysis/signals/TFilteredSignal.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TSignalWindow.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

namespace {

/// Sum of a sample and its two neighbours.
class TNeighbourSum : public TBlockProcessor
{
public:
    void process(TSignalWindow& window, short* out) override
    {
        ++blocks;
        for (int i = 0; i < window.blockSize(); ++i)
            out[i] = static_cast<short>(window.sample(i - 1) + window.sample(i) + window.sample(i + 1));
    }

    int blocks = 0;
};

class TCounter : public TSignalListener
{
public:
    void signalChanged() override { ++calls; }

    int calls = 0;
};

} // namespace

class FilteredSignalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aViewLooksLikeItsSource()
    {
        TStoredSignal source(2, {{1, 2, 3}, {4, 5, 6}}, 250);
        source.channel(1)->setName("aVF");
        source.setResolutionBits(18);
        source.setRange(-450.0, 450.0);
        source.trimBlocks(true);
        const TFilteredSignal view(&source, static_cast<TBlockProcessor*>(nullptr));
        QCOMPARE(view.channelCount(), 2);
        QCOMPARE(view.channel(1)->name(), QByteArray("aVF"));
        QCOMPARE(view.channel(1)->signal(), &view);
        QCOMPARE(view.samplingRate(), 250);
        QCOMPARE(view.storageBits(), 16);
        QCOMPARE(view.resolutionBits(), 18);
        QCOMPARE(view.countValue(), source.countValue());
        QCOMPARE(view.blockSize(), 2);
        QCOMPARE(view.blockCount(), 2);
        QCOMPARE(view.sampleCount(), 3);
    }

    void oneProcessorServesEveryChannelAcrossBlocks()
    {
        TStoredSignal source(2, {{1, 2, 3, 4, 5, 6}, {10, 20, 30, 40, 50, 60}});
        TNeighbourSum sum;
        TFilteredSignal view(&source, &sum);
        const int expected[] = {3, 6, 9, 12, 15, 11};
        for (int i = 0; i < 6; ++i) {
            QCOMPARE(view.sample(0, i), expected[i]);
            QCOMPARE(view.sample(1, i), 10 * expected[i]);
        }
        QCOMPARE(sum.blocks, 6);
    }

    void aBlockIsComputedWhenFirstTouched()
    {
        TStoredSignal source(2, {{1, 2, 3, 4, 5, 6}});
        TNeighbourSum sum;
        TFilteredSignal view(&source, &sum);
        QCOMPARE(sum.blocks, 0);
        QCOMPARE(view.sample(0, 2), 9);
        QCOMPARE(view.sample(0, 3), 12);
        QCOMPARE(sum.blocks, 1);
        double values[2] = {};
        view.readDoubles(0, 2, 2, values);
        QCOMPARE(values[1], 12.0);
        QCOMPARE(sum.blocks, 1);
    }

    void channelsWithoutAProcessorAreCopies()
    {
        TStoredSignal source(2, {{1, 2, 3, 4}, {5, 6, 7, 8}});
        TNeighbourSum sum;
        TBlockProcessor* processors[] = {nullptr, &sum};
        TFilteredSignal view(&source, processors);
        processors[0] = &sum;
        QCOMPARE(view.sample(0, 1), 2);
        QCOMPARE(view.sample(1, 1), 18);
        source.trimBlocks(false);
        QCOMPARE(source.blocksLoaded, source.blocksFreed);
    }

    void readsOutOfRangeAreZero()
    {
        TStoredSignal source(2, {{1, 2, 3, 4}});
        TFilteredSignal view(&source, static_cast<TBlockProcessor*>(nullptr));
        QCOMPARE(view.sample(0, -1), 0);
        QCOMPARE(view.sample(0, 4), 0);
        QCOMPARE(view.sample(1, 0), 0);
        QCOMPARE(view.sample(0, std::numeric_limits<int>::max()), 0);
        QCOMPARE(view.sample(0, std::numeric_limits<int>::min()), 0);
        double values[10];
        std::fill(values, values + 10, -1.0);
        view.readDoubles(0, -3, 10, values);
        const double expected[] = {0, 0, 0, 1, 2, 3, 4, 0, 0, 0};
        for (int i = 0; i < 10; ++i)
            QCOMPARE(values[i], expected[i]);
        view.readDoubles(0, 0, -1, values);
        QCOMPARE(view.loadBlock(0, 2), nullptr);
        QCOMPARE(view.loadBlock(0, -1), nullptr);
        QCOMPARE(view.loadBlock(1, 0), nullptr);
    }

    void theLastPartOfARecordingIsReadWhenItsBlocksAreRoundedUp()
    {
        TStoredSignal source(4, {{1, 2, 3, 4, 5, 6}});
        TNeighbourSum sum;
        TFilteredSignal whole(&source, &sum);
        QCOMPARE(whole.sample(0, 3), 7);
        QCOMPARE(whole.sample(0, 4), 0);
        source.trimBlocks(true);
        TFilteredSignal view(&source, &sum);
        QCOMPARE(view.sample(0, 3), 12);
        QCOMPARE(view.sample(0, 5), 11);
        QCOMPARE(view.lockBlock(0, 1)[2], short(6));
        QCOMPARE(view.lockBlock(0, 1)[3], short(0));
    }

    void theViewGrowsWithItsSourceAndTellsNobody()
    {
        TStoredSignal source(2, {{1, 2}});
        TFilteredSignal view(&source, static_cast<TBlockProcessor*>(nullptr));
        TCounter counter;
        view.addListener(&counter);
        source.grow({{3, 4, 5}});
        QCOMPARE(view.sampleCount(), 5);
        QCOMPARE(view.blockCount(), 2);
        QCOMPARE(view.sample(0, 3), 4);
        QCOMPARE(counter.calls, 0);
        view.addInterleaved(nullptr, 0);
        view.addPerChannel(nullptr, 0);
        view.addPerChannelDouble(nullptr, 0);
        QCOMPARE(counter.calls, 3);
        QCOMPARE(view.sampleCount(), 5);
    }

    void aViewThatIsGoneIsNotTold()
    {
        TStoredSignal source(2, {{1, 2}});
        {
            TFilteredSignal view(&source, static_cast<TBlockProcessor*>(nullptr));
            QCOMPARE(view.sample(0, 1), 2);
        }
        source.grow({{3, 4}});
        QCOMPARE(source.sampleCount(), 4);
    }

    void viewsCanBeStacked()
    {
        TInt16Signal source(2, 100, 1, 500);
        append(source, {{1, 2, 3, 4, 5, 6}}, 0, 6);
        TNeighbourSum sum;
        TFilteredSignal once(&source, &sum);
        TFilteredSignal twice(&once, &sum);
        QCOMPARE(twice.sample(0, 0), 9);
        QCOMPARE(twice.sample(0, 2), 27);
        QCOMPARE(twice.sample(0, 5), 26);
    }

    void aViewOfARingGrowsWithItAndKeepsWhatItHasMade()
    {
        TInt16Signal ring(2, 8, 1, 500);
        TNeighbourSum sum;
        TFilteredSignal view(&ring, &sum);
        QCOMPARE(view.sampleCount(), 0);
        append(ring, {{1, 2, 3, 4}}, 0, 4);
        QCOMPARE(view.sampleCount(), 4);
        QCOMPARE(view.blockCount(), 2);
        QCOMPARE(view.sample(0, 1), 6);
        append(ring, {{5, 6, 7}}, 0, 3);
        QCOMPARE(view.sampleCount(), 7);
        QCOMPARE(view.blockCount(), 3);
        QCOMPARE(view.sample(0, 3), 12);
        QCOMPARE(view.sample(0, 6), 0); // its block is not whole
        append(ring, {{8, 9, 10}}, 0, 3);
        QCOMPARE(ring.sample(0, 1), 0);
        QCOMPARE(view.sample(0, 1), 6);
        QCOMPARE(view.sample(0, 3), 12);
        QCOMPARE(sum.blocks, 2);
    }

    void listenersOfTheSourceThatComeAfterTheViewSeeItGrown()
    {
        TInt16Signal ring(2, 8, 1, 500);
        TFilteredSignal view(&ring, static_cast<TBlockProcessor*>(nullptr));
        int seen = -1;
        class TViewer : public TSignalListener
        {
        public:
            TViewer(const TSignal& signal, int& count) : m_signal(signal), m_count(count) {}
            void signalChanged() override { m_count = m_signal.sampleCount(); }

        private:
            const TSignal& m_signal;
            int& m_count;
        } viewer(view, seen);
        ring.addListener(&viewer);
        TCountLog::TCalls calls;
        const TCountLog log(view, 1, calls);
        append(ring, {{1, 2, 3}}, 0, 3);
        QCOMPARE(seen, 3);
        QVERIFY(calls.empty());
    }
};

QTEST_GUILESS_MAIN(FilteredSignalTest)
#include "FilteredSignalTest.moc"
