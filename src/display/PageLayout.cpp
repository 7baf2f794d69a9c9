#include "display/PageLayout.h"

#include "analysis/beats/TAverageBeat.h"
#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <cmath>

using velantor::truncated;

namespace {

constexpr double gapMm = 5.0;
/// Wider than any screen, and painters can still reckon with it.
constexpr double widestInset = 30000.0;

int cursorColumnOf(const SweepPosition& sweep, int sampleCount, int traceWidth)
{
    if (sweep.pageSamples <= 0)
        return 0;
    const qint64 onPage = qint64(sampleCount) - 1 - sweep.pageStart;
    const qint64 column = onPage * traceWidth / sweep.pageSamples;
    return static_cast<int>(std::clamp<qint64>(column, 0, traceWidth - 1));
}

} // namespace

PageLayout layOutPage(const PageScale& scale, double speed, double beatSeconds)
{
    PageLayout layout;
    const double pageSeconds = scale.pageSeconds(speed);
    if (!isUsablePage(pageSeconds))
        return layout;
    layout.beatSeconds = beatSeconds;
    layout.insetLeft = truncated<int>(scale.pixelsPerCm * 0.25);
    layout.insetWidth = truncated<int>(std::min(scale.width * beatSeconds / pageSeconds, widestInset));
    if (layout.insetWidth != 0)
        layout.traceLeft = layout.insetWidth + truncated<int>(scale.pixelsPerCm * 0.5);
    layout.traceWidth = scale.width - layout.traceLeft;
    layout.pageSeconds = pageSeconds;
    if (beatSeconds > 0.0)
        layout.pageSeconds -= beatSeconds + gapMm / speed;
    return layout;
}

double beatSecondsOf(TAverageBeat* beat)
{
    if (!beat || !beat->signal())
        return 0.0;
    return double(beat->sampleCount()) / beat->signal()->samplingRate();
}

SweepPosition sweepPosition(const TSignal& signal, const PageLayout& layout)
{
    SweepPosition sweep;
    sweep.page = truncated<int>(std::floor(signal.duration() / layout.pageSeconds));
    sweep.pageStart = signal.indexOf(sweep.page * layout.pageSeconds);
    sweep.pageSamples = signal.indexOf(layout.pageSeconds);
    sweep.firstPage = layout.pageSeconds > signal.duration();
    sweep.cursorColumn = cursorColumnOf(sweep, signal.sampleCount(), layout.traceWidth);
    return sweep;
}
