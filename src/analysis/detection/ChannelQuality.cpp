#include "analysis/detection/ChannelQuality.h"

#include "analysis/filters/SmoothingTables.h"
#include "analysis/signals/FirSum.h"
#include "analysis/signals/TSignal.h"

#include <algorithm>
#include <cmath>

namespace {

/// Of the clipping test.
constexpr int manyRuns = 4;
constexpr int longPercent = 35; ///< of a second
constexpr int shortestRun = 2;

struct TRuns
{
    int count = 0;
    int samples = 0;

    void add(int length)
    {
        if (length < shortestRun)
            return;
        ++count;
        samples += length;
    }
    bool areMany(int samplingRate) const
    {
        return count >= manyRuns || 100LL * samples > static_cast<long long>(longPercent) * samplingRate;
    }
};

template <typename IsIn> TRuns countRuns(const double* samples, int n, IsIn isIn)
{
    TRuns runs;
    int length = 0;
    for (int i = 0; i < n; ++i) {
        if (isIn(samples[i])) {
            ++length;
        } else {
            runs.add(length);
            length = 0;
        }
    }
    runs.add(length);
    return runs;
}

/// Samples of [`from`, `from` + `seconds`) that the signal has.
std::vector<double> readAround(TSignal& signal, int channel, double from, double seconds)
{
    const int start = std::max(signal.indexOf(from), 0);
    const int end = std::min(signal.indexOf(from + seconds), signal.sampleCount());
    std::vector<double> samples(std::max(end - start, 0));
    signal.readDoubles(channel, start, static_cast<int>(samples.size()), samples.data());
    return samples;
}

std::vector<fir::TTap> tapsOf(const std::vector<double>& coefficients)
{
    std::vector<fir::TTap> taps;
    for (std::size_t i = 0; i < coefficients.size(); ++i)
        taps.push_back({coefficients[i], static_cast<int>(i)});
    return taps;
}

/// Only where the whole filter lies within the samples: its run-in from zero would be a step on any offset.
std::vector<double> smoothedAround(TSignal& signal, int channel, double t)
{
    static const std::vector<fir::TTap> taps = tapsOf(velantor::smoothing25());
    std::vector<double> samples = readAround(signal, channel, t - 2.0, 3.0);
    if (samples.size() < taps.size())
        return {};
    std::vector<double> smoothed(samples.size() - taps.size() + 1);
    samples.resize(samples.size() + fir::padding);
    fir::sum(taps, samples.data(), static_cast<int>(smoothed.size()), smoothed.data());
    return smoothed;
}

} // namespace

namespace quality {

bool isClipped(const double* samples, int n, int samplingRate, int bits)
{
    if (n <= 0)
        return false;
    const auto [least, greatest] = std::minmax_element(samples, samples + n);
    const double top = *greatest - 2.0;
    const double bottom = *least + 2.0;
    const double half = std::ldexp(1.0, bits - 1) / 2.0;
    if (top < half && bottom > -half)
        return false;
    return countRuns(samples, n, [top](double x) { return x >= top; }).areMany(samplingRate) ||
           countRuns(samples, n, [bottom](double x) { return x <= bottom; }).areMany(samplingRate);
}

double flatLimit(int resolutionBits)
{
    return std::ldexp(1.0, resolutionBits) / (resolutionBits < 13 ? 32.0 : 2048.0);
}

double smoothedSpan(TSignal& signal, int channel, double t)
{
    const std::vector<double> smoothed = smoothedAround(signal, channel, t);
    if (smoothed.empty())
        return 0.0;
    const auto [least, greatest] = std::minmax_element(smoothed.begin(), smoothed.end());
    return *greatest - *least;
}

bool isUsable(TSignal& signal, int channel, double t)
{
    const std::vector<double> second = readAround(signal, channel, t - 0.5, 1.0);
    const int bits = signal.resolutionBits();
    if (isClipped(second.data(), static_cast<int>(second.size()), signal.samplingRate(), bits))
        return false;
    return smoothedSpan(signal, channel, t) >= flatLimit(bits);
}

} // namespace quality
