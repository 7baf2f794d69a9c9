#include "simulators/heart/TBreathing.h"

#include "simulators/heart/Course.h"
#include "simulators/heart/ExactMath.h"

namespace heart {

TBreathing::TBreathing() : m_turns(recordingFrames)
{
    double turns = 0;
    for (int frame = 0; frame < recordingFrames; ++frame) {
        m_turns[frame] = turns;
        turns += breathingRate(double(frame) / framesPerSecond) / 60 / framesPerSecond;
    }
    // The last breath must be complete where the recording begins anew.
    const double scale = nearestInteger(turns) / turns;
    for (double& value : m_turns)
        value *= scale;
}

double TBreathing::fill(double time) const
{
    const int frame = nearestInteger(time * framesPerSecond) % recordingFrames;
    return sineOfTurns(m_turns[frame < 0 ? frame + recordingFrames : frame]);
}

} // namespace heart
