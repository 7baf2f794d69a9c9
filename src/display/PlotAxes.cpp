#include "display/PlotAxes.h"

#include "display/PlotPainter.h"
#include "display/PlotTicks.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int labelFontSize = 8;
/// Between a label of the y axis and the plot, and around labels of the x axis.
constexpr int labelMargin = 5;
constexpr int labelGap = 4;
constexpr int xBudgetMargin = 10;

struct TAxisLabel
{
    QString text;
    /// Where its tick stands, in pixels.
    int pixel;
};

/// Level and upright lines, each over whole pixels of the device: all alike and without blur at any density.
void drawCrispLines(QPainter& painter, std::vector<QLine>& lines, const QColor& color, Qt::PenStyle style)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const int width = std::max(1, qRound(ratio));
    const QPoint toCentre(width / 2, width / 2);
    for (QLine& line : lines)
        line = QLine((QPointF(line.p1()) * ratio).toPoint() + toCentre,
                     (QPointF(line.p2()) * ratio).toPoint() + toCentre);
    painter.save();
    painter.scale(1.0 / ratio, 1.0 / ratio);
    painter.setPen(QPen(color, width, style));
    painter.drawLines(lines.data(), static_cast<int>(lines.size()));
    painter.restore();
}

TTicks xTicks(const TPlotView& view, const TPlotScale& scale, const QFontMetrics& metrics)
{
    const QString& widest = view.yWidestLabel.isEmpty() ? view.xFormat : view.yWidestLabel;
    const int budget = metrics.horizontalAdvance(widest) + xBudgetMargin;
    const double step = view.xDateFormat.isEmpty() ? tickStep(budget, scale.xPixelsPerUnit())
                                                   : dateTickStep(budget, scale.xPixelsPerUnit());
    return ticksWithin(view.xMin, view.xMax, step, scale.area().width());
}

TTicks yTicks(const TPlotView& view, const TPlotScale& scale, const QFontMetrics& metrics)
{
    const double step = tickStep(metrics.height(), scale.yPixelsPerUnit());
    return ticksWithin(view.yMin, view.yMax, step, scale.area().height());
}

QString xLabel(const TPlotView& view, double value)
{
    return view.xDateFormat.isEmpty() ? tickLabel(view.xFormat, value)
                                      : dateTickLabel(view.xDateFormat, value);
}

void paintXGrid(QPainter& painter, const TPlotScale& scale, const TTicks& ticks)
{
    std::vector<QLine> lines;
    for (int i = 0; i < ticks.count; ++i) {
        const int x = scale.xPixel(ticks.value(i));
        lines.emplace_back(x, scale.area().top(), x, scale.area().bottom());
    }
    drawCrispLines(painter, lines, Qt::lightGray, Qt::DotLine);
}

void paintYGrid(QPainter& painter, const TPlotScale& scale, const TTicks& ticks)
{
    std::vector<QLine> lines;
    for (int i = 0; i < ticks.count; ++i) {
        const int y = scale.yPixel(ticks.value(i));
        lines.emplace_back(scale.area().left(), y, scale.area().right(), y);
    }
    drawCrispLines(painter, lines, Qt::lightGray, Qt::DotLine);
}

/// The labels that have room; the same ones keep theirs while the axis is moved.
std::vector<TAxisLabel> xLabels(const TPlotView& view, const TPlotScale& scale, const TTicks& ticks,
                                const QFontMetrics& metrics)
{
    std::vector<TAxisLabel> labels;
    int widest = 0;
    for (int i = 0; i < ticks.count; ++i) {
        labels.push_back({xLabel(view, ticks.value(i)), scale.xPixel(ticks.value(i))});
        widest = std::max(widest, metrics.horizontalAdvance(labels.back().text));
    }
    const double pixelsPerTick = ticks.step * ticks.stride * scale.xPixelsPerUnit();
    const double stride = labelStride(widest + labelGap + 1, pixelsPerTick) * ticks.stride;
    std::vector<TAxisLabel> chosen;
    for (int i = 0; i < ticks.count; ++i) {
        if (std::fmod(ticks.index(i), stride) == 0.0)
            chosen.push_back(labels[static_cast<std::size_t>(i)]);
    }
    return chosen;
}

void paintXLabels(QPainter& painter, const TPlotView& view, const std::vector<TAxisLabel>& labels)
{
    const QFontMetrics metrics = painter.fontMetrics();
    std::vector<TLabelSpan> spans;
    for (const TAxisLabel& label : labels) {
        const int width = metrics.horizontalAdvance(label.text);
        spans.push_back({label.pixel - width / 2, label.pixel - width / 2 + width});
    }
    const QRect& area = view.areas.xLabels;
    fitLabels(spans, 0, area.left() + area.width(), labelGap);
    const int baseline = area.top() + area.height() - metrics.height() + labelMargin;
    for (std::size_t i = 0; i < spans.size(); ++i) {
        if (spans[i].shown)
            painter.drawText(spans[i].from, baseline, labels[i].text);
    }
}

void paintYLabels(QPainter& painter, const TPlotView& view, const TPlotScale& scale, const TTicks& ticks)
{
    const QFontMetrics metrics = painter.fontMetrics();
    const int height = metrics.capHeight() + 2;
    const QRect& area = view.areas.yLabels;
    // From the top down, as the labels of the other axis come from the left.
    std::vector<TLabelSpan> spans;
    for (int i = ticks.count - 1; i >= 0; --i) {
        const int top = scale.yPixel(ticks.value(i)) - height / 2;
        spans.push_back({top, top + height});
    }
    fitLabels(spans, area.top(), area.top() + area.height(), labelMargin / 2);
    for (int i = 0; i < ticks.count; ++i) {
        const TLabelSpan& span = spans[static_cast<std::size_t>(ticks.count - 1 - i)];
        const QString text = tickLabel(view.yFormat, ticks.value(i));
        const int right = area.left() + area.width() - labelMargin;
        if (span.shown)
            painter.drawText(right - metrics.horizontalAdvance(text), span.to - 1, text);
    }
}

void paintTicks(QPainter& painter, const TPlotView& view, const TPlotScale& scale)
{
    painter.setFont(QFont(QStringLiteral("Helvetica"), labelFontSize));
    const QFontMetrics metrics = painter.fontMetrics();
    const TTicks alongX = xTicks(view, scale, metrics);
    const TTicks alongY = yTicks(view, scale, metrics);
    painter.save();
    painter.setClipRect(scale.area());
    paintXGrid(painter, scale, alongX);
    paintYGrid(painter, scale, alongY);
    painter.restore();
    painter.setPen(QPen(Qt::darkGray));
    if (view.xLabelsVisible)
        paintXLabels(painter, view, xLabels(view, scale, alongX, metrics));
    if (view.yLabelsVisible)
        paintYLabels(painter, view, scale, alongY);
}

void paintFrame(QPainter& painter, const QRect& area)
{
    std::vector<QLine> edges{{area.topLeft(), area.topRight()},
                             {area.topRight(), area.bottomRight()},
                             {area.bottomRight(), area.bottomLeft()},
                             {area.bottomLeft(), area.topLeft()}};
    drawCrispLines(painter, edges, Qt::darkGray, Qt::SolidLine);
}

} // namespace

void paintPlotAxes(QPainter& painter, const TPlotView& view, const TPlotScale& scale)
{
    if (view.areas.plot.isEmpty())
        return;
    if (scale.isUsable())
        paintTicks(painter, view, scale);
    paintFrame(painter, view.areas.plot);
}
