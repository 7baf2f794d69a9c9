#include "analysis/beats/BeatDurations.h"

#include "analysis/beats/TBeat.h"

#include <optional>

namespace {

// Distances in seconds from the points that are marked, zero crossings and peaks, to where the waves begin or
// end.
constexpr double onsetMargin = 0.01;
constexpr double offsetMargin = 0.02;
constexpr double halfNarrowQrs = 0.02;
constexpr double pMargin = 0.01;
constexpr double halfTWave = 0.1;

std::optional<double> timeOf(const TBeat& beat, int channel, int slot)
{
    return beat.isFiducialSet(channel, slot) ? std::optional(beat.fiducial(channel, slot)) : std::nullopt;
}

/// A mark moved by `markMargin`, or failing that R moved by `rMargin`.
std::optional<double> border(std::optional<double> mark, double markMargin, std::optional<double> r,
                             double rMargin)
{
    if (mark)
        return *mark + markMargin;
    return r ? std::optional(*r + rMargin) : std::nullopt;
}

void setInterval(TBeat& beat, int channel, int slot, std::optional<double> from, std::optional<double> to)
{
    if (from && to)
        beat.setFiducial(channel, slot, *to - *from);
}

} // namespace

void velantor::setDurations(TBeat& beat, int channel)
{
    const auto p = timeOf(beat, channel, TBeat::pPeak);
    const auto onset = timeOf(beat, channel, TBeat::qrsOnset);
    const auto r = timeOf(beat, channel, TBeat::rPosition);
    const auto offset = timeOf(beat, channel, TBeat::qrsOffset);
    const auto t = timeOf(beat, channel, TBeat::tPeak);
    const auto none = std::optional<double>();

    const auto start = border(onset, -onsetMargin, r, -halfNarrowQrs);
    // With neither border marked there is no QRS to measure.
    if (onset || offset)
        setInterval(beat, channel, TBeat::qrsDuration, start, border(offset, offsetMargin, r, halfNarrowQrs));
    setInterval(beat, channel, TBeat::pqInterval, border(p, pMargin, none, 0.0),
                border(onset, -onsetMargin, none, 0.0));
    setInterval(beat, channel, TBeat::qtInterval, start, border(t, halfTWave, none, 0.0));
}
