#include "analysis/LiveSignal.h"
#include "analysis/delineation/ChannelDelineation.h"
#include "analysis/detection/TBeatChain.h"
#include "analysis/detection/TStoredAnalysis.h"
#include "analysis/filters/SmoothingTables.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TFirDecimator.h"
#include "analysis/signals/Truncation.h"

/// From samples to measured beats, on the demonstration recording.
namespace {

using live::blockSeconds;
using live::channels;
using live::countSeconds;
using live::rate;
using live::recording;

constexpr int pageSize = 4096;

void append(TSignal& signal, const QVector<char>& block)
{
    signal.addInterleaved(block.constData(), block.size());
}

/// What the windows measure at each beat: the waves of every channel's average.
class TWaveMeter : public TBeatListener
{
public:
    void setChain(TBeatChain* chain) { m_chain = chain; }
    void beatFound(const TBeat& beat) override
    {
        for (int channel = 0; channel < channels; ++channel) {
            TAverageBeat& average = m_chain->averageBeat();
            m_delineator.analyse(average.complex(channel), rate, average.rOffset(),
                                 velantor::truncated<int>(beat.value(TBeat::rr) * rate));
            benchmark::DoNotOptimize(m_delineator.qrsOnset());
        }
    }

private:
    TBeatChain* m_chain = nullptr;
    TAverageBeatDelineator m_delineator;
};

/// Decimation, wavelets, detection, refinement, average, waves of the average, all real-time filters.
void liveChain(benchmark::State& state)
{
    TInt16Signal raw(pageSize, 20 * pageSize, channels, rate);
    TInt16Signal monitor(pageSize, 20 * pageSize, channels, rate);
    raw.setRange(-300.0, 300.0);
    monitor.takeFormOf(raw);
    TFirDecimator decimator(velantor::monitorDecimation(), 1);
    decimator.attach(&raw, 0);
    decimator.setSink(&monitor);
    TWaveMeter meter;
    TBeatChain chain(raw, {}, &meter);
    meter.setChain(&chain);
    TRealtimeFilterChain filters(&monitor);
    filters.apply(true, true, true);
    live::TLoop loop;
    for (auto _ : state) {
        append(raw, loop.next());
        decimator.run();
        chain.run();
        filters.update();
    }
    countSeconds(state, blockSeconds);
}
BENCHMARK(liveChain)->MinTime(1.0);

void liveDetection(benchmark::State& state)
{
    TInt16Signal raw(pageSize, 20 * pageSize, channels, rate);
    raw.setRange(-300.0, 300.0);
    TBeatChain chain(raw, {}, nullptr);
    live::TLoop loop;
    for (auto _ : state) {
        append(raw, loop.next());
        chain.run();
    }
    countSeconds(state, blockSeconds);
}
BENCHMARK(liveDetection)->MinTime(1.0);

void liveChainNaive(benchmark::State& state)
{
    for (auto _ : state)
        live::filterBlockNaively();
    countSeconds(state, blockSeconds);
}
BENCHMARK(liveChainNaive);

/// The first 12 channels of the recording, `seconds` of it, in a loop.
std::unique_ptr<TInt16Signal> storedLeads(int seconds)
{
    constexpr int leads = 12;
    auto signal = std::make_unique<TInt16Signal>(pageSize, seconds * rate, leads, rate);
    signal->setRange(-300.0, 300.0);
    const int frameCount = static_cast<int>(recording().size()) / channels;
    std::vector<short> frame(leads);
    for (int i = 0; i < seconds * rate; ++i) {
        std::copy_n(recording().data() + (i % frameCount) * channels, leads, frame.begin());
        signal->addInterleaved(reinterpret_cast<const char*>(frame.data()), leads * sizeof(short));
    }
    return signal;
}

class TBeatCounter : public TBeatListener
{
public:
    void beatFound(const TBeat& /*beat*/) override { ++count; }

    int count = 0;
};

/// Detection and delineation over a stored hour of 12 leads.
void storedHour(benchmark::State& state)
{
    constexpr int seconds = 3600;
    const auto signal = storedLeads(seconds);
    for (auto _ : state) {
        TBeatCounter beats;
        TStoredAnalysis analysis(*signal, {}, &beats);
        analysis.run();
        state.counters["beats"] = beats.count;
    }
    countSeconds(state, seconds);
}
BENCHMARK(storedHour)->Unit(benchmark::kMillisecond);

} // namespace
