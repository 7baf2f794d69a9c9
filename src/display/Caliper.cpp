#include "display/Caliper.h"

#include "analysis/beats/TAverageBeat.h"
#include "analysis/signals/TSignal.h"
#include "display/BrowseView.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double mmPerMv = 10.0;

/// The sample under the pointer; nothing where there is none.
std::optional<int> sampleInBeat(const BrowseView& view, const BrowsePage& page, double x)
{
    if (!view.hasInset() || !view.averageBeat->signal())
        return std::nullopt;
    const int index = view.averageBeat->signal()->indexOf(page.timeInBeat(x));
    const bool inside = index > 0 && index < view.averageBeat->sampleCount();
    return inside ? std::optional<int>(index) : std::nullopt;
}

std::optional<int> sampleInTrace(const BrowseView& view, const BrowsePage& page, double x)
{
    const double time = page.timeAt(x);
    const int index = view.signal->indexOf(time);
    const bool inside = time > view.startTime && index < view.signal->sampleCount();
    return inside ? std::optional<int>(index) : std::nullopt;
}

double valueAt(const BrowseView& view, int index)
{
    const Caliper& caliper = view.caliper;
    if (caliper.inBeat)
        return view.averageBeat->complex(caliper.channel)[index];
    return double(view.signal->sample(caliper.channel, index)) - view.channelOffset[caliper.channel];
}

/// No further out of the picture than painters can reckon with.
double heightAt(const TraceRow& row, double counts)
{
    constexpr double outside = 30000.0;
    return std::clamp(row.centre - counts * row.pixelsPerCount, -outside, outside);
}

double xAt(const BrowseView& view, const BrowsePage& page, int index)
{
    if (!view.caliper.inBeat)
        return page.xOf(view.signal->timeOf(index));
    return page.layout.insetLeft + double(index) * page.layout.insetWidth / view.averageBeat->sampleCount();
}

bool isMeasurable(const BrowseView& view, const BrowsePage& page)
{
    const Caliper& caliper = view.caliper;
    if (!caliper.shown || !view.signal || page.layout.pageSeconds <= 0.0)
        return false;
    if (!caliper.inBeat)
        return true;
    // The beat may have been exchanged for a shorter one since.
    const int length = view.hasInset() && page.layout.insetWidth > 0 ? view.averageBeat->sampleCount() : 0;
    return caliper.from < length && caliper.to < length;
}

} // namespace

Caliper movedCaliper(const BrowseView& view, const BrowsePage& page, const CaliperPointer& pointer)
{
    Caliper caliper = view.caliper;
    if (!pointer.anyButton)
        caliper.inBeat = page.isInInset(pointer.x);
    std::optional<int> index;
    if (view.signal)
        index = caliper.inBeat ? sampleInBeat(view, page, pointer.x) : sampleInTrace(view, page, pointer.x);
    if (!index) {
        caliper.shown = false;
    } else if (caliper.shown && caliper.dragging) {
        if (pointer.leftButton)
            caliper.to = *index;
        caliper.dragging = pointer.leftButton;
    } else {
        const int channel = view.channelAt(page.scale, pointer.y);
        caliper = {caliper.inBeat, true, pointer.leftButton, channel, *index, *index};
    }
    return caliper;
}

QString CaliperFigure::timeText() const
{
    return QString::asprintf("%.0f %s", seconds * 1000.0, "ms");
}

QString CaliperFigure::amplitudeText() const
{
    return QString::asprintf("%.1f %s (%.0f %s)", millivolts, "mv", millivolts * mmPerMv, "mm");
}

std::optional<CaliperFigure> caliperFigure(const BrowseView& view, const BrowsePage& page)
{
    const Caliper& caliper = view.caliper;
    const auto row = view.traceRow(page.scale, caliper.channel);
    if (!row || !isMeasurable(view, page))
        return std::nullopt;
    const double first = valueAt(view, caliper.from);
    const double second = valueAt(view, caliper.to);
    const TSignal& clock = caliper.inBeat ? *view.averageBeat->signal() : *view.signal;
    CaliperFigure figure;
    figure.from = {xAt(view, page, caliper.from), heightAt(*row, first)};
    figure.to = {xAt(view, page, caliper.to), heightAt(*row, second)};
    figure.seconds = std::fabs(double(caliper.to) - caliper.from) / clock.samplingRate();
    figure.millivolts = std::fabs(second - first) * view.signal->countValue();
    return figure;
}
