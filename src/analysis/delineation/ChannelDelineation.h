#pragma once

#include "analysis/beats/TChannelBeat.h"
#include "analysis/delineation/TWaveletSpan.h"

/// What is known of a beat before its waves are sought.
struct TDelineationTask
{
    int samplingRate = 0; ///< of the analysis signal
    int r = 0;            ///< position of the complex
    int nextR = 0;        ///< position of the next one
    double meanRR = 0.0;  ///< of the channel, s
    /// Where the waves of the channel's beat before end, or `TChannelBeat::absent`.
    int previousWaveEnd = TChannelBeat::absent;
    /// P and T waves and the points that lie between them, too.
    bool waves = true;
};

/// Delineates one beat of one channel: the complex on the second scale of the quadratic-spline wavelet, the
/// slower waves on the fourth, each from the pair of extremes of opposite sign that a wave leaves (after C.
/// Li, C. Zheng and C. Tai, IEEE Trans Biomed Eng 42, 1995, 21-28). The span should reach from about 0.6 s
/// before `r` to `nextR`.
TChannelBeat delineateChannelBeat(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                                  const TDelineationTask& task);

/// Where the waves of a beat end, for the beat that follows on the channel.
int waveEndOf(const TChannelBeat& beat, int samplingRate);
