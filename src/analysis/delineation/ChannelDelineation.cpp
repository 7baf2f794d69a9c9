#include "analysis/delineation/ChannelDelineation.h"

#include "analysis/delineation/ComplexDelineation.h"
#include "analysis/delineation/DelineationPlaces.h"
#include "analysis/delineation/WaveDelineation.h"

using places::known;
using places::toIndex;

TChannelBeat delineateChannelBeat(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                                  const TDelineationTask& task)
{
    TChannelBeat beat;
    beat.rPosition = task.r;
    delineateComplex(wavelet, thresholds, task, beat);
    if (task.waves)
        delineateWaves(wavelet, thresholds, task, beat);
    return beat;
}

int waveEndOf(const TChannelBeat& beat, int samplingRate)
{
    const auto after = [&](int position, double seconds) {
        return toIndex(position + seconds * samplingRate);
    };
    if (known(beat.tEnd))
        return beat.tEnd;
    if (known(beat.tPeak))
        return after(beat.tPeak, 0.1);
    if (known(beat.tStart))
        return after(beat.tStart, 0.2);
    if (known(beat.qrsEnd))
        return after(beat.qrsEnd, 0.3);
    if (known(beat.qrsOffset))
        return after(beat.qrsOffset, 0.4);
    return after(known(beat.rPeak) ? beat.rPeak : beat.rPosition, 0.4);
}
