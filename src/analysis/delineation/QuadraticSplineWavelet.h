#pragma once

#include "analysis/signals/TDoubleVector.h"

namespace velantor {

constexpr int waveletScales = 5;

/// The quadratic-spline wavelet at scale 2^`scale`, 1 to `waveletScales`, as the taps of a convolution: 2, 6,
/// 14, 30 and 62 of them, antisymmetric. The convolution is a smoothed slope with its sign turned: positive
/// where the signal falls. Empty for another scale.
/// Source: Mallat and Zhong, "Characterization of signals from multiscale edges", IEEE PAMI 14 (1992).
TDoubleVector waveletFilter(int scale);

} // namespace velantor
