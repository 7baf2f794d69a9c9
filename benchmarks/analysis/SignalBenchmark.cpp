#include "analysis/signals/TFirDecimator.h"
#include "analysis/signals/TFirStream.h"
#include "analysis/signals/TInt16Signal.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

/// Each piece of work is there a second time in its naive form, sample by sample, so that the ratio can be
/// read off one run. `x_real_time` says how many seconds of signal one second of work gets through.
namespace {

constexpr int channels = 14;
constexpr int rate = 500;
constexpr int pageSize = 4096;
constexpr int frames = 51;
constexpr int hour = 3600 * rate;

std::vector<short> noise(int count)
{
    std::mt19937 generator(1);
    std::vector<short> samples(count);
    for (short& sample : samples)
        sample = static_cast<short>(generator());
    return samples;
}

std::vector<double> taps(int count)
{
    std::mt19937 generator(2);
    std::vector<double> values(count);
    for (double& value : values)
        value = std::uniform_real_distribution<>(-0.01, 0.01)(generator);
    return values;
}

void countSeconds(benchmark::State& state, double secondsPerTurn)
{
    state.counters["x_real_time"] = benchmark::Counter(
        secondsPerTurn * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void fill(TSignal& signal, int samples)
{
    const auto block = noise(channels * pageSize);
    while (signal.sampleCount() < samples)
        signal.addInterleaved(reinterpret_cast<const char*>(block.data()),
                              channels * pageSize * sizeof(short));
}

/// A recording in memory whose blocks are copied on demand, as those of a file are.
class TRecording : public TSignal
{
public:
    TRecording() : TSignal(pageSize, 1, rate), m_samples(noise(hour)) { setSampleCount(hour); }
    ~TRecording() override { freeAllBlocks(); }

    int sample(int channel, int index) override
    {
        const short* const block = lockBlock(channel, index / pageSize);
        const int value = block ? block[index % pageSize] : 0;
        unlockBlock(channel, index / pageSize);
        return value;
    }

    void readDoubles(int, int start, int count, double* out) override
    {
        std::copy_n(m_samples.begin() + start, count, out);
    }

    short* loadBlock(int, int block) override
    {
        auto buffer = std::make_unique<short[]>(pageSize);
        const int count = std::min(pageSize, hour - block * pageSize);
        std::copy_n(m_samples.begin() + block * pageSize, count, buffer.get());
        return buffer.release();
    }

    void freeBlock(void* buffer) override { delete[] static_cast<short*>(buffer); }

private:
    std::vector<short> m_samples;
};

// Appends of what comes from the device at a time

void appendInterleaved(benchmark::State& state)
{
    TInt16Signal signal(pageSize, 81920, channels, rate);
    const auto block = noise(channels * frames);
    for (auto _ : state) {
        signal.addInterleaved(reinterpret_cast<const char*>(block.data()), channels * frames * sizeof(short));
        if (signal.sampleCount() > 1000000000)
            state.SkipWithError("ran too long");
    }
    countSeconds(state, 1.0 * frames / rate);
}
BENCHMARK(appendInterleaved)->Iterations(1000000);

void appendInterleavedNaive(benchmark::State& state)
{
    std::vector<std::vector<short>> rings(channels, std::vector<short>(81920));
    const auto block = noise(channels * frames);
    int writeIndex = 0;
    for (auto _ : state) {
        for (int frame = 0; frame < frames; ++frame) {
            for (int channel = 0; channel < channels; ++channel)
                rings[channel][writeIndex] = block[frame * channels + channel];
            writeIndex = (writeIndex + 1) % 81920;
        }
        benchmark::DoNotOptimize(rings.data());
        benchmark::ClobberMemory();
    }
    countSeconds(state, 1.0 * frames / rate);
}
BENCHMARK(appendInterleavedNaive)->Iterations(1000000);

// An hour of one channel as doubles

void readHour(benchmark::State& state)
{
    TInt16Signal signal(pageSize, hour, channels, rate);
    fill(signal, hour);
    std::vector<double> out(pageSize);
    for (auto _ : state) {
        for (int start = 0; start < hour; start += pageSize) {
            signal.readDoubles(3, start, pageSize, out.data());
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
    }
    countSeconds(state, 3600);
}
BENCHMARK(readHour)->Unit(benchmark::kMillisecond);

void readHourNaive(benchmark::State& state)
{
    TInt16Signal ring(pageSize, hour, channels, rate);
    TSignal& signal = ring;
    fill(signal, hour);
    std::vector<double> out(pageSize);
    for (auto _ : state) {
        for (int start = 0; start < hour; start += pageSize) {
            for (int i = 0; i < pageSize; ++i)
                out[i] = signal.sample(3, start + i);
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
    }
    countSeconds(state, 3600);
}
BENCHMARK(readHourNaive)->Unit(benchmark::kMillisecond);

// An hour, and a page of ten seconds, condensed to the width of a screen

void naivePeaks(TSignal& signal, int start, int count, int width, int* low, int* high)
{
    const int step = count / width;
    int end = start;
    int carried = 0;
    for (int column = 0; column < width; ++column) {
        const int first = column == 0 ? start : end - 1;
        carried += count % width;
        end += step + (carried >= width ? 1 : 0);
        carried -= carried >= width ? width : 0;
        low[column] = high[column] = signal.sample(0, end - 1);
        for (int i = first; i < end; i += (step - 1) / 16 + 1) {
            low[column] = std::min(low[column], signal.sample(0, i));
            high[column] = std::max(high[column], signal.sample(0, i));
        }
    }
}

void peaksOf(benchmark::State& state, TSignal& signal, bool naive)
{
    constexpr int width = 1920;
    const int count = static_cast<int>(state.range(0)) * rate;
    const int start = signal.sampleCount() - count;
    std::vector<int> low(width);
    std::vector<int> high(width);
    for (auto _ : state) {
        if (naive)
            naivePeaks(signal, start, count, width, low.data(), high.data());
        else
            signal.channel(0)->peaks(start, count, low.data(), high.data(), 0, width, false);
        benchmark::DoNotOptimize(low.data());
        benchmark::DoNotOptimize(high.data());
    }
}

void peaksOfRecording(benchmark::State& state)
{
    TRecording recording;
    peaksOf(state, recording, state.range(1) != 0);
}
BENCHMARK(peaksOfRecording)
    ->ArgNames({"seconds", "naive"})
    ->ArgsProduct({{10, 3600}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);

void peaksOfRing(benchmark::State& state)
{
    TInt16Signal ring(pageSize, hour, channels, rate);
    fill(ring, hour);
    peaksOf(state, ring, state.range(1) != 0);
}
BENCHMARK(peaksOfRing)
    ->ArgNames({"seconds", "naive"})
    ->ArgsProduct({{10, 60, 120, 240, 480, 3600}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);

// A filter over all channels, live: after each block of the device

void streamFir(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    TInt16Signal source(pageSize, 81920, channels, rate);
    TInt16Signal sink(pageSize, 100 * pageSize, channels, rate);
    TFirStream stream(taps(n), n / 2);
    stream.attach(&source, 0);
    stream.setSink(&sink);
    const auto block = noise(channels * frames);
    for (auto _ : state) {
        source.addInterleaved(reinterpret_cast<const char*>(block.data()), channels * frames * sizeof(short));
        stream.run();
    }
    countSeconds(state, 1.0 * frames / rate);
}
BENCHMARK(streamFir)->ArgName("taps")->Arg(12)->Arg(195)->Arg(501)->Arg(1501);

void streamFirNaive(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    TInt16Signal source(pageSize, 81920, channels, rate);
    TInt16Signal sink(pageSize, 100 * pageSize, channels, rate);
    TSignal& signal = source;
    const auto h = taps(n);
    const auto block = noise(channels * frames);
    int position = 0;
    for (auto _ : state) {
        source.addInterleaved(reinterpret_cast<const char*>(block.data()), channels * frames * sizeof(short));
        for (; position < signal.sampleCount() - n / 2; ++position) {
            short values[channels];
            const short* rows[channels];
            for (int channel = 0; channel < channels; ++channel) {
                double sum = 0.0;
                for (int i = 0; i < n; ++i)
                    sum += h[n - 1 - i] * signal.sample(channel, position + 1 + n / 2 - n + i);
                values[channel] = static_cast<short>(static_cast<int>(sum));
                rows[channel] = &values[channel];
            }
            sink.addPerChannel(rows, 1);
        }
    }
    countSeconds(state, 1.0 * frames / rate);
}
BENCHMARK(streamFirNaive)->ArgName("taps")->Arg(12)->Arg(195);

void decimate(benchmark::State& state)
{
    TInt16Signal source(pageSize, 81920, channels, 2 * rate);
    TInt16Signal sink(pageSize, 81920, channels, rate);
    TFirDecimator decimator(taps(29), 2);
    decimator.attach(&source, 0);
    decimator.setSink(&sink);
    const auto block = noise(channels * 2 * frames);
    for (auto _ : state) {
        source.addInterleaved(reinterpret_cast<const char*>(block.data()),
                              channels * 2 * frames * sizeof(short));
        decimator.run();
    }
    countSeconds(state, 1.0 * frames / rate);
}
BENCHMARK(decimate);

} // namespace
