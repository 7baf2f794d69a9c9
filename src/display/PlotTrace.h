#pragma once

#include "display/PlotScale.h"
#include "display/TPlotSource.h"

#include <QLine>
#include <QPoint>

#include <vector>

/// What a series comes to in pixels. Kept from picture to picture, so that its storage is taken once.
struct TPlotTrace
{
    std::vector<QLine> lines;
    /// Points that get a marker.
    std::vector<QPoint> marks;

    void clear();
};

/// How a plot draws its series.
enum TPlotDrawMode : int
{
    DrawPoints = 0,
    DrawLines = 1,
    DrawLinesWithMarkers = 2,
    DrawRangeMarks = 4
};

/// How many pixels above the plot's bottom edge the least value stands.
int plotLift(int drawMode);

/// The series in pixels by the draw mode; nothing for a mode that is none of the above. The scale is usable.
void tracePlot(const TPlotSource& source, const TPlotScale& scale, int drawMode, TPlotTrace& trace);

/// The first point whose x is not below `x`; the count if there is none.
int firstPointFrom(const TPlotSource& source, double x);

/// The point that is nearest to `x` along the axis, -1 if there is none.
int nearestPoint(const TPlotSource& source, double x);

/// The ranges that show the whole series, by `rangeAround`.
struct TPlotExtent
{
    TPlotRange x;
    TPlotRange y;
    /// False if no point has finite values.
    bool known = false;
};

/// `withSecondY`: the other ends of range marks count, too.
TPlotExtent plotExtent(const TPlotSource& source, bool withSecondY);
