#pragma once

#include "analysis/signals/TDoubleVector.h"

#include <cmath>
#include <random>
#include <vector>

/// Complexes drawn from waves with known borders, in counts, as several tests measure them.
namespace drawn {

/// A wave that rises from its onset to its peak and falls back to its offset, smooth all the way. Seconds
/// from R, and counts.
struct TWave
{
    double onset;
    double peak;
    double offset;
    double height;
};

inline const TWave p{-0.19, -0.14, -0.09, 60.0};
inline const TWave q{-0.045, -0.033, -0.02, -80.0};
inline const TWave r{-0.03, 0.0, 0.03, 600.0};
inline const TWave s{0.02, 0.033, 0.045, -150.0};
inline const TWave t{0.12, 0.25, 0.34, 150.0};

/// Where R lies in a complex of one second.
inline int rSample(int rate)
{
    return static_cast<int>(0.45 * rate);
}

inline double valueOf(const TWave& wave, double time)
{
    const bool inside = time > wave.onset && time < wave.offset;
    const double side = time < wave.peak ? wave.peak - wave.onset : wave.offset - wave.peak;
    return inside ? wave.height * 0.5 * (1.0 + std::cos(M_PI * (time - wave.peak) / side)) : 0.0;
}

/// One second at `rate`, R at `rSample(rate)` or where `at` says.
inline TDoubleVector complex(const std::vector<TWave>& waves, int rate, int at = -1)
{
    TDoubleVector result(rate);
    const int center = at >= 0 ? at : rSample(rate);
    for (int i = 0; i < rate; ++i)
        for (const TWave& wave : waves)
            result[i] += valueOf(wave, static_cast<double>(i - center) / rate);
    return result;
}

inline TDoubleVector withNoise(TDoubleVector complex, double deviation)
{
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0.0, deviation);
    for (int i = 0; i < complex.size(); ++i)
        complex[i] += noise(random);
    return complex;
}

/// Milliseconds between a place and where it should be, seconds from R.
inline double error(int place, double time, int rate)
{
    return 1000.0 * ((place - rSample(rate)) / static_cast<double>(rate) - time);
}

} // namespace drawn
