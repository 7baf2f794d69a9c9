#include "display/PlotScale.h"

#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double leastZoomFactor = 0.1;
constexpr double farOutside = 1e6;

int roundedPixel(double pixels)
{
    return velantor::truncated<int>(std::clamp(pixels + 0.5, -farOutside, farOutside));
}

/// Whether the pixels of the range still stand for numbers that differ.
bool canBeTold(const TPlotRange& range)
{
    const double greatest = std::max(std::abs(range.min), std::abs(range.max));
    return !range.isEmpty() && range.extent() > greatest * 1e-11 &&
           range.extent() > std::numeric_limits<double>::min() * 1e16;
}

} // namespace

TPlotAreas plotAreas(const QSize& size, bool xLabelsVisible, bool yLabelsVisible)
{
    const int left = yLabelsVisible ? plotYLabelWidth : 0;
    const int bottom = std::max(0, size.height() - (xLabelsVisible ? plotXLabelHeight : 0));
    const int width = std::max(0, size.width() - left);
    TPlotAreas areas;
    areas.plot = QRect(left, 0, width, bottom);
    areas.xLabels = QRect(left, size.height() - plotXLabelHeight, width, plotXLabelHeight);
    areas.yLabels = QRect(0, 0, plotYLabelWidth, bottom);
    return areas;
}

bool TPlotRange::isEmpty() const
{
    return !(min < max) || !std::isfinite(max - min);
}

TPlotRange panned(const TPlotRange& range, int pixels, int size)
{
    if (range.isEmpty() || size < 1)
        return range;
    const double shift = pixels * range.extent() / size;
    const TPlotRange moved{range.min - shift, range.max - shift};
    return canBeTold(moved) ? moved : range;
}

TPlotRange zoomed(const TPlotRange& range, int pixels, int size)
{
    if (range.isEmpty() || size < 1)
        return range;
    const double factor = std::max(leastZoomFactor, 1.0 - static_cast<double>(pixels) / size);
    const double centre = range.min + range.extent() / 2.0;
    const double half = range.extent() * factor / 2.0;
    const TPlotRange changed{centre - half, centre + half};
    return canBeTold(changed) ? changed : range;
}

TPlotRange rangeAround(double least, double greatest)
{
    double room = (greatest - least) * 0.05;
    if (least == greatest)
        room = least == 0.0 ? 1.0 : std::abs(least) * 0.01;
    return {least - room, greatest + room};
}

TPlotScale::TPlotScale(const QRect& area, const TPlotRange& x, const TPlotRange& y, int lift)
    : m_area(area), m_x(x), m_y(y), m_bottom(area.top() + area.height() - lift)
{
    if (area.isEmpty() || x.isEmpty() || y.isEmpty())
        return;
    m_xPixelsPerUnit = area.width() / x.extent();
    m_yPixelsPerUnit = area.height() / y.extent();
    m_usable = std::isfinite(m_xPixelsPerUnit) && std::isfinite(m_yPixelsPerUnit) && m_xPixelsPerUnit > 0.0 &&
               m_yPixelsPerUnit > 0.0;
}

int TPlotScale::xPixel(double x) const
{
    return m_area.left() + roundedPixel((x - m_x.min) * m_xPixelsPerUnit);
}

int TPlotScale::yPixel(double y) const
{
    return m_bottom + roundedPixel((y - m_y.min) * -m_yPixelsPerUnit);
}

double TPlotScale::xValue(int pixel) const
{
    return m_x.min + (pixel - m_area.left()) / m_xPixelsPerUnit;
}
