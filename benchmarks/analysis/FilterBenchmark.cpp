#include "analysis/filters/FirTables.h"
#include "analysis/filters/IirTables.h"
#include "analysis/filters/TFft.h"
#include "analysis/filters/TFirBlockFilter.h"
#include "analysis/filters/TOfflineFilterChain.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TSignalWindow.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

/// Filters while recording and over a recording; each piece of work is there a second time in its naive form,
/// sample by sample. `items_per_second` and `x_real_time` count seconds of signal.
namespace {

constexpr int rate = 500;
constexpr int pageSize = 4096;
constexpr int frames = 51;
constexpr int liveChannels = 14;
constexpr int storedChannels = 12;

/// Waves of the height of an ECG with some noise.
std::vector<short> ecgLike(int count)
{
    std::mt19937 generator(1);
    std::vector<short> samples(count);
    for (int i = 0; i < count; ++i) {
        const double wave = std::sin(2.0 * std::numbers::pi * i / rate * 1.2);
        samples[i] = static_cast<short>(100.0 * std::pow(wave, 31) + static_cast<int>(generator() % 9));
    }
    return samples;
}

void countSeconds(benchmark::State& state, double secondsPerTurn)
{
    const double seconds = secondsPerTurn * static_cast<double>(state.iterations());
    state.counters["x_real_time"] = benchmark::Counter(seconds, benchmark::Counter::kIsRate);
    state.SetItemsProcessed(static_cast<std::int64_t>(seconds));
}

/// A recording in memory whose blocks are copied on demand, as those of a file are; its channels are alike.
class TRecording : public TSignal
{
public:
    TRecording(int channels, int samples) : TSignal(pageSize, channels, rate), m_samples(ecgLike(samples))
    {
        setSampleCount(samples);
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
    std::vector<short> m_samples;
};

// While recording: all filters on, after each block of the device

void realtimeChain(benchmark::State& state)
{
    TInt16Signal input(pageSize, 20 * pageSize, liveChannels, rate);
    TRealtimeFilterChain chain(&input);
    if (state.range(0) != 0)
        chain.setBaselineMode("fft");
    chain.apply(true, true, true);
    const auto block = ecgLike(liveChannels * frames);
    for (auto _ : state) {
        input.addInterleaved(reinterpret_cast<const char*>(block.data()),
                             liveChannels * frames * sizeof(short));
        chain.update();
    }
    countSeconds(state, 1.0 * frames / rate);
}
BENCHMARK(realtimeChain)->ArgName("fft")->Arg(0)->Arg(1);

/// A stage asked for sample by sample, frame by frame.
class TNaiveStage
{
public:
    TNaiveStage(TSignal& source, const std::vector<double>& h)
        : m_source(source), m_h(h), m_sink(pageSize, 100 * pageSize, liveChannels, rate)
    {
    }

    TSignal& sink() { return m_sink; }

    void run()
    {
        const int n = static_cast<int>(m_h.size());
        for (; m_position < m_source.sampleCount() - n / 2; ++m_position) {
            short values[liveChannels];
            const short* rows[liveChannels];
            for (int channel = 0; channel < liveChannels; ++channel) {
                double sum = 0.0;
                for (int i = 0; i < n; ++i)
                    sum += m_h[n - 1 - i] * m_source.sample(channel, m_position + 1 + n / 2 - n + i);
                values[channel] = static_cast<short>(static_cast<int>(sum));
                rows[channel] = &values[channel];
            }
            m_sink.addPerChannel(rows, 1);
        }
    }

private:
    TSignal& m_source;
    const std::vector<double>& m_h;
    TInt16Signal m_sink;
    int m_position = 0;
};

void realtimeChainNaive(benchmark::State& state)
{
    TInt16Signal input(pageSize, 20 * pageSize, liveChannels, rate);
    TNaiveStage highPass(input, *velantor::highPassTable(rate));
    TNaiveStage notch(highPass.sink(), *velantor::notchTable("50hz", rate));
    TNaiveStage muscle(notch.sink(), *velantor::muscleTable("40hz", rate));
    TNaiveStage baseline(muscle.sink(), *velantor::baselineTable(rate));
    const auto block = ecgLike(liveChannels * frames);
    for (auto _ : state) {
        input.addInterleaved(reinterpret_cast<const char*>(block.data()),
                             liveChannels * frames * sizeof(short));
        for (TNaiveStage* const stage : {&highPass, &notch, &muscle, &baseline})
            stage->run();
    }
    countSeconds(state, 1.0 * frames / rate);
}
BENCHMARK(realtimeChainNaive);

// A switch is turned: the rebuilt chain catches up with a full ring

void realtimeChainRebuilt(benchmark::State& state)
{
    TInt16Signal input(pageSize, 20 * pageSize, liveChannels, rate);
    const auto block = ecgLike(liveChannels * pageSize);
    for (int i = 0; i < 20; ++i)
        input.addInterleaved(reinterpret_cast<const char*>(block.data()),
                             liveChannels * pageSize * sizeof(short));
    TRealtimeFilterChain chain(&input);
    for (auto _ : state) {
        chain.apply(true, true, true);
        chain.update();
    }
    countSeconds(state, 20.0 * pageSize / rate);
}
BENCHMARK(realtimeChainRebuilt)->Unit(benchmark::kMillisecond);

// A recording of an hour, three filters on: what a window does before it first paints ten seconds of it, and
// all of it

void read(TSignal& signal, int from, int count)
{
    std::vector<double> out(count);
    for (int channel = 0; channel < signal.channelCount(); ++channel) {
        signal.readDoubles(channel, from, count, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}

void offlineFirstPaint(benchmark::State& state)
{
    TRecording recording(storedChannels, 3600 * rate);
    for (auto _ : state) {
        TOfflineFilterChain chain(&recording);
        chain.apply(true, true, true);
        read(*chain.current(), 1800 * rate, 10 * rate);
    }
    countSeconds(state, 10.0);
}
BENCHMARK(offlineFirstPaint)->Unit(benchmark::kMillisecond);

void offlineHour(benchmark::State& state)
{
    TRecording recording(storedChannels, 3600 * rate);
    for (auto _ : state) {
        TOfflineFilterChain chain(&recording);
        chain.apply(true, true, true);
        for (int start = 0; start < 3600 * rate; start += pageSize)
            read(*chain.current(), start, pageSize);
    }
    countSeconds(state, 3600.0);
}
BENCHMARK(offlineHour)->Unit(benchmark::kMillisecond);

// One block of one filter

void blockFilter(benchmark::State& state, TBlockProcessor& filter)
{
    TRecording recording(1, 5 * pageSize);
    TSignalWindow window(&recording);
    window.move(2, 0);
    std::vector<short> out(pageSize);
    for (auto _ : state) {
        filter.process(window, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    countSeconds(state, 1.0 * pageSize / rate);
}

/// The words of the algorithm, each sample read through the window.
class TNaiveIir : public TBlockProcessor
{
public:
    explicit TNaiveIir(const velantor::TIirTable& table) : m_table(table) {}

    void process(TSignalWindow& window, short* out) override
    {
        const int n = window.blockSize();
        const int order = static_cast<int>(m_table.coefficients.a.size());
        const int margin = m_table.margin;
        const int pad = order + margin;
        std::vector<double> forward(n + 2 * pad);
        std::vector<double> backward(n + 2 * pad);
        for (int i = -margin; i < n + margin; ++i) {
            double& y = forward[i + pad];
            for (int k = 0; k <= order; ++k)
                y += m_table.coefficients.b[k] * window.sample(i - k);
            for (int k = 1; k <= order; ++k)
                y += m_table.coefficients.a[k - 1] * forward[i + pad - k];
        }
        for (int i = n + margin - 1; i >= 0; --i) {
            double& y = backward[i + pad];
            for (int k = 0; k <= order; ++k)
                y += m_table.coefficients.b[k] * forward[i + pad + k];
            for (int k = 1; k <= order; ++k)
                y += m_table.coefficients.a[k - 1] * backward[i + pad + k];
        }
        for (int i = 0; i < n; ++i)
            out[i] = static_cast<short>(std::clamp(backward[i + pad], -32768.0, 32767.0));
    }

private:
    const velantor::TIirTable& m_table;
};

class TNaiveFir : public TBlockProcessor
{
public:
    explicit TNaiveFir(const std::vector<double>& h) : m_h(h) {}

    void process(TSignalWindow& window, short* out) override
    {
        const int n = static_cast<int>(m_h.size());
        for (int p = 0; p < window.blockSize(); ++p) {
            double sum = 0.0;
            for (int i = 0; i < n; ++i)
                sum += m_h[i] * window.sample(n / 2 - i + p);
            out[p] = static_cast<short>(std::clamp(sum, -32768.0, 32767.0));
        }
    }

private:
    const std::vector<double>& m_h;
};

void recursion(benchmark::State& state, const velantor::TIirTable* table)
{
    TIirBlockFilter filter(table->coefficients, table->margin, true);
    TNaiveIir naive(*table);
    blockFilter(state, state.range(0) != 0 ? static_cast<TBlockProcessor&>(naive) : filter);
}
BENCHMARK_CAPTURE(recursion, highPass, velantor::highPassRecursion(500))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(recursion, notch, velantor::notchRecursion(500))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(recursion, notch1000, velantor::notchRecursion(1000))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(recursion, baseline, velantor::baselineRecursion(500))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(recursion, baseline1000, velantor::baselineRecursion(1000))
    ->ArgName("naive")
    ->Arg(0)
    ->Arg(1);

void convolution(benchmark::State& state, const std::vector<double>* table)
{
    TFirBlockFilter filter(*table, static_cast<int>(table->size()) / 2);
    TNaiveFir naive(*table);
    blockFilter(state, state.range(0) != 0 ? static_cast<TBlockProcessor&>(naive) : filter);
}
BENCHMARK_CAPTURE(convolution, muscle, velantor::muscleTable("40hz", 500))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(convolution, muscle250, velantor::muscleTable("40hz", 250))
    ->ArgName("naive")
    ->Arg(0)
    ->Arg(1);

// The transform of the baseline stream

void transform(benchmark::State& state)
{
    const TFft fft(1024);
    std::vector<double> real(1024);
    std::vector<double> imaginary(1024);
    for (int i = 0; i < 1024; ++i)
        real[i] = std::sin(i * 0.1);
    for (auto _ : state) {
        fft.forward(real.data(), imaginary.data());
        fft.inverse(real.data(), imaginary.data());
        for (int i = 0; i < 1024; ++i) {
            real[i] /= 1024;
            imaginary[i] /= 1024;
        }
        benchmark::DoNotOptimize(real.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(transform);

} // namespace
