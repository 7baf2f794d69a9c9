#include "display/TColumnTrace.h"

#include "analysis/signals/TChannel.h"
#include "display/TSaturationSource.h"

#include <QPainter>

#include <algorithm>

QPen tracePen(const QColor& color, int thickness)
{
    // Width 0 is Qt's fastest line: one pixel.
    QPen pen(color, thickness > 1 ? thickness : 0, Qt::SolidLine, Qt::FlatCap);
    pen.setCosmetic(true);
    return pen;
}

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
    // A flat trace on a dense screen is as thick as a steep one.
    const int extra = style.thickness - 1;
    m_lines.clear();
    for (int column = from; column < to; ++column) {
        const int top = row.pixelY(m_high[column]);
        const int bottom = row.pixelY(m_low[column]);
        const int x = style.left + column;
        m_lines.emplace_back(x, std::min(top, bottom), x, std::max(top, bottom) + extra);
    }
    painter.setPen(tracePen(saturated ? style.saturation : style.trace, thickness));
    painter.drawLines(m_lines.data(), static_cast<int>(m_lines.size()));
}
