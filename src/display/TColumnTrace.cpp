#include "display/TColumnTrace.h"

#include "analysis/signals/TChannel.h"
#include "display/TSaturationSource.h"

#include <QPainter>

#include <algorithm>

bool TColumnTrace::reduce(TChannel& channel, int start, int count, int width, bool wrap)
{
    if (width <= 0 || count < width)
        return false;
    m_count = count;
    m_width = width;
    m_low.resize(width);
    m_high.resize(width);
    m_saturated.assign(width, 0);
    channel.peaks(start, count, m_low.data(), m_high.data(), 0, width, wrap);
    return true;
}

int TColumnTrace::columnOf(int sample, int start) const
{
    const qint64 column = (qint64(sample) - start) * m_width / m_count;
    return static_cast<int>(std::clamp<qint64>(column, 0, m_width));
}

void TColumnTrace::markSaturation(TSaturationSource& source, int channel, int start, int from, int to,
                                  int fromColumn, int toColumn)
{
    int first = 0;
    int last = 0;
    // A stretch ends behind its beginning, so the search always moves on.
    for (int at = from; at < to && source.findStretch(channel, at, to, &first, &last) && last > at;
         at = last) {
        const int begin = std::max(columnOf(first, start) + 1, fromColumn);
        const int end = std::min({columnOf(last, start), toColumn, m_width});
        for (int column = begin; column < end; ++column)
            m_saturated[column] = 1;
    }
}

void TColumnTrace::draw(QPainter& painter, const TraceStyle& style, const TraceRow& row, int from, int to)
{
    const int end = std::min(to, m_width);
    int column = std::max(from, 0);
    // Upright lines are drawn as rectangles, which Qt fills ten times as fast as it draws lines.
    painter.setPen(Qt::NoPen);
    while (column < end) {
        int runEnd = column + 1;
        while (runEnd < end && m_saturated[runEnd] == m_saturated[column])
            ++runEnd;
        drawRun(painter, style, row, column, runEnd);
        column = runEnd;
    }
}

void TColumnTrace::drawRun(QPainter& painter, const TraceStyle& style, const TraceRow& row, int from, int to)
{
    const bool saturated = m_saturated[from];
    const int thickness = saturated ? style.saturationThickness : style.thickness;
    m_spans.clear();
    for (int column = from; column < to; ++column) {
        const auto [top, bottom] = std::minmax({row.pixelY(m_high[column]), row.pixelY(m_low[column])});
        // As thick where the trace is flat as where it is steep.
        m_spans.emplace_back(style.left + column - thickness / 2, top, thickness, bottom - top + thickness);
    }
    painter.setBrush(saturated ? style.saturation : style.trace);
    painter.drawRects(m_spans.data(), static_cast<int>(m_spans.size()));
}
