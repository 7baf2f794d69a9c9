#include "simulators/heart/Disturbances.h"

#include "simulators/heart/Course.h"
#include "simulators/heart/ExactMath.h"
#include "simulators/heart/TBreathing.h"

#include <cstdint>

namespace heart {
namespace {

/// What an electrode picks up, mV. The limbs have the big muscles, the chest moves with the breath.
struct TPickUp
{
    double breath; ///< at rest; two and a half times that at peak exercise
    double mains;  ///< amplitude
    double muscle; ///< standard deviation at peak exercise
};

constexpr TPickUp pickUps[electrodeCount] = {
    {-0.020, 0.006, 0.020}, {0.005, 0.003, 0.018}, {0.030, 0.008, 0.016}, {0.015, 0.004, 0.010},
    {0.020, 0.005, 0.010},  {0.025, 0.003, 0.011}, {0.035, 0.004, 0.012}, {0.030, 0.006, 0.013},
    {0.040, 0.005, 0.014},  {-0.015, 0.004, 0.010}};

constexpr double mainsFrequency = 50;
constexpr double restingMuscle = 0.25; // share of the noise at peak exercise

/// Slow waves of the electrodes' own, in waves per recording; mV at rest.
constexpr int driftWaves[] = {5, 11, 19};
constexpr double driftAmplitude = 0.012;

/// A well-mixed 64-bit number for each argument (the finalizer of splitmix64 by S. Vigna).
std::uint64_t mixed(std::uint64_t value)
{
    value += 0x9E3779B97F4A7C15u;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
    return value ^ (value >> 31);
}

/// In [0, 1).
double uniform(std::uint64_t key)
{
    return double(mixed(key) >> 11) / 9007199254740992.0;
}

/// Nearly normal, with a variance of 1: the sum of four 16-bit numbers.
double noise(int electrode, int frame)
{
    const int inside = (frame + recordingFrames) % recordingFrames;
    std::uint64_t bits = mixed(std::uint64_t(electrode + 1) << 32 | std::uint64_t(inside));
    double sum = -2;
    for (int i = 0; i < 4; ++i, bits >>= 16)
        sum += double(bits & 0xFFFF) / 65535;
    return sum * 1.7320508075688772;
}

/// Noise of the surface electromyogram's band, about 30 to 200 Hz, with a variance of 1.
double muscleNoise(int electrode, int frame)
{
    return (noise(electrode, frame) + noise(electrode, frame - 1) - noise(electrode, frame - 2) -
            noise(electrode, frame - 3)) /
           2;
}

double drift(int electrode, double time)
{
    double sum = 0;
    for (const int waves : driftWaves) {
        const double phase = uniform(std::uint64_t(waves) << 8 | std::uint64_t(electrode));
        sum += sineOfTurns(waves * time / recordingSeconds + phase);
    }
    return driftAmplitude * sum;
}

} // namespace

TPotentials disturbancesAt(int frame, const TBreathing& breathing)
{
    const double time = double(frame) / framesPerSecond;
    const double effort = exertion(time);
    const double breath = breathing.fill(time) * (1 + 1.5 * effort);
    TPotentials sum;
    for (int electrode = 0; electrode < electrodeCount; ++electrode) {
        const TPickUp& pickUp = pickUps[electrode];
        const double mains = sineOfTurns(mainsFrequency * time + 0.05 * electrode);
        const double muscle = restingMuscle + (1 - restingMuscle) * effort;
        sum[electrode] = pickUp.breath * breath + pickUp.mains * mains +
                         (1 + effort) * drift(electrode, time) +
                         pickUp.muscle * muscle * muscleNoise(electrode, frame);
    }
    return sum;
}

} // namespace heart
