#pragma once

#include "analysis/beats/TAverageBeat.h"
#include "analysis/signals/TDoubleSignal.h"

#include <algorithm>
#include <cmath>
#include <vector>

/// A recording and beats in it that several tests average.
namespace averaging {

inline constexpr int rate = 100;
inline constexpr int channels = 3;

/// A sample that tells its channel and place, so that a wrong one is seen.
inline double sampleAt(int channel, int index)
{
    return (channel + 1) * 1000.0 + index % 97 * 8.0;
}

/// Thirty seconds at 100 samples per second.
class TRecording : public TDoubleSignal
{
public:
    explicit TRecording(int capacity = 30 * rate) : TDoubleSignal(64, capacity, channels, rate)
    {
        grow(30 * rate);
    }

    void grow(int samples)
    {
        std::vector<std::vector<double>> rows(channels);
        std::vector<const double*> data;
        for (int channel = 0; channel < channels; ++channel) {
            for (int i = 0; i < samples; ++i)
                rows[channel].push_back(sampleAt(channel, sampleCount() + i));
            data.push_back(rows[channel].data());
        }
        addPerChannel(data.data(), samples);
    }
};

/// A beat at `t` that is normal on every channel.
inline TBeat beatAt(double t, double rr = 1.0, double meanRR = 1.0)
{
    TBeat beat(channels);
    beat.setWindow(t - 0.2, 0.6);
    beat.setValue(TBeat::beatTime, t);
    beat.setValue(TBeat::rr, rr);
    beat.setValue(TBeat::meanRR, meanRR);
    for (int channel = 0; channel < channels; ++channel) {
        beat.setFiducial(channel, TBeat::rPosition, t);
        beat.setFiducial(channel, TBeat::qrsType, 1.0);
    }
    return beat;
}

/// What the average of snippets is, straight from its definition.
inline TDoubleVector expectedComplex(TSignal& signal, int channel, const std::vector<double>& times)
{
    TDoubleVector complex(signal.samplingRate());
    for (const double t : times) {
        TDoubleVector snippet(complex.size());
        const int start = static_cast<int>((t - 0.45) * signal.samplingRate());
        signal.readDoubles(channel, start, snippet.size(), snippet.data());
        const double mean = snippet.mean();
        for (int i = 0; i < snippet.size(); ++i)
            complex[i] += (snippet[i] - mean) * (1.0 / static_cast<double>(times.size()));
    }
    return complex;
}

inline double greatestDifference(const TDoubleVector& a, const TDoubleVector& b)
{
    double greatest = a.size() == b.size() ? 0.0 : 1e9;
    for (int i = 0; i < std::min(a.size(), b.size()); ++i)
        greatest = std::max(greatest, std::abs(a[i] - b[i]));
    return greatest;
}

inline bool isSilent(const TDoubleVector& complex)
{
    return greatestDifference(complex, TDoubleVector(rate)) == 0.0;
}

} // namespace averaging
