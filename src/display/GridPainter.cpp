#include "display/GridPainter.h"

#include "analysis/signals/Truncation.h"
#include "display/TDevicePainter.h"

#include <QImage>
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
    double position = 0.0;
    while (position < length) {
        at.push_back(truncated<int>(position));
        position += step;
    }
    return at;
}

/// All rows of points are alike: one is drawn, then copied, which is many times faster than point by point.
void drawPoints(QPainter& painter, const PageScale& scale, double step)
{
    const int thickness = scale.penWidth(1.0);
    QImage row(scale.width, 2 * thickness, QImage::Format_ARGB32_Premultiplied);
    row.fill(Qt::transparent);
    QPainter rowPainter(&row);
    rowPainter.setPen(painter.pen());
    const std::vector<int> columns = lattice(step, scale.width);
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (column % linesPerBlock)
            rowPainter.drawPoint(columns[column], thickness);
    }
    rowPainter.end();
    const std::vector<int> rows = lattice(step, scale.height);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i % linesPerBlock)
            painter.drawImage(0, rows[i] - thickness, row);
    }
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

/// Lines as rectangles: an upright line is painted pixel by pixel, a rectangle row by row.
void fillLines(QPainter& painter, const PageScale& scale, double step, const QColor& color)
{
    const int thickness = scale.penWidth(1.0);
    for (const int x : lattice(step, scale.width))
        painter.fillRect(x - thickness / 2, 0, thickness, scale.height, color);
    for (const int y : lattice(step, scale.height))
        painter.fillRect(0, y - thickness / 2, scale.width, thickness, color);
}

void paintDotted(QPainter& painter, const PageScale& scale, const QColor& color)
{
    const double millimetre = scale.pixelsPerCm / 10.0;
    painter.setPen(QPen(color, scale.penWidth(1.0)));
    drawPoints(painter, scale, millimetre);
    fillLines(painter, scale, scale.pixelsPerCm / 2.0, color);
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
