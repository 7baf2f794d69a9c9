#include "gallery/GalleryTrends.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double exerciseStart = 120.0;
constexpr double recoveryStart = 660.0;

/// 0 at rest, 1 at the end of the exercise.
double effortAt(double seconds)
{
    if (seconds < exerciseStart)
        return 0.0;
    if (seconds < recoveryStart)
        return (seconds - exerciseStart) / (recoveryStart - exerciseStart);
    return std::exp((recoveryStart - seconds) / 90.0);
}

} // namespace

GalleryTrends::GalleryTrends()
{
    double seconds = 0.4;
    for (int beat = 0; seconds < duration; ++beat) {
        const double effort = effortAt(seconds);
        const double rate = 72.0 + 98.0 * effort + (1.4 - effort) * std::sin(beat * 0.25);
        heartRate.add(seconds, rate);
        stLevel.add(seconds, -1.8 * effort + 0.03 * std::sin(beat * 0.3));
        seconds += 60.0 / rate;
    }
    for (double stage = 60.0; stage < duration; stage += 120.0) {
        const double effort = effortAt(stage);
        systolic.add(stage, std::round(122.0 + 68.0 * effort));
        diastolic.add(stage, std::round(78.0 + 8.0 * effort));
        doubleProduct.add(stage, systolic.valueAt(stage) * heartRate.valueAt(stage));
    }
    for (double each = 0.0; each < duration; each += 10.0) {
        const double stage = std::floor(std::max(0.0, each - exerciseStart) / 180.0);
        mets.add(each, each < exerciseStart || each >= recoveryStart ? 1.0 : 4.6 + 2.6 * stage);
    }
}
