#include "display/PlotPainter.h"

#include "display/PlotAxes.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double traceWidth = 2.0;
constexpr double cursorWidth = 1.5;
constexpr int captionFontSize = 10;
constexpr int captionMargin = 4;
/// What a window gives to the stage that it marks.
const QColor lightShade(0, 0, 0, 20);

/// A marker's size, and how far it lies to the left of and above its point.
struct TMarker
{
    int size;
    int offset;
};

TMarker markerOf(int drawMode)
{
    if (drawMode == DrawPoints)
        return {5, 3};
    return drawMode == DrawRangeMarks ? TMarker{6, 3} : TMarker{4, 2};
}

void paintHighlight(QPainter& painter, const TPlotView& view, const TPlotScale& scale)
{
    if (!view.dataSource || !scale.isUsable() || !view.highlight.isSet())
        return;
    auto [left, right] = std::minmax({scale.xPixel(view.highlight.from), scale.xPixel(view.highlight.to)});
    left = std::max(left, scale.area().left());
    right = std::min(right, scale.area().left() + scale.area().width());
    if (left < right)
        painter.fillRect(left, scale.area().top(), right - left, scale.area().height(),
                         view.highlight.color.isValid() ? view.highlight.color : lightShade);
}

void paintMarks(QPainter& painter, const TPlotTrace& trace, const TPlotView& view)
{
    const TMarker marker = markerOf(view.drawMode);
    for (const QPoint& point : trace.marks)
        painter.fillRect(point.x() - marker.offset, point.y() - marker.offset, marker.size, marker.size,
                         view.traceColor);
}

void paintLines(QPainter& painter, const TPlotTrace& trace, bool joined)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    if (!joined || ratio == std::floor(ratio)) {
        painter.drawLines(trace.lines.data(), static_cast<int>(trace.lines.size()));
        return;
    }
    // On a screen of broken density the soft edges of single lines add up where they meet, like beads.
    QPolygon path;
    path.reserve(static_cast<int>(trace.lines.size()) * 2);
    for (const QLine& line : trace.lines)
        path << line.p1() << line.p2();
    painter.drawPolyline(path);
}

void paintSeries(QPainter& painter, const TPlotView& view, const TPlotScale& scale, TPlotTrace& trace)
{
    if (!view.dataSource || !scale.isUsable())
        return;
    tracePlot(*view.dataSource, scale, view.drawMode, trace);
    painter.save();
    painter.setClipRect(scale.area());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(view.traceColor, traceWidth));
    paintLines(painter, trace, view.drawMode != DrawRangeMarks);
    paintMarks(painter, trace, view);
    painter.restore();
}

void paintCursor(QPainter& painter, const TPlotView& view, const TPlotScale& scale)
{
    const bool inRange = view.selectedX >= view.xMin && view.selectedX <= view.xMax;
    if (view.cursorMode == 0 || !scale.isUsable() || !inRange)
        return;
    // The end of the range lies behind the last pixel.
    const int x = std::min(scale.xPixel(view.selectedX), scale.area().right());
    painter.setPen(QPen(Qt::gray, cursorWidth));
    painter.drawLine(x, scale.area().top(), x, scale.area().bottom());
}

void paintCaption(QPainter& painter, const TPlotView& view)
{
    if (view.caption.isEmpty())
        return;
    painter.setFont(QFont(QStringLiteral("Helvetica"), captionFontSize, QFont::Bold));
    painter.setPen(view.traceColor);
    painter.drawText(view.areas.plot.left() + captionMargin,
                     view.areas.plot.top() + painter.fontMetrics().height(), view.caption);
}

} // namespace

void paintPlot(QPainter& painter, const TPlotView& view, TPlotTrace& trace)
{
    const TPlotScale scale = view.scale();
    paintHighlight(painter, view, scale);
    paintPlotAxes(painter, view, scale);
    paintSeries(painter, view, scale, trace);
    paintCursor(painter, view, scale);
    paintCaption(painter, view);
}
