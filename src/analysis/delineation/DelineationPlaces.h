#pragma once

#include "analysis/beats/TChannelBeat.h"
#include "analysis/signals/Truncation.h"

// Sample positions of a channel's beat as its delineation counts them.
namespace places {

inline constexpr int absent = TChannelBeat::absent;

inline bool known(int position)
{
    return TChannelBeat::known(position);
}

/// Positions are computed as doubles and cut off.
inline int toIndex(double position)
{
    return velantor::truncated<int>(position);
}

} // namespace places
