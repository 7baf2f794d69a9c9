#include "display/CaliperPainter.h"

#include "display/BrowseView.h"
#include "display/TLeadLabels.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr double endRadius = 4.0;
/// From a leg to the middle of its label.
constexpr double labelDistance = 11.0;
constexpr int labelSize = 10;
constexpr double padding = 2.0;

const QColor fill(255, 0, 0, 128);
const QColor paper(255, 255, 255, 192);

QRectF labelRect(QPainter& painter, const PageScale& scale, const QString& text)
{
    const QFontMetricsF metrics(painter.font(), painter.device());
    return {0, 0, metrics.horizontalAdvance(text) + 2 * padding * scale.ratio, metrics.height()};
}

void drawLabel(QPainter& painter, const PageScale& scale, QRectF rect, const QString& text)
{
    // A label is read whole, even where the triangle touches the edge of the picture.
    rect.moveRight(std::min(rect.right(), double(scale.width)));
    rect.moveLeft(std::max(rect.left(), 0.0));
    rect.moveBottom(std::min(rect.bottom(), double(scale.height)));
    rect.moveTop(std::max(rect.top(), 0.0));
    painter.fillRect(rect, paper);
    painter.drawText(rect, Qt::AlignCenter, text);
}

void drawTriangle(QPainter& painter, const PageScale& scale, const CaliperFigure& figure)
{
    const QPointF corners[] = {figure.from, figure.to, {figure.to.x(), figure.from.y()}};
    const double radius = endRadius * scale.ratio;
    painter.drawPolygon(corners, 3);
    painter.drawEllipse(figure.from, radius, radius);
    painter.drawEllipse(figure.to, radius, radius);
}

/// On the side of the leg where the triangle is not.
void drawTime(QPainter& painter, const PageScale& scale, const CaliperFigure& figure)
{
    const QString text = figure.timeText();
    QRectF rect = labelRect(painter, scale, text);
    const bool under = figure.to.y() <= figure.from.y();
    const double distance = (under ? labelDistance : -labelDistance) * scale.ratio;
    rect.moveCenter({(figure.from.x() + figure.to.x()) / 2.0, figure.from.y() + distance});
    drawLabel(painter, scale, rect, text);
}

void drawAmplitude(QPainter& painter, const PageScale& scale, const CaliperFigure& figure)
{
    const QString text = figure.amplitudeText();
    QRectF rect = labelRect(painter, scale, text);
    rect.moveCenter({0.0, (figure.from.y() + figure.to.y()) / 2.0});
    const double distance = labelDistance * scale.ratio;
    if (figure.to.x() >= figure.from.x())
        rect.moveLeft(figure.to.x() + distance);
    else
        rect.moveRight(figure.to.x() - distance);
    drawLabel(painter, scale, rect, text);
}

} // namespace

void paintCaliper(QPainter& painter, const BrowsePage& page, const BrowseView& view)
{
    const auto figure = caliperFigure(view, page);
    if (!figure)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(displayFont(page.scale, labelSize));
    painter.setPen(QPen(Qt::red, page.scale.penWidth(1.0)));
    painter.setBrush(fill);
    if (view.caliper.dragging)
        drawTriangle(painter, page.scale, *figure);
    drawTime(painter, page.scale, *figure);
    drawAmplitude(painter, page.scale, *figure);
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing, false);
}
