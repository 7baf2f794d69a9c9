#include "display/QPlotGraphic.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

QPlotGraphic::QPlotGraphic(QWidget* parent) : QWidget(parent)
{
    // The frame covers the widget.
    setAttribute(Qt::WA_OpaquePaintEvent);
    layOut();
}

void QPlotGraphic::setDataSource(const TPlotSource* source)
{
    m_view.dataSource = source;
    m_selectedIndex = -1;
    redraw();
}

void QPlotGraphic::setDrawMode(int mode)
{
    m_view.drawMode = mode;
    redraw();
}

void QPlotGraphic::setCursorMode(int mode)
{
    m_view.cursorMode = mode;
    redraw();
}

void QPlotGraphic::setXLabelsVisible(bool visible)
{
    if (m_view.xLabelsVisible == visible)
        return;
    m_view.xLabelsVisible = visible;
    layOut();
    redraw();
}

void QPlotGraphic::setYLabelsVisible(bool visible)
{
    if (m_view.yLabelsVisible == visible)
        return;
    m_view.yLabelsVisible = visible;
    layOut();
    redraw();
}

void QPlotGraphic::setTraceColor(const QColor& color)
{
    if (m_view.traceColor == color)
        return;
    m_view.traceColor = color;
    redraw();
}

void QPlotGraphic::setHighlight(int index, double from, double to, const QColor& color)
{
    if (index != 0)
        return;
    m_view.highlight = {from, to, color};
    redraw();
}

void QPlotGraphic::setSelectedX(double x)
{
    if (!std::isfinite(x) || !(m_view.xMin < m_view.xMax))
        return;
    if (m_view.cursorMode != 0)
        m_view.selectedX = x;
    else if (m_view.dataSource)
        selectIndex(nearestPoint(*m_view.dataSource, x));
    redraw();
}

void QPlotGraphic::replot()
{
    redraw();
}

void QPlotGraphic::setCaption(const QString& caption)
{
    m_view.caption = caption;
    m_dirty = true;
    update();
}

void QPlotGraphic::setXRange(double min, double max)
{
    m_view.xMin = min;
    m_view.xMax = max;
}

void QPlotGraphic::setYRange(double min, double max)
{
    m_view.yMin = min;
    m_view.yMax = max;
}

void QPlotGraphic::autoScale(bool x, bool y)
{
    if (!m_view.dataSource)
        return;
    const TPlotExtent extent = plotExtent(*m_view.dataSource, m_view.drawMode == DrawRangeMarks);
    if (!extent.known)
        return;
    if (x)
        setXRange(extent.x.min, extent.x.max);
    if (y)
        setYRange(extent.y.min, extent.y.max);
}

QSize QPlotGraphic::minimumSizeHint() const
{
    return {120, 80};
}

QSize QPlotGraphic::sizeHint() const
{
    return {320, 160};
}

void QPlotGraphic::paintEvent(QPaintEvent*)
{
    // Moved to a screen of another density, the widget need not be told by a resize.
    if (m_dirty || m_framePixmap.devicePixelRatioF() != devicePixelRatioF())
        drawFrame();
    QPainter(this).drawPixmap(0, 0, m_framePixmap);
}

void QPlotGraphic::resizeEvent(QResizeEvent*)
{
    layOut();
    redraw();
}

void QPlotGraphic::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    if (!m_view.areas.plot.contains(event->pos())) {
        m_dragging = true;
        m_selectedIndex = -1;
        remember(event->pos());
    } else if (m_highlightEnabled && event->modifiers().testFlag(Qt::ShiftModifier)) {
        startHighlight(event->x());
    } else if (m_selectEnabled) {
        m_selecting = true;
        selectAtPixel(event->x());
    }
}

void QPlotGraphic::mouseMoveEvent(QMouseEvent* event)
{
    if (m_highlighting && event->modifiers().testFlag(Qt::ShiftModifier)) {
        stretchHighlight(event->x());
    } else if (m_selecting) {
        selectAtPixel(event->x());
    } else if (m_dragging) {
        const QPoint motion = event->pos() - QPoint(m_lastMouseX, m_lastMouseY);
        remember(event->pos());
        if (event->modifiers().testFlag(Qt::ControlModifier))
            zoomBy(motion.x(), motion.y());
        else
            panBy(motion.x(), motion.y());
    }
}

void QPlotGraphic::mouseReleaseEvent(QMouseEvent* event)
{
    const bool cleared = m_highlighting && event->modifiers().testFlag(Qt::ShiftModifier) &&
                         m_view.highlight.from == m_view.highlight.to;
    m_highlighting = m_selecting = m_dragging = false;
    if (cleared)
        m_view.highlight = {TPlotSpan().from, TPlotSpan().to, m_view.highlight.color};
    redraw();
    if (cleared)
        Q_EMIT highlightChanged();
}

void QPlotGraphic::layOut()
{
    m_view.areas = plotAreas(size(), m_view.xLabelsVisible, m_view.yLabelsVisible);
}

void QPlotGraphic::redraw()
{
    m_dirty = true;
    repaint();
}

void QPlotGraphic::drawFrame()
{
    const qreal ratio = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * ratio).toSize();
    if (m_framePixmap.size() != pixels || m_framePixmap.devicePixelRatioF() != ratio) {
        m_framePixmap = QPixmap(pixels);
        m_framePixmap.setDevicePixelRatio(ratio);
    }
    m_framePixmap.fill(Qt::white);
    QPainter painter(&m_framePixmap);
    paintPlot(painter, m_view, m_trace);
    m_dirty = false;
}

bool QPlotGraphic::valueAt(int pixel, double& x) const
{
    // What is selected has no height: an empty y range is no hindrance.
    const TPlotScale scale(m_view.areas.plot, m_view.xRange(), TPlotRange(), 0);
    if (scale.isUsable())
        x = scale.xValue(pixel);
    return scale.isUsable();
}

void QPlotGraphic::selectIndex(int index)
{
    m_selectedIndex = index;
    if (index < 0)
        return;
    m_view.selectedX = m_view.dataSource->x(index);
    m_selectedY = m_view.dataSource->y(index);
}

void QPlotGraphic::selectAtPixel(int pixel)
{
    double x = 0.0;
    if (!valueAt(pixel, x))
        m_selectedIndex = -1;
    else if (m_view.cursorMode != 0)
        m_view.selectedX = std::clamp(x, m_view.xMin, m_view.xMax);
    else if (m_view.dataSource)
        selectIndex(std::min(firstPointFrom(*m_view.dataSource, x), m_view.dataSource->count() - 1));
    redraw();
    Q_EMIT selectedValueChanged();
}

void QPlotGraphic::startHighlight(int pixel)
{
    double x = 0.0;
    if (!valueAt(pixel, x))
        return;
    m_highlighting = true;
    m_view.highlight.from = m_view.highlight.to = x;
    redraw();
    Q_EMIT highlightChanged();
}

void QPlotGraphic::stretchHighlight(int pixel)
{
    if (!valueAt(pixel, m_view.highlight.to))
        return;
    redraw();
    Q_EMIT highlightChanged();
}

void QPlotGraphic::zoomBy(int dx, int dy)
{
    const QRect& area = m_view.areas.plot;
    setRanges(m_xFixed ? m_view.xRange() : zoomed(m_view.xRange(), dx, area.width()),
              m_yFixed ? m_view.yRange() : zoomed(m_view.yRange(), -dy, area.height()));
}

void QPlotGraphic::panBy(int dx, int dy)
{
    const QRect& area = m_view.areas.plot;
    setRanges(m_xFixed ? m_view.xRange() : panned(m_view.xRange(), dx, area.width()),
              m_yFixed ? m_view.yRange() : panned(m_view.yRange(), -dy, area.height()));
}

void QPlotGraphic::setRanges(const TPlotRange& x, const TPlotRange& y)
{
    setXRange(x.min, x.max);
    setYRange(y.min, y.max);
    redraw();
    Q_EMIT scaleChanged();
}

void QPlotGraphic::remember(const QPoint& point)
{
    m_lastMouseX = point.x();
    m_lastMouseY = point.y();
}
