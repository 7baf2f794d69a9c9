#pragma once

#include "display/TPlotSource.h"

#include <cstddef>
#include <utility>
#include <vector>

/// A series of given points for the tests of the plot.
class TPlotSeries : public TPlotSource
{
public:
    struct TPoint
    {
        double x;
        double y;
        double second;
    };

    TPlotSeries() = default;
    explicit TPlotSeries(const std::vector<std::pair<double, double>>& points)
    {
        for (const auto& [px, py] : points)
            add(px, py, py);
    }

    void add(double px, double py, double second) { m_points.push_back({px, py, second}); }

    int count() const override { return static_cast<int>(m_points.size()); }
    double x(int index) const override { return at(index).x; }
    double y(int index) const override { return at(index).y; }
    double secondY(int index) const override { return at(index).second; }

private:
    const TPoint& at(int index) const { return m_points.at(static_cast<std::size_t>(index)); }

    std::vector<TPoint> m_points;
};
