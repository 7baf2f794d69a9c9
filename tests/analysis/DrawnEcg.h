#pragma once

#include "analysis/signals/TSignal.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

/// Recordings drawn from waves with known places, in counts, as the tests of the detection feed them.
namespace ecg {

/// A bell: seconds from R, standard deviation in seconds, counts.
struct TWave
{
    double at;
    double width;
    double height;
};
using TShape = std::vector<TWave>;
using TRow = std::vector<double>;
using TRows = std::vector<TRow>;

/// A healthy complex of 1 mV in a recording of 16 bits over 600 mV, ten times as high.
inline const TShape normal{{-0.16, 0.022, 130.0},
                           {-0.028, 0.008, -90.0},
                           {0.0, 0.010, 1100.0},
                           {0.028, 0.009, -250.0},
                           {0.26, 0.040, 280.0}};

inline TShape scaled(TShape shape, double factor)
{
    for (TWave& wave : shape)
        wave.height *= factor;
    return shape;
}

inline double valueOf(const TShape& shape, double time)
{
    double sum = 0.0;
    for (const TWave& wave : shape) {
        const double distance = (time - wave.at) / wave.width;
        sum += wave.height * std::exp(-0.5 * distance * distance);
    }
    return sum;
}

/// Adds a complex with R at `r` seconds.
inline void add(TRow& row, int rate, const TShape& shape, double r)
{
    const int first = std::max(static_cast<int>((r - 0.6) * rate), 0);
    const int last = std::min(static_cast<int>((r + 0.8) * rate), static_cast<int>(row.size()));
    for (int i = first; i < last; ++i)
        row[i] += valueOf(shape, static_cast<double>(i) / rate - r);
}

/// `seconds` at `rate` with a complex at each of the times.
inline TRow row(double seconds, int rate, const std::vector<double>& times, const TShape& shape = normal)
{
    TRow row(static_cast<std::size_t>(seconds * rate));
    for (const double r : times)
        add(row, rate, shape, r);
    return row;
}

/// `count` times, `rr` seconds apart.
inline std::vector<double> regular(double first, double rr, int count)
{
    std::vector<double> times;
    for (int i = 0; i < count; ++i)
        times.push_back(first + rr * i);
    return times;
}

/// The same numbers in every run.
inline TRow noise(int count, double deviation, unsigned seed = 7)
{
    std::mt19937 random(seed);
    // Sum of twelve: close enough to normal, and the same with every library.
    TRow row(count);
    for (double& x : row) {
        double sum = -6.0;
        for (int i = 0; i < 12; ++i)
            sum += random() / 4294967296.0;
        x = deviation * sum;
    }
    return row;
}

inline TRow sum(TRow a, const TRow& b)
{
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        a[i] += b[i];
    return a;
}

/// Appends samples [`from`, `from` + `count`) of every row, as far as there are any.
inline void append(TSignal& signal, const TRows& rows, int from, int count)
{
    std::vector<const double*> places;
    for (const TRow& row : rows) {
        places.push_back(row.data() + from);
        count = std::min(count, static_cast<int>(row.size()) - from);
    }
    signal.addPerChannelDouble(places.data(), count);
}

} // namespace ecg
