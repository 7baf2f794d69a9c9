#include "display/TSampleTrace.h"

#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"

#include <QPainter>

using velantor::truncated;

QPen tracePen(const QColor& color, int thickness)
{
    // Width 0 is Qt's fastest line: one pixel.
    QPen pen(color, thickness > 1 ? thickness : 0, Qt::SolidLine, Qt::FlatCap);
    pen.setCosmetic(true);
    return pen;
}

void TSampleTrace::draw(QPainter& painter, TSignal& signal, const TRun& run, const TraceRow& row)
{
    const int count = run.to - run.from;
    if (count < 2)
        return;
    m_samples.resize(count);
    signal.readDoubles(run.channel, run.from, count, m_samples.data());
    const auto pointOf = [&](int i) {
        // The signal's own sample: what is read as a double may have a fraction.
        const int sample = truncated<int>(m_samples[i]);
        return QPoint(truncated<int>(run.x + i * run.step), row.pixelY(sample));
    };
    m_lines.clear();
    for (int i = 1; i < count; ++i)
        m_lines.emplace_back(pointOf(i - 1), pointOf(i));
    painter.drawLines(m_lines.data(), static_cast<int>(m_lines.size()));
}
