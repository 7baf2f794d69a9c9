#include "analysis/delineation/BeatRefinement.h"

#include "analysis/beats/TBeat.h"
#include "analysis/signals/TSignal.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

/// First half of the symmetric low-pass.
constexpr std::array halfTaps = {0.0044187, 0.0050091, 0.0066567, 0.0093325, 0.0129581, 0.0174084,
                                 0.0225163, 0.0280805, 0.0338744, 0.0396563, 0.0451811, 0.0502114,
                                 0.0545289, 0.0579451, 0.0603098, 0.0615189};
constexpr int tapCount = 2 * static_cast<int>(halfTaps.size());
/// Samples by which the smoothed signal is moved back: nearly half the filter.
constexpr int alignment = 15;
/// Samples to either side in which a point may move.
constexpr int reach = 6;

/// The places in reach and their neighbours, and the samples that those take.
constexpr int smoothedCount = 2 * (reach + 1) + 1;
constexpr int sourceCount = smoothedCount + tapCount - 1;

using TSmoothed = std::array<double, smoothedCount>;
using TSource = std::array<double, sourceCount>;

/// Sample indices from `first` on, before `end`.
struct TRange
{
    qint64 first;
    qint64 end;
};

TRange windowOf(const TBeat& beat, const TSignal& signal)
{
    return {signal.indexOf(beat.windowStart()), signal.indexOf(beat.windowStart() + beat.windowLength())};
}

/// The samples around `center`, as many as the smoothing takes; 0 outside of the window.
TSource readAround(TSignal& signal, int channel, int center, TRange window)
{
    const qint64 first = qint64(center) - (reach + 1) - (tapCount - 1 - alignment);
    const qint64 from = std::clamp(window.first, first, first + sourceCount);
    const qint64 to = std::clamp(window.end, from, first + sourceCount);
    TSource source{};
    if (to > from)
        signal.readDoubles(channel, static_cast<int>(from), static_cast<int>(to - from),
                           source.data() + (from - first));
    return source;
}

TSmoothed smooth(const TSource& source)
{
    TSmoothed smoothed{};
    for (std::size_t tap = 0; tap < halfTaps.size(); ++tap)
        for (std::size_t i = 0; i < smoothed.size(); ++i)
            smoothed[i] += halfTaps[tap] * (source[i + tap] + source[i + tapCount - 1 - tap]);
    return smoothed;
}

bool wantsMaximum(int slot)
{
    return slot == TBeat::pPeak || slot == TBeat::rPosition || slot == TBeat::tPeak;
}

/// How far to move, 0 if there is nothing to move to.
int findMove(const TSmoothed& smoothed, int slot)
{
    for (int i = 1; i < smoothedCount - 1; ++i) {
        const double value = smoothed[i];
        const bool maximum = value > smoothed[i - 1] && value > smoothed[i + 1];
        const bool minimum = value < smoothed[i - 1] && value < smoothed[i + 1];
        if (maximum || (minimum && !wantsMaximum(slot)))
            return i - (reach + 1);
    }
    return 0;
}

void refine(TBeat& beat, TSignal& signal, int channel, int slot, TRange window)
{
    const int center = signal.indexOf(beat.fiducial(channel, slot));
    const int move = findMove(smooth(readAround(signal, channel, center, window)), slot);
    // A point that stays keeps its time, which may lie between two samples.
    if (move != 0)
        beat.setFiducial(channel, slot, signal.timeOf(center + move));
}

} // namespace

void velantor::refineBeat(TBeat& beat, TSignal& signal)
{
    const TRange window = windowOf(beat, signal);
    const int channels = std::min(beat.channelCount(), signal.channelCount());
    for (int channel = 0; channel < channels; ++channel)
        for (int slot = TBeat::pPeak; slot <= TBeat::tPeak; ++slot)
            if (beat.isFiducialSet(channel, slot))
                refine(beat, signal, channel, slot, window);
}
