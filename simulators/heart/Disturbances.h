#pragma once

#include "simulators/heart/LeadField.h"

namespace heart {

class TBreathing;

/// What adds to the potentials under the electrodes at a frame: the baseline that wanders with the breath and
/// by itself, mains hum, muscles. Periodic with the recording.
TPotentials disturbancesAt(int frame, const TBreathing& breathing);

} // namespace heart
