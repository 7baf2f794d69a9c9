#pragma once

#include "simulators/heart/BeatPlan.h"
#include "simulators/heart/TVector.h"

#include <vector>

namespace heart {

/// One wave of a beat: the dipole goes to `peak` and back along two halves of a bell, and may rest between
/// them.
struct TWave
{
    double start;    ///< seconds from the middle of the QRS, where the peak is reached
    double rise;     ///< standard deviation of the half before, seconds
    double fall;     ///< standard deviation of the half behind, seconds
    TVector peak;    ///< mV
    double rest = 0; ///< seconds at the peak

    /// Share of the peak, 0 to 1, at a time from the middle of the QRS.
    double shape(double time) const;
};

/// The waves of a beat, which depend on the heart rate and the ischaemia at its time.
std::vector<TWave> wavesOf(const TPlannedBeat& beat);

} // namespace heart
