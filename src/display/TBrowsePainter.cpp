#include "display/TBrowsePainter.h"

#include "analysis/beats/TAverageBeat.h"
#include "analysis/signals/TSignal.h"
#include "display/BeatInset.h"
#include "display/BeatTicks.h"
#include "display/BrowseView.h"
#include "display/CaliperPainter.h"
#include "display/ColorTags.h"
#include "display/TSaturationSource.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double saturationWidth = 2.0;

QPen penOf(const BrowsePage& page, const BrowseView& view, int tag)
{
    return QPen(view.colors.value(tag), page.scale.penWidth(1.0));
}

/// Heights mean something.
bool isMeasurable(const BrowsePage& page, const BrowseView& view)
{
    return std::isfinite(page.scale.pixelsPerCount(*view.signal, view.amplitude));
}

void paintSeparator(QPainter& painter, const BrowsePage& page, const BrowseView& view)
{
    if (page.layout.traceLeft == 0)
        return;
    painter.setPen(penOf(page, view, TraceColor));
    painter.drawLine(page.layout.traceLeft, 0, page.layout.traceLeft, page.scale.height - 1);
}

void paintInset(QPainter& painter, const BrowsePage& page, const BrowseView& view)
{
    if (!view.hasInset() || page.layout.insetWidth <= 0)
        return;
    TAverageBeat& beat = *view.averageBeat;
    const bool valid = beat.count() > 0;
    painter.setRenderHint(QPainter::Antialiasing, valid);
    view.rows.forEach(view.signal->channelCount(), [&](int row, int channel, bool inverted) {
        const TraceRow place = view.traceRow(page.scale, row, channel, inverted);
        const InsetRow inset{page.layout.insetLeft, page.layout.insetWidth, place.centre,
                             place.pixelsPerCount, page.scale.penWidth(1.0)};
        if (valid && beat.hasReference()) {
            painter.setPen(penOf(page, view, ReferenceBeatColor));
            drawBeatThroughPoints(painter, inset, beat.reference(channel));
        }
        if (!valid) {
            drawFlatBeat(painter, inset, view.colors.value(AverageBeatColor));
            return;
        }
        painter.setPen(penOf(page, view, AverageBeatColor));
        drawBeatThroughPoints(painter, inset, beat.complex(channel));
    });
    painter.setRenderHint(QPainter::Antialiasing, false);
}

} // namespace

void TBrowsePainter::paint(QPainter& painter, const BrowsePage& page, const BrowseView& view)
{
    const bool anyLead = view.visibleCount() > 0;
    if (anyLead)
        m_labels.paint(painter, page.scale, *view.signal, view.rows, view.colors.value(LabelColor));
    paintSelectedBeat(painter, page, view);
    const bool measurable = anyLead && isMeasurable(page, view);
    if (anyLead)
        paintSeparator(painter, page, view);
    if (measurable) {
        paintTraces(painter, page, view);
        paintInset(painter, page, view);
    }
    if (view.signal)
        paintTimeRuler(painter, page, view);
    paintBeatTicks(painter, page, view);
    if (measurable && view.mouseMode == CaliperMode)
        paintCaliper(painter, page, view);
}

void TBrowsePainter::paintTraces(QPainter& painter, const BrowsePage& page, const BrowseView& view)
{
    const int pageSamples = view.signal->indexOf(page.layout.pageSeconds);
    if (!page.layout.hasTrace() || pageSamples <= 0)
        return;
    if (pageSamples >= page.scale.width)
        paintByColumns(painter, page, view, pageSamples);
    else
        paintPerSample(painter, page, view, pageSamples);
}

void TBrowsePainter::paintByColumns(QPainter& painter, const BrowsePage& page, const BrowseView& view,
                                    int pageSamples)
{
    const int width = page.layout.traceWidth;
    const int first = view.firstSample();
    const int end = view.endSample(page);
    // What lies behind the recording reads 0: drawn, it would look like a heart that stands still.
    const int columns = static_cast<int>(qint64(end - first) * width / pageSamples);
    const TraceStyle style{view.colors.value(TraceColor), view.colors.value(SaturationColor),
                           page.layout.traceLeft, page.scale.penWidth(1.0),
                           page.scale.penWidth(saturationWidth)};
    view.rows.forEach(view.signal->channelCount(), [&](int row, int channel, bool inverted) {
        m_columns.reduce(*view.signal->channel(channel), first, pageSamples, width, false);
        if (view.saturationSource)
            m_columns.markSaturation(*view.saturationSource, channel, first, first, end, 0, columns);
        m_columns.draw(painter, style, view.traceRow(page.scale, row, channel, inverted), 0, columns);
    });
}

void TBrowsePainter::paintPerSample(QPainter& painter, const BrowsePage& page, const BrowseView& view,
                                    int pageSamples)
{
    const int first = view.firstSample();
    // The line to the sample behind the page fills the last pixels.
    const int end = std::min(view.endSample(page), view.signal->sampleCount() - 1) + 1;
    const double step = double(page.layout.traceWidth) / pageSamples;
    painter.setPen(tracePen(view.colors.value(TraceColor), page.scale.penWidth(1.0)));
    view.rows.forEach(view.signal->channelCount(), [&](int row, int channel, bool inverted) {
        m_samples.draw(painter, *view.signal, {channel, first, end, double(page.layout.traceLeft), step},
                       view.traceRow(page.scale, row, channel, inverted));
    });
}
