#include "analysis/LiveSignal.h"

#include "analysis/delineation/QuadraticSplineWavelet.h"
#include "analysis/detection/TWaveletTransform.h"
#include "analysis/filters/FirTables.h"
#include "simulators/heart/DemoRecording.h"

namespace live {

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

QVector<char> TLoop::next()
{
    constexpr int size = blockFrames * channels * static_cast<int>(sizeof(short));
    const int frameCount = static_cast<int>(recording().size()) / channels;
    if (m_next + blockFrames > frameCount)
        m_next = 0;
    const auto* first = reinterpret_cast<const char*>(recording().data() + m_next * channels);
    m_next += blockFrames;
    return QVector<char>(first, first + size);
}

void filterBlockNaively()
{
    static const std::vector<double> input(2 * 4096, 1.0);
    static const std::vector<const std::vector<double>*> displayTables{
        velantor::highPassTable(rate), velantor::notchTable("50hz", rate),
        velantor::muscleTable("40hz", rate), velantor::baselineTable(rate)};
    const auto convolve = [](const std::vector<double>& taps, int frames) {
        for (int i = 0; i < frames; ++i) {
            volatile double sum = 0.0;
            for (std::size_t k = 0; k < taps.size(); ++k)
                sum = sum + taps[k] * input[i + k];
            benchmark::DoNotOptimize(sum);
        }
    };
    for (int channel = 0; channel < channels; ++channel) {
        for (const std::vector<double>* table : displayTables)
            convolve(*table, blockFrames);
        for (int scale = 1; scale <= TWaveletSpan::scaleCount; ++scale)
            convolve(velantor::waveletFilter(scale).values(), blockFrames / 2);
    }
}

} // namespace live
