#pragma once

#include <QRect>
#include <QSize>

/// Where things stand in a plot: its areas, and the way between values and pixels. Pixels are logical ones.

/// Room for the labels below and to the left of a plot, in pixels.
constexpr int plotXLabelHeight = 20;
constexpr int plotYLabelWidth = 40;

struct TPlotAreas
{
    QRect plot;
    QRect xLabels;
    QRect yLabels;
};

/// The areas of a widget of that size. A widget too small for its labels has an empty plot.
TPlotAreas plotAreas(const QSize& size, bool xLabelsVisible, bool yLabelsVisible);

/// The values that are visible along one axis.
struct TPlotRange
{
    double min = 0.0;
    double max = 10.0;

    /// Also for a range that is inverted, or not of finite numbers.
    bool isEmpty() const;
    double extent() const { return max - min; }

    bool operator==(const TPlotRange& other) const = default;
};

/// The range after its picture was moved by `pixels` of the `size` pixels that it fills: to the right, or up.
TPlotRange panned(const TPlotRange& range, int pixels, int size);

/// The range smaller about its centre by the part that `pixels` are of `size`, or larger if they are
/// negative. It never shrinks to less than a tenth at once, nor to what numbers cannot tell apart.
TPlotRange zoomed(const TPlotRange& range, int pixels, int size);

/// The range of values from `least` to `greatest` with 5 percent of their difference at each end. A constant
/// gets 1 percent of its value, and 0 gets 1, or the series would have no range to stand in.
TPlotRange rangeAround(double least, double greatest);

/// The way from values to pixels of the widget.
class TPlotScale
{
public:
    /// `lift`: how many pixels above the bottom edge the least value stands.
    TPlotScale(const QRect& area, const TPlotRange& x, const TPlotRange& y, int lift);

    /// Whether there is something to map: ranges and an area that are not empty.
    bool isUsable() const { return m_usable; }
    double xPixelsPerUnit() const { return m_xPixelsPerUnit; }
    double yPixelsPerUnit() const { return m_yPixelsPerUnit; }
    const TPlotRange& xRange() const { return m_x; }
    const TPlotRange& yRange() const { return m_y; }
    const QRect& area() const { return m_area; }

    // Only for a scale that is usable. What lies far outside is kept within what a painter can clip.
    int xPixel(double x) const;
    int yPixel(double y) const;
    double xValue(int pixel) const;

private:
    QRect m_area;
    TPlotRange m_x;
    TPlotRange m_y;
    int m_bottom;
    double m_xPixelsPerUnit = 0.0;
    double m_yPixelsPerUnit = 0.0;
    bool m_usable = false;
};
