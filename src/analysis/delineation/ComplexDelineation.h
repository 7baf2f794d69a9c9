#pragma once

#include "analysis/delineation/ChannelDelineation.h"

/// Finds the QRS complex of the beat on the second scale and fills its points in `beat`, whose `rPosition` is
/// set. Without a pair of extremes nothing is filled.
void delineateComplex(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                      const TDelineationTask& task, TChannelBeat& beat);
