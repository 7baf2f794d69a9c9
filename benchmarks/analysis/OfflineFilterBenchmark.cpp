#include "analysis/FilterSamples.h"
#include "analysis/NaiveBlockFilters.h"
#include "analysis/filters/FirTables.h"
#include "analysis/filters/TOfflineFilterChain.h"
#include "analysis/filters/TParabolaDetrend.h"
#include "analysis/signals/TFilteredSignal.h"

#include <memory>

/// A recording of an hour, three filters on: what a window does before it first paints ten seconds of it, and
/// all of it. Each is there a second time with filters in their naive form, sample by sample.
namespace {

using namespace filters;

constexpr int storedChannels = 12;
constexpr int hour = 3600 * rate;

/// The chain with all filters on: the same views, every processor by its definition.
class TNaiveOfflineChain
{
public:
    explicit TNaiveOfflineChain(TSignal* source) : m_current(source)
    {
        source->trimBlocks(true);
        TBlockProcessor* processors[velantor::maxChannels] = {};
        for (int channel = 0; channel < source->channelCount(); ++channel)
            processors[channel] = keep(fitParabola(*source, channel));
        look(std::make_unique<TFilteredSignal>(source, processors));
        look(keep(std::make_unique<TNaiveIir>(*velantor::highPassRecursion(rate))));
        look(keep(std::make_unique<TNaiveIir>(*velantor::notchRecursion(rate))));
        look(keep(std::make_unique<TNaiveFir>(*velantor::muscleTable("40hz", rate))));
        look(keep(std::make_unique<TNaiveIir>(*velantor::baselineRecursion(rate))));
    }

    /// A view goes before the signal that it looks at.
    ~TNaiveOfflineChain()
    {
        while (!m_views.empty())
            m_views.pop_back();
    }

    TSignal* current() const { return m_current; }

private:
    static double meanOf(TSignal& signal, int channel, int start, int count)
    {
        double sum = 0.0;
        for (int i = start; i < start + count; ++i)
            sum += signal.sample(channel, i);
        return sum / count;
    }

    static std::unique_ptr<TBlockProcessor> fitParabola(TSignal& signal, int channel)
    {
        const int count = signal.sampleCount();
        const int window = 3 * rate;
        const double first = meanOf(signal, channel, 0, window);
        const double last = meanOf(signal, channel, count - window, window);
        return std::make_unique<TParabolaDetrend>(TParabolaDetrend::TPoint{window / 2.0, first},
                                                  TParabolaDetrend::TPoint{count / 2.0, (first + last) / 2},
                                                  TParabolaDetrend::TPoint{count - window / 2.0, last});
    }

    TBlockProcessor* keep(std::unique_ptr<TBlockProcessor> processor)
    {
        m_processors.push_back(std::move(processor));
        return m_processors.back().get();
    }

    void look(std::unique_ptr<TFilteredSignal> view)
    {
        m_views.push_back(std::move(view));
        m_current = m_views.back().get();
    }

    void look(TBlockProcessor* processor) { look(std::make_unique<TFilteredSignal>(m_current, processor)); }

    TSignal* m_current;
    std::vector<std::unique_ptr<TBlockProcessor>> m_processors;
    std::vector<std::unique_ptr<TFilteredSignal>> m_views;
};

std::unique_ptr<TOfflineFilterChain> chainOn(TSignal* recording)
{
    auto chain = std::make_unique<TOfflineFilterChain>(recording);
    chain->apply(true, true, true);
    return chain;
}

std::unique_ptr<TNaiveOfflineChain> naiveChainOn(TSignal* recording)
{
    return std::make_unique<TNaiveOfflineChain>(recording);
}

void read(TSignal& signal, int from, int count)
{
    std::vector<double> out(count);
    for (int channel = 0; channel < signal.channelCount(); ++channel) {
        signal.readDoubles(channel, from, count, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}

/// Each turn has a recording of its own, for one that has been painted keeps its blocks; only the chain and
/// what is read of it are timed.
template <typename MakeChain, typename Read>
void overFreshRecordings(benchmark::State& state, MakeChain makeChain, Read readOf)
{
    const auto samples = ecgLike(hour);
    for (auto _ : state) {
        state.PauseTiming();
        {
            TRecording recording(storedChannels, samples);
            state.ResumeTiming();
            const auto chain = makeChain(&recording);
            readOf(*chain->current());
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

void readPage(TSignal& signal)
{
    read(signal, hour / 2, 10 * rate);
}

void readAll(TSignal& signal)
{
    for (int start = 0; start < hour; start += pageSize)
        read(signal, start, pageSize);
}

void offlineFirstPaint(benchmark::State& state)
{
    overFreshRecordings(state, chainOn, readPage);
    countSeconds(state, 10.0);
}
BENCHMARK(offlineFirstPaint)->Unit(benchmark::kMillisecond);

void offlineFirstPaintNaive(benchmark::State& state)
{
    overFreshRecordings(state, naiveChainOn, readPage);
    countSeconds(state, 10.0);
}
BENCHMARK(offlineFirstPaintNaive)->Unit(benchmark::kMillisecond);

void offlineHour(benchmark::State& state)
{
    overFreshRecordings(state, chainOn, readAll);
    countSeconds(state, 3600.0);
}
BENCHMARK(offlineHour)->Unit(benchmark::kMillisecond);

void offlineHourNaive(benchmark::State& state)
{
    overFreshRecordings(state, naiveChainOn, readAll);
    countSeconds(state, 3600.0);
}
BENCHMARK(offlineHourNaive)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
