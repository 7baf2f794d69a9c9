#pragma once

#include "analysis/beats/TBeat.h"
#include "analysis/beats/TChannelBeat.h"

#include <vector>

class TSignal;

/// The steps by which the channels' views of a beat become one record.
namespace assembly {

/// Weight of a channel's vote. In a recording of 12 channels or more those over the left ventricle count
/// most, further ones than 12 nothing.
int voteOf(int channel, int channelCount);

/// Share of the usable channels, by weight, whose record has a QRS; 0 if none is usable.
double agreement(const std::vector<TChannelBeat>& records, const std::vector<bool>& usable);

/// Share that a beat needs to be one at all.
double requiredAgreement(int channelCount);

/// A beat at `position`, with fiducial points in seconds and durations; window, rhythm and number are not
/// set.
TBeat beatFrom(const std::vector<TChannelBeat>& records, int position, const TSignal& signal);

/// Middle of the channels' intervals from the beat before, in seconds; 0.0 if no channel knows its R.
double medianRr(const TBeat& beat, const TBeat& previous);

/// Sets the beat's window, from the P wave to the T wave as far as the channels know them.
void setWindow(TBeat& beat, const std::vector<TChannelBeat>& records, const TSignal& signal);

} // namespace assembly
