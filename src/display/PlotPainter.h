#pragma once

#include "display/PlotScale.h"
#include "display/PlotTrace.h"
#include "display/TPlotSource.h"

#include <QColor>
#include <QString>

#include <limits>

class QPainter;

/// A span along the x axis, in its units; none while either end is no number.
struct TPlotSpan
{
    double from = std::numeric_limits<double>::quiet_NaN();
    double to = std::numeric_limits<double>::quiet_NaN();
    /// An invalid colour stands for a light shade.
    QColor color;

    bool isSet() const { return from == from && to == to; }
};

/// All that the picture of a plot follows from.
struct TPlotView
{
    /// Borrowed; null draws the axes alone.
    const TPlotSource* dataSource = nullptr;
    double xMin = 0.0;
    double yMin = 0.0;
    double xMax = 10.0;
    double yMax = 10.0;
    bool xLabelsVisible = true;
    bool yLabelsVisible = true;
    /// printf formats of a double.
    QString xFormat = QStringLiteral("%g");
    QString yFormat = QStringLiteral("%g");
    /// Format of QDateTime; if it is not empty, x are seconds since the epoch.
    QString xDateFormat;
    /// The widest text that a tick of the x axis has to find room for.
    QString yWidestLabel;
    QString caption;
    QColor traceColor = Qt::black;
    int drawMode = DrawLines;
    int cursorMode = 0;
    double selectedX = 0.0;
    TPlotSpan highlight;
    TPlotAreas areas;

    TPlotRange xRange() const { return {xMin, xMax}; }
    TPlotRange yRange() const { return {yMin, yMax}; }
    TPlotScale scale() const { return {areas.plot, xRange(), yRange(), plotLift(drawMode)}; }
};

/// Paints the picture on a device that is white. `trace` is the caller's storage for the series.
void paintPlot(QPainter& painter, const TPlotView& view, TPlotTrace& trace);
