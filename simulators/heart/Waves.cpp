#include "simulators/heart/Waves.h"

#include "simulators/heart/Course.h"
#include "simulators/heart/ExactMath.h"

#include <cmath>

namespace heart {
namespace {

// Seconds from the middle of the QRS.
constexpr double qrsOnset = -0.042;
constexpr double qrsEnd = 0.048;

/// Bazett's QTc of a healthy adult, seconds.
constexpr double correctedQt = 0.4;

/// Where the steepest tangent of a bell meets the baseline, in standard deviations from its peak: the usual
/// end of the T wave.
constexpr double tangentEnd = 2;

double tEnd(double time)
{
    return qrsOnset + correctedQt * std::sqrt(60 / heartRate(time));
}

void addP(std::vector<TWave>& waves, double effort, bool fromSinus)
{
    // The right atrium, to the front, comes before the left one. A focus low in the atria drives them
    // upwards.
    const double pr = 0.170 - 0.02 * effort;
    const double onset = qrsOnset - pr;
    const double gain = 1 + 0.20 * effort;
    const double down = fromSinus ? 1 : -0.9;
    waves.push_back({onset + 0.041, 0.017, 0.017, gain * TVector{0.055, 0.070 * down, -0.050}});
    waves.push_back({onset + 0.067, 0.018, 0.017, gain * TVector{0.085, 0.050 * down, 0.035}});
}

void addQrs(std::vector<TWave>& waves, double effort)
{
    // Septum, apex with the front wall, left free wall, basis.
    const double gain = 1 - 0.06 * effort;
    waves.push_back({-0.022, 0.0075, 0.007, TVector{-0.15, -0.06, -0.28}});
    waves.push_back({-0.009, 0.008, 0.008, gain * TVector{0.59, 0.40, -0.34}});
    waves.push_back({0.003, 0.009, 0.009, gain * TVector{1.08, 0.69, 0.70}});
    waves.push_back({0.023, 0.009, 0.0095, TVector{-0.13, -0.10, 0.74}});
}

void addRepolarisation(std::vector<TWave>& waves, double time)
{
    const double effort = exertion(time);
    const double fall = 0.036 - 0.015 * effort;
    const double gain = 1 - 0.30 * effort;
    const double end = tEnd(time);
    waves.push_back(
        {end - tangentEnd * fall, 0.055 - 0.030 * effort, fall, gain * TVector{0.37, 0.17, -0.22}});
    waves.push_back({end + 0.065, 0.028, 0.032, (1 - effort) * TVector{0.020, 0.015, -0.020}});
    const TVector strain{-0.138, -0.080, -0.022};
    waves.push_back({qrsEnd - 0.005, 0.010, 0.028, ischaemia(time) * strain, 0.050});
}

void addVentricularBeat(std::vector<TWave>& waves, double time)
{
    // From the outflow tract of the right ventricle: downwards, to the left and to the back, from cell to
    // cell.
    waves.push_back({-0.032, 0.016, 0.018, TVector{0.10, 0.42, -0.12}});
    waves.push_back({0.002, 0.022, 0.024, TVector{0.34, 1.10, 0.62}});
    waves.push_back({0.042, 0.018, 0.017, TVector{0.16, 0.30, 0.40}});
    const double fall = 0.042 - 0.016 * exertion(time);
    const double peak = tEnd(time) + 0.035 - tangentEnd * fall;
    waves.push_back({peak, 0.065 - 0.025 * exertion(time), fall, TVector{-0.20, -0.46, -0.38}});
}

} // namespace

double TWave::shape(double time) const
{
    if (time < start)
        return gaussian((time - start) / rise);
    return time <= start + rest ? 1 : gaussian((time - start - rest) / fall);
}

std::vector<TWave> wavesOf(const TPlannedBeat& beat)
{
    std::vector<TWave> waves;
    if (beat.kind == TBeatKind::Ventricular) {
        addVentricularBeat(waves, beat.time);
        return waves;
    }
    addP(waves, exertion(beat.time), beat.kind == TBeatKind::Sinus);
    addQrs(waves, exertion(beat.time));
    addRepolarisation(waves, beat.time);
    return waves;
}

} // namespace heart
