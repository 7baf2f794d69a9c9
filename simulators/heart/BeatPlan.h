#pragma once

#include <vector>

namespace heart {

class TBreathing;

enum class TBeatKind
{
    Sinus,
    Supraventricular, ///< premature, from the atria: another P, the usual QRS
    Ventricular       ///< premature, from the right ventricle: no P, wide QRS
};

struct TPlannedBeat
{
    double time = 0; ///< seconds, of the middle of the QRS
    TBeatKind kind = TBeatKind::Sinus;
};

/// All beats of the recording in order of time; the interval from the last to the first is like any other.
std::vector<TPlannedBeat> planBeats(const TBreathing& breathing);

} // namespace heart
