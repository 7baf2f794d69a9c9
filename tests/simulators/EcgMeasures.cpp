#include "simulators/EcgMeasures.h"

#include "simulators/heart/Course.h"

#include <algorithm>
#include <cmath>

namespace measures {
namespace {

using heart::framesPerSecond;

constexpr double rThreshold = 0.5;      // mV, lead II
constexpr double qrsSlope = 0.005;      // mV in a frame, any lead; steeper than P and T
constexpr double pThreshold = 0.015;    // mV
constexpr int margin = framesPerSecond; // around a complex
// Ends of a narrow QRS around its peak in lead II.
constexpr int narrowOnset = 21;
constexpr int narrowEnd = 24;

int frames(double seconds)
{
    return int(std::lround(seconds * framesPerSecond));
}

/// Greatest change from a frame to the next among the leads.
double slopeAt(const TEcg& ecg, int frame)
{
    double steepest = 0;
    for (int lead = 0; lead < heart::aVR; ++lead)
        steepest = std::max(steepest, std::abs(ecg[frame + 1][lead] - ecg[frame][lead]));
    for (int lead = heart::V1; lead <= heart::V6; ++lead)
        steepest = std::max(steepest, std::abs(ecg[frame + 1][lead] - ecg[frame][lead]));
    return steepest;
}

/// The last steep frame from `from` on in the direction of `step`, looking over flat tops of up to 10 ms.
int steepEnd(const TEcg& ecg, int from, int step)
{
    int end = from;
    for (int frame = from; std::abs(frame - end) <= frames(0.01); frame += step)
        if (slopeAt(ecg, frame) > qrsSlope * (step < 0 ? 1 : 3))
            end = frame;
    return end;
}

/// The value of greatest size in [from, to).
double extreme(const TEcg& ecg, int from, int to, int lead, double base)
{
    double found = 0;
    for (int frame = from; frame < to; ++frame)
        if (std::abs(ecg[frame][lead] - base) > std::abs(found))
            found = ecg[frame][lead] - base;
    return found;
}

bool isPeak(const TEcg& ecg, int frame)
{
    const double value = ecg[frame][heart::II];
    if (value < rThreshold)
        return false;
    for (int other = frame - frames(0.12); other <= frame + frames(0.12); ++other)
        if (ecg[other][heart::II] > value)
            return false;
    return value > ecg[frame - 1][heart::II];
}

} // namespace

double TComplex::qrsDuration() const
{
    return double(qrsEnd - qrsOnset) / framesPerSecond;
}

std::vector<TComplex> complexesOf(const TEcg& ecg)
{
    std::vector<TComplex> found;
    for (int frame = margin; frame + margin < int(ecg.size()); ++frame) {
        if (!isPeak(ecg, frame))
            continue;
        const double rr = found.empty() ? 0 : double(frame - found.back().r) / framesPerSecond;
        found.push_back({frame, steepEnd(ecg, frame, -1), steepEnd(ecg, frame, 1) + 1, rr});
    }
    return found;
}

double baseline(const TEcg& ecg, const TComplex& complex, int lead)
{
    return ecg[complex.qrsOnset - frames(0.008)][lead];
}

double prInterval(const TEcg& ecg, const TComplex& complex)
{
    const double base = baseline(ecg, complex, heart::II);
    int onset = -1;
    for (int frame = complex.qrsOnset - 5; frame > complex.qrsOnset - frames(0.2); --frame) {
        if (std::abs(ecg[frame][heart::II] - base) > pThreshold)
            onset = frame;
        else if (onset >= 0)
            break;
    }
    return onset < 0 ? -1 : double(complex.qrsOnset - onset) / framesPerSecond;
}

double qtInterval(const TEcg& ecg, const TComplex& complex)
{
    const int from = complex.r + frames(0.1);
    int peak = from;
    for (int frame = from; frame < complex.r + frames(0.6 * std::sqrt(std::min(complex.rr, 1.0))); ++frame)
        peak = ecg[frame][heart::II] > ecg[peak][heart::II] ? frame : peak;
    int steepest = peak;
    double slope = 0;
    for (int frame = peak; frame < peak + frames(0.06); ++frame) {
        const double fall = ecg[frame][heart::II] - ecg[frame + 1][heart::II];
        if (fall > slope) {
            slope = fall;
            steepest = frame;
        }
    }
    const double height = ecg[steepest][heart::II] - baseline(ecg, complex, heart::II);
    return (steepest + height / slope - complex.qrsOnset) / framesPerSecond;
}

double rAmplitude(const TEcg& ecg, const TComplex& complex, int lead)
{
    double highest = -1000;
    for (int frame = complex.qrsOnset; frame <= complex.qrsEnd; ++frame)
        highest = std::max(highest, ecg[frame][lead]);
    return highest - baseline(ecg, complex, lead);
}

double sAmplitude(const TEcg& ecg, const TComplex& complex, int lead)
{
    double lowest = 1000;
    for (int frame = complex.qrsOnset; frame <= complex.qrsEnd; ++frame)
        lowest = std::min(lowest, ecg[frame][lead]);
    return lowest - baseline(ecg, complex, lead);
}

double tAmplitude(const TEcg& ecg, const TComplex& complex, int lead)
{
    const int from = complex.qrsEnd + frames(0.06);
    const int to = complex.qrsOnset + frames(0.42 * std::sqrt(std::min(complex.rr, 1.0)));
    return extreme(ecg, from, to, lead, baseline(ecg, complex, lead));
}

double pAmplitude(const TEcg& ecg, const TComplex& complex, int lead)
{
    return extreme(ecg, complex.qrsOnset - frames(0.15), complex.qrsOnset - frames(0.04), lead,
                   baseline(ecg, complex, lead));
}

double stLevel(const TEcg& ecg, const TComplex& complex, int lead, double behindJ)
{
    const int base = complex.r - narrowOnset - frames(0.012);
    return ecg[complex.r + narrowEnd + frames(behindJ)][lead] - ecg[base][lead];
}

double qrsAxis(const TEcg& ecg, const TComplex& complex)
{
    const double i = rAmplitude(ecg, complex, heart::I) + sAmplitude(ecg, complex, heart::I);
    const double avf = rAmplitude(ecg, complex, heart::aVF) + sAmplitude(ecg, complex, heart::aVF);
    // An augmented lead shows its direction smaller than a bipolar one by half the square root of 3.
    return std::atan2(avf * 2 / std::sqrt(3.0), i) * 180 / 3.141592653589793;
}

} // namespace measures
