#include "simulators/heart/Course.h"

#include "simulators/heart/ExactMath.h"

namespace heart {
namespace {

// Seconds.
constexpr double exerciseStart = 35;
constexpr double peakStart = 125;
constexpr double recoveryStart = 150;
constexpr double recoveryEnd = 235;
constexpr double ischaemiaStart = 95;
constexpr double ischaemiaFull = 123;
constexpr double ischaemiaFades = 160;
constexpr double ischaemiaEnd = 215;

constexpr double restingBreaths = 15;
constexpr double peakBreaths = 33;

/// Rises from 0 to 1 between the first two times and falls back between the last two.
double hill(double time, double start, double top, double fall, double end)
{
    return smoothStep((time - start) / (top - start)) - smoothStep((time - fall) / (end - fall));
}

} // namespace

double heartRate(double time)
{
    return restingRate + (peakRate - restingRate) * exertion(time);
}

double exertion(double time)
{
    return hill(time, exerciseStart, peakStart, recoveryStart, recoveryEnd);
}

double ischaemia(double time)
{
    return hill(time, ischaemiaStart, ischaemiaFull, ischaemiaFades, ischaemiaEnd);
}

double breathingRate(double time)
{
    return restingBreaths + (peakBreaths - restingBreaths) * exertion(time);
}

} // namespace heart
