#pragma once

#include "analysis/delineation/ChannelDelineation.h"

/// Finds the P and T waves on the fourth scale, the flat point before the complex and the end of the complex
/// in the sense of the waves, around a complex that is known.
void delineateWaves(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                    const TDelineationTask& task, TChannelBeat& beat);
