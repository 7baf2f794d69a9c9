#pragma once

class TBeat;
class TSignal;

namespace velantor {

/// Moves the P peak, QRS onset, R, QRS offset and T peak of each channel, as far as they are set, to the
/// first turn of the smoothed signal within 6 samples: peaks to a local maximum, borders to a local maximum
/// or minimum. What finds none stays. The signal is read at its own rate within the beat's window and counts
/// as 0 outside of it. Durations and `rr` stay as they are.
void refineBeat(TBeat& beat, TSignal& signal);

} // namespace velantor
