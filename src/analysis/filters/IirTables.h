#pragma once

#include "analysis/filters/TIirBlockFilter.h"

/// The recursive filters of the off-line chain, by the rate in samples per second. Null: there is none.
namespace velantor {

/// A filter and the margin in samples in which it settles.
struct TIirTable
{
    TIirCoefficients coefficients;
    int margin;
};

/// Half-power point of a single pass at 0.25 Hz; only at 500.
const TIirTable* highPassRecursion(int samplingRate);

/// Half-power points of a single pass at 48 and 52 Hz, and at 98 and 102 Hz: the double of the mains is
/// stopped as well. Not a zero: gain 0.017 (500) or 0.019 (1000) at 50 Hz, 0.004 or 0.009 at 100 Hz. At 500
/// and 1000.
const TIirTable* notchRecursion(int samplingRate);

/// High-pass against a wandering baseline, half-power point of a single pass at 500 about 0.75 Hz; at 500 and
/// 1000.
const TIirTable* baselineRecursion(int samplingRate);

} // namespace velantor
