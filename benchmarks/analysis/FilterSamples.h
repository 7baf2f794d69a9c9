#pragma once

#include "analysis/signals/TSignal.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

/// What the benchmarks of the filters work on. `items_per_second` and `x_real_time` count seconds of signal.
namespace filters {

inline constexpr int rate = 500;
inline constexpr int pageSize = 4096;

/// Waves of the height of an ECG with some noise.
inline std::vector<short> ecgLike(int count)
{
    std::mt19937 generator(1);
    std::vector<short> samples(count);
    for (int i = 0; i < count; ++i) {
        const double wave = std::sin(2.0 * std::numbers::pi * i / rate * 1.2);
        samples[i] = static_cast<short>(100.0 * std::pow(wave, 31) + static_cast<int>(generator() % 9));
    }
    return samples;
}

inline void countSeconds(benchmark::State& state, double secondsPerTurn)
{
    const double seconds = secondsPerTurn * static_cast<double>(state.iterations());
    state.counters["x_real_time"] = benchmark::Counter(seconds, benchmark::Counter::kIsRate);
    state.SetItemsProcessed(static_cast<std::int64_t>(seconds));
}

/// A recording in memory whose blocks are copied on demand, as those of a file are; its channels are alike.
class TRecording : public TSignal
{
public:
    /// The samples are borrowed.
    TRecording(int channels, const std::vector<short>& samples)
        : TSignal(pageSize, channels, rate), m_samples(samples)
    {
        setSampleCount(static_cast<int>(samples.size()));
    }
    ~TRecording() override { freeAllBlocks(); }

    int sample(int, int index) override { return index >= 0 && index < sampleCount() ? m_samples[index] : 0; }

    void readDoubles(int, int start, int count, double* out) override
    {
        for (int i = 0; i < count; ++i)
            out[i] = sample(0, start + i);
    }

    short* loadBlock(int, int block) override
    {
        auto buffer = std::make_unique<short[]>(pageSize);
        const int count = std::min(pageSize, sampleCount() - block * pageSize);
        std::copy_n(m_samples.begin() + block * pageSize, count, buffer.get());
        return buffer.release();
    }

    void freeBlock(void* buffer) override { delete[] static_cast<short*>(buffer); }

private:
    const std::vector<short>& m_samples;
};

} // namespace filters
