#include "analysis/FilterSamples.h"
#include "analysis/filters/FirTables.h"
#include "analysis/filters/TFft.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TInt16Signal.h"

#include <complex>
#include <memory>

/// Filters while recording, all of them on; each piece of work is there a second time in its naive form,
/// sample by sample. `fft` tells the mode of the baseline filter.
namespace {

using namespace filters;

constexpr int frames = 51;
constexpr int liveChannels = 14;
constexpr int ringPages = 20;
constexpr int transformLength = 1024;

class TNaiveStage
{
public:
    virtual ~TNaiveStage() = default;
    virtual TSignal& sink() = 0;
    virtual void run() = 0;
};

/// A stage asked for sample by sample, frame by frame.
class TNaiveFir : public TNaiveStage
{
public:
    TNaiveFir(TSignal& source, const std::vector<double>& h)
        : m_source(source), m_h(h), m_sink(pageSize, 100 * pageSize, liveChannels, rate)
    {
    }

    TSignal& sink() override { return m_sink; }

    void run() override
    {
        const int n = static_cast<int>(m_h.size());
        for (; m_position < m_source.sampleCount() - n / 2; ++m_position) {
            short values[liveChannels];
            const short* rows[liveChannels];
            for (int channel = 0; channel < liveChannels; ++channel) {
                double sum = 0.0;
                for (int i = 0; i < n; ++i)
                    sum += m_h[n - 1 - i] * m_source.sample(channel, m_position + 1 + n / 2 - n + i);
                values[channel] = static_cast<short>(std::clamp(sum, -32768.0, 32767.0));
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

/// A transform by its definition, the circle computed once; `sign` -1 forward, 1 back.
void naiveTransform(std::vector<std::complex<double>>& values, int sign)
{
    const int n = static_cast<int>(values.size());
    std::vector<std::complex<double>> circle(n);
    for (int i = 0; i < n; ++i)
        circle[i] = std::polar(1.0, sign * 2.0 * std::numbers::pi * i / n);
    std::vector<std::complex<double>> sums(n);
    for (int k = 0; k < n; ++k) {
        for (int i = 0; i < n; ++i)
            sums[k] += values[i] * circle[static_cast<std::size_t>(k) * i % n];
    }
    values.swap(sums);
}

/// The baseline filter in its mode "fft": 64 samples of the middle of each stretch of 1024.
class TNaiveFft : public TNaiveStage
{
public:
    explicit TNaiveFft(TSignal& source)
        : m_source(source), m_sink(pageSize, 100 * pageSize, liveChannels, rate)
    {
    }

    TSignal& sink() override { return m_sink; }

    void run() override
    {
        constexpr int hop = 64;
        for (; m_position + transformLength <= m_source.sampleCount(); m_position += hop) {
            std::vector<std::vector<short>> rows(liveChannels, std::vector<short>(hop));
            const short* pointers[liveChannels];
            for (int channel = 0; channel < liveChannels; ++channel) {
                filter(channel, rows[channel]);
                pointers[channel] = rows[channel].data();
            }
            m_sink.addPerChannel(pointers, hop);
        }
    }

private:
    static constexpr int lead = 480;

    void filter(int channel, std::vector<short>& out)
    {
        std::vector<std::complex<double>> values(transformLength);
        for (int i = 0; i < transformLength; ++i)
            values[i] = m_source.sample(channel, m_position + i);
        naiveTransform(values, -1);
        for (const int bin : {0, 1, transformLength - 2, transformLength - 1})
            values[bin] = 0.0;
        naiveTransform(values, 1);
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] =
                static_cast<short>(std::clamp(values[lead + i].real() / transformLength, -32768.0, 32767.0));
    }

    TSignal& m_source;
    TInt16Signal m_sink;
    int m_position = -lead;
};

/// All filters on, one behind the other.
class TNaiveChain
{
public:
    TNaiveChain(TSignal& input, bool fft)
    {
        add<TNaiveFir>(input, *velantor::highPassTable(rate));
        add<TNaiveFir>(m_stages.back()->sink(), *velantor::notchTable("50hz", rate));
        add<TNaiveFir>(m_stages.back()->sink(), *velantor::muscleTable("40hz", rate));
        if (fft)
            add<TNaiveFft>(m_stages.back()->sink());
        else
            add<TNaiveFir>(m_stages.back()->sink(), *velantor::baselineTable(rate));
    }

    void update()
    {
        for (const auto& stage : m_stages)
            stage->run();
    }

private:
    template <typename Stage, typename... Arguments> void add(Arguments&&... arguments)
    {
        m_stages.push_back(std::make_unique<Stage>(std::forward<Arguments>(arguments)...));
    }

    std::vector<std::unique_ptr<TNaiveStage>> m_stages;
};

void applyAll(TRealtimeFilterChain& chain, bool fft)
{
    chain.setBaselineMode(fft ? "fft" : velantor::baselineFilterFir);
    chain.apply(true, true, true);
}

// After each block of the device

template <typename Chain> void takeBlocks(benchmark::State& state, TInt16Signal& input, Chain& chain)
{
    const auto block = ecgLike(liveChannels * frames);
    for (auto _ : state) {
        input.addInterleaved(reinterpret_cast<const char*>(block.data()),
                             liveChannels * frames * sizeof(short));
        chain.update();
    }
    countSeconds(state, 1.0 * frames / rate);
}

void realtimeChain(benchmark::State& state)
{
    TInt16Signal input(pageSize, ringPages * pageSize, liveChannels, rate);
    TRealtimeFilterChain chain(&input);
    applyAll(chain, state.range(0) != 0);
    takeBlocks(state, input, chain);
}
BENCHMARK(realtimeChain)->ArgName("fft")->Arg(0)->Arg(1);

void realtimeChainNaive(benchmark::State& state)
{
    TInt16Signal input(pageSize, ringPages * pageSize, liveChannels, rate);
    TNaiveChain chain(input, state.range(0) != 0);
    takeBlocks(state, input, chain);
}
BENCHMARK(realtimeChainNaive)->ArgName("fft")->Arg(0)->Arg(1);

// A switch is turned: the rebuilt chain catches up with a full ring

void fill(TInt16Signal& input)
{
    const auto block = ecgLike(liveChannels * pageSize);
    for (int i = 0; i < ringPages; ++i)
        input.addInterleaved(reinterpret_cast<const char*>(block.data()),
                             liveChannels * pageSize * sizeof(short));
}

void realtimeChainRebuilt(benchmark::State& state)
{
    TInt16Signal input(pageSize, ringPages * pageSize, liveChannels, rate);
    fill(input);
    TRealtimeFilterChain chain(&input);
    for (auto _ : state) {
        applyAll(chain, false);
        chain.update();
    }
    countSeconds(state, 1.0 * ringPages * pageSize / rate);
}
BENCHMARK(realtimeChainRebuilt)->Unit(benchmark::kMillisecond);

void realtimeChainRebuiltNaive(benchmark::State& state)
{
    TInt16Signal input(pageSize, ringPages * pageSize, liveChannels, rate);
    fill(input);
    for (auto _ : state) {
        TNaiveChain chain(input, false);
        chain.update();
    }
    countSeconds(state, 1.0 * ringPages * pageSize / rate);
}
BENCHMARK(realtimeChainRebuiltNaive)->Unit(benchmark::kMillisecond)->Iterations(1);

// The transform of the baseline stream, there and back

void transform(benchmark::State& state)
{
    const TFft fft(transformLength);
    std::vector<double> real(transformLength);
    std::vector<double> imaginary(transformLength);
    for (int i = 0; i < transformLength; ++i)
        real[i] = std::sin(i * 0.1);
    for (auto _ : state) {
        fft.forward(real.data(), imaginary.data());
        fft.inverse(real.data(), imaginary.data());
        for (int i = 0; i < transformLength; ++i) {
            real[i] /= transformLength;
            imaginary[i] /= transformLength;
        }
        benchmark::DoNotOptimize(real.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(transform);

void transformNaive(benchmark::State& state)
{
    std::vector<std::complex<double>> values(transformLength);
    for (int i = 0; i < transformLength; ++i)
        values[i] = std::sin(i * 0.1);
    for (auto _ : state) {
        naiveTransform(values, -1);
        naiveTransform(values, 1);
        for (auto& value : values)
            value /= transformLength;
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(transformNaive);

} // namespace
