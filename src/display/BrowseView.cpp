#include "display/BrowseView.h"

#include "analysis/signals/TSignal.h"
#include "display/ColorTags.h"

#include <algorithm>

double BrowseView::duration() const
{
    return signal ? signal->duration() : 0.0;
}

int BrowseView::visibleCount() const
{
    return signal ? rows.visibleCount(signal->channelCount()) : 0;
}

BrowsePage BrowseView::page(const PageScale& scale) const
{
    return browsePage(scale, speed, hasInset() ? beatSecondsOf(averageBeat) : 0.0, startTime);
}

int BrowseView::firstSample() const
{
    return std::clamp(signal->indexOf(startTime), 0, signal->sampleCount());
}

int BrowseView::endSample(const BrowsePage& page) const
{
    const qint64 end = qint64(firstSample()) + signal->indexOf(page.layout.pageSeconds);
    return static_cast<int>(std::min<qint64>(end, signal->sampleCount()));
}

TraceRow BrowseView::traceRow(const PageScale& scale, int row, int channel, bool inverted) const
{
    const double height = double(scale.height) / visibleCount();
    const double pixels = scale.pixelsPerCount(*signal, amplitude);
    return {(row + 0.5) * height, inverted ? -pixels : pixels, channelOffset[channel]};
}

std::optional<TraceRow> BrowseView::traceRow(const PageScale& scale, int channel) const
{
    std::optional<TraceRow> found;
    if (!signal)
        return found;
    rows.forEach(signal->channelCount(), [&](int row, int shown, bool inverted) {
        if (shown == channel && !found)
            found = traceRow(scale, row, shown, inverted);
    });
    return found;
}

int BrowseView::channelAt(const PageScale& scale, double y) const
{
    int found = 0;
    const int visible = visibleCount();
    if (visible == 0)
        return found;
    const double height = double(scale.height) / visible;
    rows.forEach(signal->channelCount(), [&](int row, int channel, bool) {
        if (y >= row * height && y < (row + 1) * height)
            found = channel;
    });
    return found;
}

QMap<int, QColor> browseColors()
{
    return {{TraceColor, Qt::black},
            {BackgroundColor, Qt::white},
            {GridColor, QColor(220, 200, 180)},
            {LabelColor, Qt::gray},
            {AverageBeatColor, Qt::darkBlue},
            {ReferenceBeatColor, Qt::darkGreen},
            {SaturationColor, QColor(255, 128, 0, 128)},
            {BeatTickColor, Qt::blue},
            {CursorColor, Qt::gray},
            {FiducialColor, Qt::darkRed},
            {SelectedBeatColor, QColor(128, 128, 128, 128)}};
}

std::array<int, velantor::maxChannels> pageBaselines(const BrowseView& view, const BrowsePage& page)
{
    std::array<int, velantor::maxChannels> means{};
    if (!view.signal)
        return means;
    const int first = view.firstSample();
    const int count = view.endSample(page) - first;
    view.rows.forEach(view.signal->channelCount(), [&](int, int channel, bool) {
        means[channel] = view.signal->channel(channel)->mean(first, count);
    });
    return means;
}
