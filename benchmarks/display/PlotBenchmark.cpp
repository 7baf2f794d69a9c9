#include "display/PlotPainter.h"
#include "display/TPlotSource.h"

#include <QPainter>
#include <QPixmap>
#include <QPolygonF>
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

/// A trend of 20000 beats, some three hours, in a plot as wide as a screen.
namespace {

constexpr int pointCount = 20000;
constexpr QSize plotSize(1900, 400);

class TTrend : public TPlotSource
{
public:
    TTrend()
    {
        for (int i = 0; i < pointCount; ++i)
            m_values.push_back(110.0 + 50.0 * std::sin(i * 0.001) + 3.0 * std::sin(i * 1.7));
    }

    int count() const override { return pointCount; }
    double x(int index) const override { return index * 0.54; }
    double y(int index) const override { return m_values[static_cast<std::size_t>(index)]; }

private:
    std::vector<double> m_values;
};

TPlotView viewOf(const TTrend& trend)
{
    TPlotView view;
    view.dataSource = &trend;
    view.xMax = trend.x(pointCount);
    view.yMin = 40.0;
    view.yMax = 180.0;
    view.areas = plotAreas(plotSize, true, true);
    view.xDateFormat = QStringLiteral("hh:mm");
    return view;
}

void plotTrend(benchmark::State& state)
{
    const TTrend trend;
    TPlotView view = viewOf(trend);
    view.drawMode = static_cast<int>(state.range(0));
    QPixmap frame(plotSize);
    TPlotTrace trace;
    for (auto _ : state) {
        frame.fill(Qt::white);
        QPainter painter(&frame);
        paintPlot(painter, view, trace);
    }
}
BENCHMARK(plotTrend)->Arg(DrawLines)->Arg(DrawLinesWithMarkers)->Unit(benchmark::kMillisecond);

/// The same axes, with every point in one polyline.
void plotTrendNaive(benchmark::State& state)
{
    const TTrend trend;
    TPlotView view = viewOf(trend);
    const TPlotScale scale = view.scale();
    view.dataSource = nullptr;
    QPixmap frame(plotSize);
    TPlotTrace trace;
    for (auto _ : state) {
        frame.fill(Qt::white);
        QPainter painter(&frame);
        paintPlot(painter, view, trace);
        QPolygonF line;
        for (int i = 0; i < pointCount; ++i)
            line.append(QPointF(scale.xPixel(trend.x(i)), scale.yPixel(trend.y(i))));
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::black, 2.0));
        painter.drawPolyline(line);
    }
}
BENCHMARK(plotTrendNaive)->Unit(benchmark::kMillisecond);

} // namespace
