#pragma once

class TBeat;

namespace velantor {

/// Sets the QRS duration, the P-to-QRS interval and the QT interval of a channel, in seconds, from its
/// fiducial points, as far as those that they need are set. A duration that cannot be told stays as it is.
void setDurations(TBeat& beat, int channel);

} // namespace velantor
