#include "analysis/delineation/ChannelDelineation.h"
#include "analysis/delineation/QuadraticSplineWavelet.h"
#include "analysis/detection/TBeatChain.h"
#include "analysis/detection/TStoredAnalysis.h"
#include "analysis/filters/FirTables.h"
#include "analysis/filters/SmoothingTables.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TFirDecimator.h"
#include "analysis/signals/Truncation.h"
#include "simulators/heart/DemoRecording.h"

#include <benchmark/benchmark.h>

/// From samples to measured beats, on the demonstration recording: 14 channels at 500 Hz in blocks of 51
/// frames, as a device sends them. `x_real_time` says how many seconds of signal one second of work gets
/// through.
namespace {

constexpr int channels = 14;
constexpr int rate = 500;
constexpr int blockFrames = 51;
constexpr int pageSize = 4096;

const std::vector<short>& recording()
{
    static const std::vector<short> samples = [] {
        std::vector<short> interleaved;
        for (const heart::TFrame& frame : heart::demoRecording())
            interleaved.insert(interleaved.end(), frame.begin(), frame.end());
        return interleaved;
    }();
    return samples;
}

void countSeconds(benchmark::State& state, double secondsPerTurn)
{
    state.counters["x_real_time"] = benchmark::Counter(
        secondsPerTurn * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

/// The recording in a loop, a block at a time.
class TLoop
{
public:
    void appendBlock(TSignal& signal)
    {
        const int frameCount = static_cast<int>(recording().size()) / channels;
        if (m_next + blockFrames > frameCount)
            m_next = 0;
        signal.addInterleaved(reinterpret_cast<const char*>(recording().data() + m_next * channels),
                              blockFrames * channels * static_cast<int>(sizeof(short)));
        m_next += blockFrames;
    }

private:
    int m_next = 0;
};

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
    TLoop loop;
    for (auto _ : state) {
        loop.appendBlock(raw);
        decimator.run();
        chain.run();
        filters.update();
    }
    countSeconds(state, static_cast<double>(blockFrames) / rate);
}
BENCHMARK(liveChain)->MinTime(1.0);

void liveDetection(benchmark::State& state)
{
    TInt16Signal raw(pageSize, 20 * pageSize, channels, rate);
    raw.setRange(-300.0, 300.0);
    TBeatChain chain(raw, {}, nullptr);
    TLoop loop;
    for (auto _ : state) {
        loop.appendBlock(raw);
        chain.run();
    }
    countSeconds(state, static_cast<double>(blockFrames) / rate);
}
BENCHMARK(liveDetection)->MinTime(1.0);

/// The filters of the live chain alone, tap by tap: what its naive form spends at the least.
void liveChainNaive(benchmark::State& state)
{
    std::vector<const std::vector<double>*> displayTables{
        velantor::highPassTable(rate), velantor::notchTable("50hz", rate),
        velantor::muscleTable("40hz", rate), velantor::baselineTable(rate)};
    std::vector<double> input(2 * pageSize, 1.0);
    const auto convolve = [&input](const std::vector<double>& taps, int frames) {
        for (int i = 0; i < frames; ++i) {
            volatile double sum = 0.0;
            for (std::size_t k = 0; k < taps.size(); ++k)
                sum = sum + taps[k] * input[i + k];
            benchmark::DoNotOptimize(sum);
        }
    };
    for (auto _ : state) {
        for (int channel = 0; channel < channels; ++channel) {
            for (const std::vector<double>* table : displayTables)
                convolve(*table, blockFrames);
            for (int scale = 1; scale <= TWaveletSpan::scaleCount; ++scale)
                convolve(velantor::waveletFilter(scale).values(), blockFrames / 2);
        }
    }
    countSeconds(state, static_cast<double>(blockFrames) / rate);
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
