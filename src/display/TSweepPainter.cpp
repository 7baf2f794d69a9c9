#include "display/TSweepPainter.h"

#include "analysis/signals/TSignal.h"
#include "display/ColorTags.h"
#include "display/MonitorView.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

/// One picture's worth of facts.
struct TSweepPainter::TPage
{
    const PageScale& scale;
    const PageLayout& layout;
    const MonitorView& view;
    SweepPosition sweep;
    int visibleCount = 0;

    TSignal& signal() const { return *view.signal; }
    void drawUpright(QPainter& painter, int tag, int x) const
    {
        const int thickness = scale.penWidth(1.0);
        painter.fillRect(x - thickness / 2, 0, thickness, scale.height, view.colors.value(tag));
    }
};

namespace {

/// Pixels ahead of the cursor that stay empty, so that new and old trace cannot be taken for one.
constexpr double gapAhead = 5.0;
constexpr double saturationWidth = 2.0;

} // namespace

void TSweepPainter::paint(QPainter& painter, const PageScale& scale, const PageLayout& layout,
                          const MonitorView& view)
{
    const TPage page{scale, layout, view, sweepPosition(*view.signal, layout), view.visibleCount()};
    if (page.visibleCount == 0)
        return;
    if (layout.traceLeft != 0)
        page.drawUpright(painter, TraceColor, layout.traceLeft);
    const int samplesPerPage = view.signal->indexOf(scale.pageSeconds(view.speed));
    // The second question: beside an inset the rounding may leave a sample less than there are columns.
    if (samplesPerPage < scale.width || page.sweep.pageSamples < layout.traceWidth)
        paintPerSample(painter, page);
    else
        paintByColumns(painter, page);
    page.drawUpright(painter, CursorColor, layout.traceLeft + page.sweep.cursorColumn);
}

void TSweepPainter::forgetBaseline()
{
    m_lastPage = -1;
    m_channelOffset.fill(0);
}

int TSweepPainter::channelOffset(int channel) const
{
    const bool known = channel >= 0 && channel < velantor::maxChannels;
    return known ? m_channelOffset[channel] : 0;
}

void TSweepPainter::updateBaseline(const TPage& page)
{
    const TSignal& signal = page.signal();
    const bool due = signal.sampleCount() < signal.samplingRate() || page.sweep.page != m_lastPage;
    m_lastPage = page.sweep.page;
    if (!due || !page.view.autoCenter)
        return;
    // What has left the ring reads 0 and would pull the mean.
    const int held = signal.sampleCount() - signal.oldestSample();
    const int count = std::min(page.sweep.pageSamples, held);
    page.view.rows.forEach(signal.channelCount(), [&](int, int channel, bool) {
        m_channelOffset[channel] = signal.channel(channel)->mean(signal.sampleCount() - count, count);
    });
}

void TSweepPainter::markSaturation(const TPage& page, int channel)
{
    TSaturationSource* const source = page.view.saturationSource;
    if (!source)
        return;
    const SweepPosition& sweep = page.sweep;
    const int cursor = sweep.cursorColumn;
    m_columns.markSaturation(*source, channel, sweep.pageStart, sweep.pageStart, page.signal().sampleCount(),
                             0, cursor + 1);
    // The page before is marked only where it still stands: its marks must not colour the new trace.
    const int previous = sweep.pageStart - sweep.pageSamples;
    if (!sweep.firstPage)
        m_columns.markSaturation(*source, channel, previous, std::max(previous, 0), sweep.pageStart, cursor,
                                 page.layout.traceWidth);
}

void TSweepPainter::paintByColumns(QPainter& painter, const TPage& page)
{
    updateBaseline(page);
    const SweepPosition& sweep = page.sweep;
    const int width = page.layout.traceWidth;
    const TraceStyle style{page.view.colors.value(TraceColor), page.view.colors.value(SaturationColor),
                           page.layout.traceLeft, page.scale.penWidth(1.0),
                           page.scale.penWidth(saturationWidth)};
    const int behindGap = sweep.cursorColumn + page.scale.px(gapAhead);
    const double rowHeight = double(page.scale.height) / page.visibleCount;
    page.view.rows.forEach(page.signal().channelCount(), [&](int row, int channel, bool inverted) {
        const TraceRow place{(row + 0.5) * rowHeight, page.view.pixelsPerCount(page.scale, inverted),
                             m_channelOffset[channel]};
        m_columns.reduce(*page.signal().channel(channel), sweep.pageStart, sweep.pageSamples, width, true);
        markSaturation(page, channel);
        m_columns.draw(painter, style, place, 0, sweep.cursorColumn);
        if (!sweep.firstPage)
            m_columns.draw(painter, style, place, behindGap, width);
    });
}

void TSweepPainter::paintPerSample(QPainter& painter, const TPage& page)
{
    const SweepPosition& sweep = page.sweep;
    if (sweep.pageSamples <= 0)
        return;
    const int end = std::min(page.signal().sampleCount(), sweep.pageStart + sweep.pageSamples + 1);
    const double step = double(page.layout.traceWidth) / sweep.pageSamples;
    const int rowHeight = page.scale.height / page.visibleCount;
    const int previousPage = sweep.pageStart - sweep.pageSamples;
    painter.setPen(tracePen(page.view.colors.value(TraceColor), page.scale.penWidth(1.0)));
    page.view.rows.forEach(page.signal().channelCount(), [&](int row, int channel, bool inverted) {
        const TraceRow place{(row + 0.5) * rowHeight, page.view.pixelsPerCount(page.scale, inverted), 0};
        const auto draw = [&](int from, int to, int atLeft) {
            m_samples.draw(painter, page.signal(),
                           {channel, from, to, page.layout.traceLeft + (from - atLeft) * step, step}, place);
        };
        draw(sweep.pageStart, end, sweep.pageStart);
        // From a page before the last sample on: the old trace stands to the right.
        if (!sweep.firstPage)
            draw(std::max(end - 1 - sweep.pageSamples, 0),
                 std::min(sweep.pageStart + 1, page.signal().sampleCount()), previousPage);
    });
}
