#include "analysis/beats/TAverageBeat.h"
#include "analysis/delineation/BeatRefinement.h"
#include "analysis/delineation/QuadraticSplineWavelet.h"
#include "analysis/delineation/TAverageBeatDelineator.h"
#include "analysis/delineation/TSlopeDelineator.h"
#include "analysis/signals/TInt16Signal.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

/// What one beat costs behind the detector, each piece beside its naive form.
namespace {

constexpr int channels = 14;
constexpr int rate = 500;
constexpr int seconds = 40;
constexpr double holdTime = 20.0;
constexpr double rr = 0.8;

/// Forty seconds of a beat every 0.8 s, in the form of three hills, with some noise.
double sampleAt(int index)
{
    const double time = std::fmod(static_cast<double>(index) / rate, rr) - 0.4;
    const auto hill = [time](double center, double width, double height) {
        return height * std::exp(-0.5 * std::pow((time - center) / width, 2.0));
    };
    return hill(-0.15, 0.02, 60.0) + hill(0.0, 0.01, 600.0) + hill(0.25, 0.04, 150.0);
}

class TRecording : public TInt16Signal
{
public:
    TRecording() : TInt16Signal(4096, 100 * 4096, channels, rate)
    {
        std::mt19937 random(1);
        std::vector<short> frames;
        for (int i = 0; i < seconds * rate; ++i)
            for (int channel = 0; channel < channels; ++channel)
                frames.push_back(static_cast<short>(sampleAt(i) + static_cast<int>(random() % 5)));
        addInterleaved(reinterpret_cast<const char*>(frames.data()),
                       static_cast<int>(frames.size() * sizeof(short)));
    }
};

TBeat beatAt(const TSignal& signal, double t)
{
    TBeat beat(&signal);
    beat.setWindow(t - 0.25, 0.65);
    beat.setValue(TBeat::beatTime, t);
    beat.setValue(TBeat::rr, rr);
    beat.setValue(TBeat::meanRR, rr);
    const double places[] = {t - 0.15, t - 0.03, t, t + 0.03, t + 0.25};
    for (int channel = 0; channel < channels; ++channel) {
        beat.setFiducial(channel, TBeat::qrsType, 1.0);
        for (int i = 0; i < 5; ++i)
            beat.setFiducial(channel, TBeat::pPeak + i, places[i]);
    }
    return beat;
}

std::vector<TBeat> beatsOf(const TSignal& signal)
{
    std::vector<TBeat> beats;
    for (double t = 0.4 + 10 * rr; t < 0.4 + 10 * rr + holdTime; t += rr)
        beats.push_back(beatAt(signal, t));
    return beats;
}

void countBeats(benchmark::State& state)
{
    state.counters["x_real_time"] =
        benchmark::Counter(rr * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

/// As many beats as 20 s have, all of them averaged anew with each one that comes.
void averageOfAllChannels(benchmark::State& state)
{
    TRecording signal;
    TAverageBeat average(&signal, holdTime);
    const auto beats = beatsOf(signal);
    for (const TBeat& beat : beats)
        average.addBeat(beat);
    TBeat next = beats.back();
    for (auto turn : state) {
        // One goes with each that comes; the signal is short, so the window runs on without the R.
        next.setWindow(next.windowStart() + rr, 0.65);
        average.addBeat(next);
        benchmark::DoNotOptimize(average.complex(channels - 1).data());
    }
    countBeats(state);
    state.counters["beats"] = average.count();
}
BENCHMARK(averageOfAllChannels);

/// Snippet by snippet as vectors, sample by sample from the signal.
void averageNaive(benchmark::State& state)
{
    TRecording signal;
    const auto beats = beatsOf(signal);
    const double share = 1.0 / static_cast<double>(beats.size());
    for (auto turn : state) {
        for (int channel = 0; channel < channels; ++channel) {
            TDoubleVector sum(rate);
            for (const TBeat& beat : beats) {
                const int start = static_cast<int>((beat.fiducial(0, TBeat::rPosition) - 0.45) * rate);
                TDoubleVector snippet(rate);
                for (int i = 0; i < rate; ++i)
                    snippet[i] = signal.sample(channel, start + i);
                const double mean = snippet.mean();
                for (int i = 0; i < rate; ++i)
                    snippet[i] -= mean;
                sum = sum.sum(snippet.scaled(share));
            }
            benchmark::DoNotOptimize(sum.data());
        }
    }
    countBeats(state);
}
BENCHMARK(averageNaive);

TDoubleVector complexAt(int samplingRate)
{
    TDoubleVector complex(samplingRate);
    for (int i = 0; i < samplingRate; ++i)
        complex[i] = sampleAt((i * rate / samplingRate) + 400 - 225 - 200);
    return complex;
}

template <typename Delineator> void delineation(benchmark::State& state)
{
    const int samplingRate = static_cast<int>(state.range(0));
    const TDoubleVector complex = complexAt(samplingRate);
    Delineator delineator;
    for (auto turn : state) {
        delineator.analyse(complex, samplingRate, static_cast<int>(0.45 * samplingRate),
                           static_cast<int>(rr * samplingRate));
        benchmark::DoNotOptimize(delineator.qrsOnset());
    }
}
BENCHMARK_TEMPLATE(delineation, TAverageBeatDelineator)->Arg(250)->Arg(500)->Arg(1000);
BENCHMARK_TEMPLATE(delineation, TSlopeDelineator)->Arg(250)->Arg(500);

/// The transforms alone, sum by sum at every place.
void delineationNaive(benchmark::State& state)
{
    const TDoubleVector complex = complexAt(250);
    for (auto turn : state) {
        for (const int scale : {1, 2, 4}) {
            const TDoubleVector filter = velantor::waveletFilter(scale);
            for (int i = 0; i < complex.size(); ++i) {
                double sum = 0.0;
                for (int k = 0; k < filter.size(); ++k) {
                    const int at = i + filter.size() / 2 - k;
                    sum += at >= 0 && at < complex.size() ? filter[k] * complex[at] : 0.0;
                }
                benchmark::DoNotOptimize(sum);
            }
        }
    }
}
BENCHMARK(delineationNaive);

void refinement(benchmark::State& state)
{
    TRecording signal;
    const TBeat beat = beatAt(signal, 8.4);
    for (auto turn : state) {
        TBeat refined = beat;
        velantor::refineBeat(refined, signal);
        benchmark::DoNotOptimize(refined);
    }
    countBeats(state);
}
BENCHMARK(refinement);

/// The whole window smoothed for every channel; what is found in it is left out.
void refinementNaive(benchmark::State& state)
{
    TRecording signal;
    const TBeat beat = beatAt(signal, 8.4);
    const TDoubleVector filter(std::vector<double>(32, 1.0 / 32).data(), 32);
    for (auto turn : state) {
        for (int channel = 0; channel < channels; ++channel) {
            TDoubleVector window(static_cast<int>(beat.windowLength() * rate));
            const int start = signal.indexOf(beat.windowStart());
            for (int i = 0; i < window.size(); ++i)
                window[i] = signal.sample(channel, start + i);
            const TDoubleVector smoothed = window.convolved(filter).shifted(-15);
            benchmark::DoNotOptimize(smoothed.data());
        }
    }
    countBeats(state);
}
BENCHMARK(refinementNaive);

} // namespace
