#pragma once

#include <vector>

/// Symmetric low-pass tables that several parts of the analysis share. They stand for the life of the
/// program.
namespace velantor {

/// 25 taps of sum 1 for signals at 250 Hz.
const std::vector<double>& smoothing25();

/// 51 taps of sum 1 for signals at 250 Hz.
const std::vector<double>& smoothing51();

/// 29 taps of sum 1 that let a signal at 1000 Hz be halved to 500 Hz.
const std::vector<double>& monitorDecimation();

/// What the averaged beat is smoothed with: 0.70 to 0.79 at 40 Hz, sum 1. 12 taps at 500 samples per second,
/// 62 at 250, 22 at any other rate.
const std::vector<double>& averagingLowPass(int samplingRate);

} // namespace velantor
