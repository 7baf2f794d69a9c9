#include "display/BeatInset.h"

#include "analysis/signals/TDoubleVector.h"
#include "analysis/signals/Truncation.h"

#include <QPainter>
#include <QPolygonF>
#include <QVector>

#include <algorithm>

namespace {

/// No further out of the picture than painters can reckon with.
double withinReach(double y)
{
    constexpr double outside = 30000.0;
    return std::clamp(y, -outside, outside);
}

int columnX(const InsetRow& row, int index, int points)
{
    return row.left + static_cast<int>(qint64(index) * row.width / points);
}

void drawPointByPoint(QPainter& painter, const InsetRow& row, const TDoubleVector& beat, const QColor& color)
{
    QVector<QPoint> points;
    points.reserve(beat.size());
    for (int i = 0; i < beat.size(); ++i)
        points.append(QPoint(columnX(row, i, beat.size()), insetY(row, beat[i])));
    painter.setPen(QPen(color, row.thickness));
    painter.drawPolyline(points.constData(), points.size());
}

QRect columnSpan(const InsetRow& row, const TDoubleVector& beat, int column)
{
    const qint64 points = beat.size();
    const auto first = std::max<qint64>(column * points / row.width - 1, 0);
    const auto end = (column + 1) * points / row.width;
    const auto [low, high] = std::minmax_element(beat.data() + first, beat.data() + end);
    const auto [top, bottom] = std::minmax({insetY(row, *high), insetY(row, *low)});
    return {row.left + column - row.thickness / 2, top, row.thickness, bottom - top + row.thickness};
}

} // namespace

int insetY(const InsetRow& row, double value)
{
    return velantor::truncated<int>(withinReach(row.centre - value * row.pixelsPerCount));
}

void drawFlatBeat(QPainter& painter, const InsetRow& row, const QColor& color)
{
    painter.fillRect(row.left, insetY(row, 0.0) - row.thickness / 2, row.width, row.thickness, color);
}

void drawBeatByColumns(QPainter& painter, const InsetRow& row, const TDoubleVector& beat, const QColor& color)
{
    if (row.width <= 0 || beat.size() == 0)
        return;
    if (beat.size() <= row.width) {
        drawPointByPoint(painter, row, beat, color);
        return;
    }
    QVector<QRect> spans;
    spans.reserve(row.width);
    for (int column = 0; column < row.width; ++column)
        spans.append(columnSpan(row, beat, column));
    // Upright lines as rectangles, which Qt fills faster.
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRects(spans);
}

void drawBeatThroughPoints(QPainter& painter, const InsetRow& row, const TDoubleVector& beat)
{
    if (beat.size() == 0)
        return;
    const double step = double(row.width) / beat.size();
    QPolygonF points;
    points.reserve(beat.size());
    for (int i = 0; i < beat.size(); ++i)
        points.append(QPointF(row.left + i * step, withinReach(row.centre - beat[i] * row.pixelsPerCount)));
    painter.drawPolyline(points);
}
