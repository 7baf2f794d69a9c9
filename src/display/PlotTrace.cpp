#include "display/PlotTrace.h"

#include <algorithm>
#include <cmath>

namespace {

/// Markers reach this far to each side, so points just outside the plot still show a part of theirs.
constexpr int markReach = 3;

struct TPoint
{
    double x;
    double y;

    bool isFinite() const { return std::isfinite(x) && std::isfinite(y); }
};

TPoint pointOf(const TPlotSource& source, int index)
{
    return {source.x(index), source.y(index)};
}

/// Joins the points of a series, those within one pixel as a vertical segment.
class TLineBuilder
{
public:
    TLineBuilder(const TPlotScale& scale, bool marked, TPlotTrace& trace)
        : m_scale(scale), m_marked(marked), m_trace(trace)
    {
    }

    void add(const TPoint& point)
    {
        if (!m_open || (point.x - m_runStart) * m_scale.xPixelsPerUnit() >= 1.0)
            begin(point);
        m_least = std::min(m_least, point.y);
        m_largest = std::max(m_largest, point.y);
        m_last = point.y;
    }

    void finish()
    {
        if (!m_open)
            return;
        endRun();
        // A point by itself would leave no trace.
        if (m_trace.lines.empty())
            m_trace.lines.emplace_back(lowest(), lowest());
    }

private:
    void begin(const TPoint& point)
    {
        const QPoint next(m_scale.xPixel(point.x), m_scale.yPixel(point.y));
        if (m_open) {
            endRun();
            m_trace.lines.emplace_back(QPoint(m_pixel, m_scale.yPixel(m_last)), next);
        }
        m_open = true;
        m_runStart = point.x;
        m_pixel = next.x();
        m_least = m_largest = point.y;
    }

    void endRun()
    {
        const QPoint highest(m_pixel, m_scale.yPixel(m_largest));
        if (highest != lowest())
            m_trace.lines.emplace_back(lowest(), highest);
        if (m_marked)
            m_trace.marks.push_back(lowest());
        if (m_marked && highest != lowest())
            m_trace.marks.push_back(highest);
    }

    QPoint lowest() const { return {m_pixel, m_scale.yPixel(m_least)}; }

    const TPlotScale& m_scale;
    bool m_marked;
    TPlotTrace& m_trace;
    bool m_open = false;
    double m_runStart = 0.0;
    int m_pixel = 0;
    double m_least = 0.0;
    double m_largest = 0.0;
    double m_last = 0.0;
};

void traceLines(const TPlotSource& source, const TPlotScale& scale, bool marked, TPlotTrace& trace)
{
    TLineBuilder lines(scale, marked, trace);
    const int count = source.count();
    for (int i = firstPointFrom(source, scale.xRange().min); i < count; ++i) {
        const TPoint point = pointOf(source, i);
        if (point.x > scale.xRange().max)
            break;
        if (point.isFinite())
            lines.add(point);
    }
    lines.finish();
}

/// Calls `draw(index, point)` for the points whose markers can show.
template <typename Draw> void eachMark(const TPlotSource& source, const TPlotScale& scale, Draw draw)
{
    const double reach = markReach / scale.xPixelsPerUnit();
    const int count = source.count();
    for (int i = firstPointFrom(source, scale.xRange().min - reach); i < count; ++i) {
        const TPoint point = pointOf(source, i);
        if (point.x > scale.xRange().max + reach)
            break;
        if (point.isFinite())
            draw(i, QPoint(scale.xPixel(point.x), scale.yPixel(point.y)));
    }
}

void traceMarks(const TPlotSource& source, const TPlotScale& scale, TPlotTrace& trace)
{
    eachMark(source, scale, [&trace](int, const QPoint& point) {
        if (trace.marks.empty() || trace.marks.back() != point)
            trace.marks.push_back(point);
    });
}

void traceRangeMarks(const TPlotSource& source, const TPlotScale& scale, TPlotTrace& trace)
{
    eachMark(source, scale, [&](int index, const QPoint& point) {
        trace.marks.push_back(point);
        const double second = source.secondY(index);
        if (!std::isfinite(second))
            return;
        trace.marks.emplace_back(point.x(), scale.yPixel(second));
        trace.lines.emplace_back(point, trace.marks.back());
    });
}

} // namespace

void TPlotTrace::clear()
{
    lines.clear();
    marks.clear();
}

int plotLift(int drawMode)
{
    return drawMode == DrawPoints ? 3 : 0;
}

void tracePlot(const TPlotSource& source, const TPlotScale& scale, int drawMode, TPlotTrace& trace)
{
    trace.clear();
    if (drawMode == DrawPoints)
        traceMarks(source, scale, trace);
    else if (drawMode == DrawLines || drawMode == DrawLinesWithMarkers)
        traceLines(source, scale, drawMode == DrawLinesWithMarkers, trace);
    else if (drawMode == DrawRangeMarks)
        traceRangeMarks(source, scale, trace);
}

int firstPointFrom(const TPlotSource& source, double x)
{
    int from = 0;
    int to = source.count();
    while (from < to) {
        const int middle = from + (to - from) / 2;
        if (source.x(middle) < x)
            from = middle + 1;
        else
            to = middle;
    }
    return from;
}

int nearestPoint(const TPlotSource& source, double x)
{
    const int count = source.count();
    const int next = firstPointFrom(source, x);
    if (next == 0 || next == count)
        return next == 0 && count > 0 ? 0 : count - 1;
    return x - source.x(next - 1) < source.x(next) - x ? next - 1 : next;
}

TPlotExtent plotExtent(const TPlotSource& source, bool withSecondY)
{
    TPlotExtent extent;
    TPlotRange x, y;
    const int count = source.count();
    for (int i = 0; i < count; ++i) {
        const TPoint point = pointOf(source, i);
        if (!point.isFinite())
            continue;
        const double second = withSecondY ? source.secondY(i) : point.y;
        const auto [low, high] = std::minmax({point.y, std::isfinite(second) ? second : point.y});
        x = extent.known ? TPlotRange{std::min(x.min, point.x), std::max(x.max, point.x)}
                         : TPlotRange{point.x, point.x};
        y = extent.known ? TPlotRange{std::min(y.min, low), std::max(y.max, high)} : TPlotRange{low, high};
        extent.known = true;
    }
    if (extent.known) {
        extent.x = rangeAround(x.min, x.max);
        extent.y = rangeAround(y.min, y.max);
    }
    return extent;
}
