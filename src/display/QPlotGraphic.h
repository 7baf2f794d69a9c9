#pragma once

#include "display/PlotPainter.h"

#include <QPixmap>
#include <QWidget>

/// A chart of one series against time or numbers. The user drags the view by its labels, zooms with Control
/// held, picks a value, or marks a span with Shift held. Main thread only.
///
/// The setters that "redraw" make the picture anew at once while the widget is visible, and with the next
/// showing otherwise.
class QPlotGraphic : public QWidget
{
    Q_OBJECT

public:
    explicit QPlotGraphic(QWidget* parent = nullptr);

    // These redraw.
    /// Borrowed, may be null; it outlives the widget or is taken away before. Forgets the selected point.
    void setDataSource(const TPlotSource* source);
    /// A TPlotDrawMode; other values draw no series.
    void setDrawMode(int mode);
    /// 0 selects points of the series; any other value selects any x, shown as a line.
    void setCursorMode(int mode);
    void setXLabelsVisible(bool visible);
    void setYLabelsVisible(bool visible);
    void setTraceColor(const QColor& color);
    /// There is one span, index 0; others are ignored. Ends that are no numbers clear it.
    void setHighlight(int index, double from, double to, const QColor& color);
    /// Selects the point nearest to x, or x itself, by the cursor mode. Nothing while the x range is empty,
    /// nor for an x that is not finite.
    void setSelectedX(double x);
    void replot();
    /// With the next paint event.
    void setCaption(const QString& caption);

    // These only store; `replot` shows them.
    void setXRange(double min, double max);
    void setYRange(double min, double max);
    /// A dragging leaves the axis alone.
    void setXFixed(bool fixed) { m_xFixed = fixed; }
    void setYFixed(bool fixed) { m_yFixed = fixed; }
    /// printf formats of a double.
    void setXFormat(const QString& format) { m_view.xFormat = format; }
    void setYFormat(const QString& format) { m_view.yFormat = format; }
    /// A format of QDateTime, for x in seconds since the epoch or, as "mm:ss", since the start of a test.
    /// Empty for numbers.
    void setXDateFormat(const QString& format) { m_view.xDateFormat = format; }
    /// The widest text that ticks of the x axis have to find room for.
    void setYWidestLabel(const QString& text) { m_view.yWidestLabel = text; }
    void setSelectEnabled(bool enabled) { m_selectEnabled = enabled; }
    void setHighlightEnabled(bool enabled) { m_highlightEnabled = enabled; }
    /// Sets the ranges to what the series covers, with some room; nothing without points.
    void autoScale(bool x, bool y);

    TPlotRange xRange() const { return m_view.xRange(); }
    TPlotRange yRange() const { return m_view.yRange(); }
    const TPlotAreas& areas() const { return m_view.areas; }
    const TPlotSpan& highlight() const { return m_view.highlight; }
    /// -1 for none; the values are those of the last selection.
    int selectedIndex() const { return m_selectedIndex; }
    double selectedX() const { return m_view.selectedX; }
    double selectedY() const { return m_selectedY; }

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

Q_SIGNALS:
    /// By the mouse, not by a setter; the same holds for the other two.
    void selectedValueChanged();
    void scaleChanged();
    void highlightChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void layOut();
    void redraw();
    void drawFrame();
    /// The value under a pixel column; false if the plot has no scale along x.
    bool valueAt(int pixel, double& x) const;
    void selectIndex(int index);
    void selectAtPixel(int pixel);
    void startHighlight(int pixel);
    void stretchHighlight(int pixel);
    void zoomBy(int dx, int dy);
    void panBy(int dx, int dy);
    void setRanges(const TPlotRange& x, const TPlotRange& y);
    void remember(const QPoint& point);

    QPixmap m_framePixmap;
    /// The frame does not show the present state.
    bool m_dirty = true;
    TPlotView m_view;
    TPlotTrace m_trace;
    bool m_xFixed = false;
    bool m_yFixed = false;
    bool m_selectEnabled = false;
    bool m_highlightEnabled = false;
    int m_selectedIndex = -1;
    double m_selectedY = 0.0;
    bool m_dragging = false;
    bool m_selecting = false;
    bool m_highlighting = false;
    int m_lastMouseX = 0;
    int m_lastMouseY = 0;
};
