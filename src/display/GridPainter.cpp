#include "display/GridPainter.h"

#include "analysis/signals/Truncation.h"
#include "display/TDevicePainter.h"

#include <QVector>

#include <vector>

using velantor::truncated;

namespace {

constexpr int linesPerBlock = 5;
constexpr int lightening = 110;
constexpr double fineWidth = 0.75;
constexpr double heavyWidth = 1.25;

/// Pixels of the lattice below `length`, `step` apart. Steps add up as doubles, so that the lattice keeps
/// true over the whole width.
std::vector<int> lattice(double step, int length)
{
    std::vector<int> at;
    for (double position = 0.0; position < length; position += step)
        at.push_back(truncated<int>(position));
    return at;
}

void drawPoints(QPainter& painter, const std::vector<int>& columns, const std::vector<int>& rows)
{
    QVector<QPoint> points;
    points.reserve(static_cast<int>(columns.size() * rows.size()));
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t column = 0; column < columns.size(); ++column) {
            if (row % linesPerBlock && column % linesPerBlock)
                points.append(QPoint(columns[column], rows[row]));
        }
    }
    painter.drawPoints(points.constData(), points.size());
}

void drawLines(QPainter& painter, double step, const PageScale& scale)
{
    QVector<QLine> lines;
    for (const int x : lattice(step, scale.width))
        lines.append(QLine(x, 0, x, scale.height - 1));
    for (const int y : lattice(step, scale.height))
        lines.append(QLine(0, y, scale.width - 1, y));
    painter.drawLines(lines);
}

void paintDotted(QPainter& painter, const PageScale& scale, const QColor& color)
{
    const double millimetre = scale.pixelsPerCm / 10.0;
    painter.setPen(QPen(color, scale.penWidth(1.0)));
    drawPoints(painter, lattice(millimetre, scale.width), lattice(millimetre, scale.height));
    drawLines(painter, scale.pixelsPerCm / 2.0, scale);
}

void paintRuled(QPainter& painter, const PageScale& scale, const QColor& color)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color.lighter(lightening), fineWidth * scale.ratio));
    drawLines(painter, scale.pixelsPerCm / 10.0, scale);
    painter.setPen(QPen(color, heavyWidth * scale.ratio));
    drawLines(painter, scale.pixelsPerCm / 2.0, scale);
}

} // namespace

void paintGrid(QPixmap& pixmap, const PageScale& scale, GridStyle style, const GridColors& colors)
{
    pixmap.fill(colors.background);
    if (scale.pixelsPerCm <= 0.0)
        return;
    TDevicePainter painter(pixmap);
    if (style == GridStyle::ruled)
        paintRuled(*painter, scale, colors.grid);
    else
        paintDotted(*painter, scale, colors.grid);
}
