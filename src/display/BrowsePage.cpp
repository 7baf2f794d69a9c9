#include "display/BrowsePage.h"

#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <cmath>

using velantor::truncated;

double BrowsePage::pixelsPerSecond() const
{
    return layout.pageSeconds > 0.0 ? layout.traceWidth / layout.pageSeconds : 0.0;
}

double BrowsePage::timeAt(double x) const
{
    return layout.traceWidth > 0 ? (x - layout.traceLeft) * layout.pageSeconds / layout.traceWidth + startTime
                                 : startTime;
}

double BrowsePage::xOf(double time) const
{
    return layout.traceLeft + (time - startTime) * pixelsPerSecond();
}

double BrowsePage::timeInBeat(double x) const
{
    if (layout.insetWidth <= 0 || x > layout.traceLeft)
        return 0.0;
    return (x - layout.insetLeft) * layout.beatSeconds / layout.insetWidth;
}

BrowsePage browsePage(const PageScale& scale, double speed, double beatSeconds, double startTime)
{
    BrowsePage page{scale, layOutPage(scale, speed, beatSeconds), startTime};
    if (!isUsablePage(page.layout.pageSeconds))
        page.layout.pageSeconds = 0.0;
    return page;
}

ScrollRange scrollRange(double duration, double pageSeconds, double startTime)
{
    ScrollRange range;
    if (duration > pageSeconds)
        range.maximum = truncated<int>((duration - pageSeconds) * 100.0);
    range.singleStep = truncated<int>(pageSeconds * 10.0);
    range.pageStep = truncated<int>(pageSeconds * 100.0);
    range.value = truncated<int>(startTime * 100.0);
    return range;
}

double clampedStart(double startTime, double duration, double pageSeconds)
{
    const double latest = std::max(duration - pageSeconds, 0.0);
    return std::isfinite(startTime) ? std::clamp(startTime, 0.0, latest) : 0.0;
}

int rulerStep(double labelSeconds)
{
    for (const int step : {1, 5, 10, 30}) {
        if (step >= labelSeconds)
            return step;
    }
    return 60;
}

QString rulerText(int seconds)
{
    return QString::asprintf("%2.2i:%2.2i", seconds / 60 % 60, seconds % 60);
}
