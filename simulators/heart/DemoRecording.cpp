#include "simulators/heart/DemoRecording.h"

#include "simulators/heart/Course.h"
#include "simulators/heart/Disturbances.h"
#include "simulators/heart/ExactMath.h"
#include "simulators/heart/TBreathing.h"
#include "simulators/heart/Waves.h"

#include <algorithm>

namespace heart {
namespace {

// Seconds around the middle of the QRS that hold all waves of a beat.
constexpr double beatStart = -0.5;
constexpr double beatEnd = 1.0;

/// Deep breaths draw the heart away from the chest wall and turn it a little upright.
constexpr double breathAmplitude = 0.035;
constexpr double breathTurn = 0.04; // radians

std::vector<TVector> dipoleOf(const std::vector<TPlannedBeat>& beats)
{
    std::vector<TVector> dipole(recordingFrames);
    for (const TPlannedBeat& beat : beats) {
        const std::vector<TWave> waves = wavesOf(beat);
        const int first = nearestInteger((beat.time + beatStart) * framesPerSecond);
        const int last = nearestInteger((beat.time + beatEnd) * framesPerSecond);
        for (int frame = first; frame < last; ++frame) {
            TVector& sum = dipole[(frame + recordingFrames) % recordingFrames];
            for (const TWave& wave : waves)
                sum = sum + wave.shape(double(frame) / framesPerSecond - beat.time) * wave.peak;
        }
    }
    return dipole;
}

TVector movedByBreath(const TVector& dipole, double fill)
{
    const double turn = breathTurn * fill;
    const TVector turned{dipole.x - turn * dipole.y, dipole.y + turn * dipole.x, dipole.z};
    return (1 - breathAmplitude * fill) * turned;
}

} // namespace

std::vector<TLeadVoltages> demoLeads(bool disturbed)
{
    const TBreathing breathing;
    const std::vector<TVector> dipole = dipoleOf(planBeats(breathing));
    std::vector<TLeadVoltages> leads(recordingFrames);
    for (int frame = 0; frame < recordingFrames; ++frame) {
        const double fill = breathing.fill(double(frame) / framesPerSecond);
        TPotentials potentials = potentialsOf(movedByBreath(dipole[frame], fill));
        if (disturbed) {
            const TPotentials more = disturbancesAt(frame, breathing);
            std::transform(more.begin(), more.end(), potentials.begin(), potentials.begin(), std::plus<>());
        }
        leads[frame] = leadsOf(potentials);
    }
    return leads;
}

TFrame digitized(const TLeadVoltages& leads)
{
    TFrame counts;
    for (int lead = 0; lead < leadCount; ++lead)
        counts[lead] = std::int16_t(nearestInteger(leads[lead] / millivoltsPerCount));
    counts[III] = std::int16_t(counts[II] - counts[I]);
    counts[aVR] = std::int16_t(-(counts[I] + counts[II]) / 2);
    counts[aVL] = std::int16_t((counts[I] - counts[III]) / 2);
    counts[aVF] = std::int16_t((counts[II] + counts[III]) / 2);
    return counts;
}

std::vector<TFrame> demoRecording()
{
    const std::vector<TLeadVoltages> leads = demoLeads(true);
    std::vector<TFrame> frames(leads.size());
    std::transform(leads.begin(), leads.end(), frames.begin(), digitized);
    return frames;
}

std::string fileBytes(const std::vector<TFrame>& frames)
{
    std::string bytes;
    bytes.reserve(frames.size() * leadCount * 2);
    for (const TFrame& frame : frames) {
        for (const std::int16_t sample : frame) {
            bytes.push_back(char(std::uint16_t(sample) & 0xFF));
            bytes.push_back(char(std::uint16_t(sample) >> 8));
        }
    }
    return bytes;
}

} // namespace heart
