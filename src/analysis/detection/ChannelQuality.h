#pragma once

class TSignal;

/// Whether the samples of a channel around a beat are fit to vote on it.
namespace quality {

/// Whether `n` samples sit at both or either end of their range as those of an overdriven amplifier do: many
/// runs, or long ones, at the extremes of a signal that fills at least half of `bits` bits. `samplingRate` in
/// samples per second.
bool isClipped(const double* samples, int n, int samplingRate, int bits);

/// Counts that a smoothed channel has to span to be more than a flat line.
double flatLimit(int resolutionBits);

/// Span, in counts, of a channel over 3 s around `t` seconds, without what is faster than the waves of an
/// ECG. 0 if the signal has too little there.
double smoothedSpan(TSignal& signal, int channel, double t);

/// Whether the channel may vote on a beat at `t` seconds.
bool isUsable(TSignal& signal, int channel, double t);

} // namespace quality
