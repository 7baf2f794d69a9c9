#include "analysis/signals/TInt16Signal.h"
#include "display/GridPainter.h"
#include "display/PageLayout.h"
#include "display/QSignalMonitorDisplay.h"
#include "display/TDevicePainter.h"
#include "display/TSignalSaturation.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

/// What one tick of the live display costs: a sweep of six leads, once through the display and once in the
/// naive form that draws the paper and looks at every sample each time.
namespace {

constexpr int leads = 6;
constexpr int rate = 500;
constexpr double mmPerSec = 25.0;
constexpr double mmPerMv = 10.0;

/// Something with the steep and flat parts of an ECG, 75 beats a minute, 1 mV.
short voltage(int index)
{
    const double t = std::fmod(index / double(rate), 0.8);
    const double qrs = std::exp(-std::pow((t - 0.3) / 0.012, 2));
    const double tWave = 0.25 * std::exp(-std::pow((t - 0.55) / 0.05, 2));
    return static_cast<short>((qrs + tWave) * 3277);
}

class TLiveSignal : public TInt16Signal
{
public:
    TLiveSignal() : TInt16Signal(4096, 120 * rate, leads, rate)
    {
        setRange(-10.0, 10.0);
        for (int i = 0; i < leads; ++i)
            channel(i)->setName("aVF");
        add(60 * rate);
    }

    void add(int count)
    {
        std::vector<short> frames;
        frames.reserve(count * leads);
        for (int i = 0; i < count; ++i)
            frames.insert(frames.end(), leads, voltage(sampleCount() + i));
        addInterleaved(reinterpret_cast<const char*>(frames.data()),
                       static_cast<int>(frames.size() * sizeof(short)));
    }
};

/// One block of the driver between two pictures, as when recording; its arrival is not measured.
void arrive(benchmark::State& state, TLiveSignal& signal)
{
    constexpr int blockFrames = 51;
    state.PauseTiming();
    signal.add(blockFrames);
    state.ResumeTiming();
}

void monitorSweep(benchmark::State& state, bool withSaturation)
{
    TLiveSignal signal;
    TSignalSaturation saturation(&signal);
    QSignalMonitorDisplay display;
    display.resize(1920, 500);
    display.show();
    display.setSignal(&signal);
    if (withSaturation)
        display.setSaturationSource(&saturation);
    QCoreApplication::processEvents();
    for (auto _ : state) {
        arrive(state, signal);
        display.refresh();
    }
    display.setSignal(nullptr);
}

/// The least and the greatest of a column's samples, every one of them looked at.
std::pair<int, int> extremes(TLiveSignal& signal, const SweepPosition& sweep, int lead, int column,
                             int columns)
{
    int low = std::numeric_limits<int>::max();
    int high = std::numeric_limits<int>::min();
    const int last = (column + 1) * sweep.pageSamples / columns;
    for (int i = column * sweep.pageSamples / columns; i <= last; ++i) {
        const int at = sweep.pageStart + i;
        const int value = signal.sample(lead, at < signal.sampleCount() ? at : at - sweep.pageSamples);
        low = std::min(low, value);
        high = std::max(high, value);
    }
    return {low, high};
}

void drawNaively(QPainter& painter, TLiveSignal& signal, const PageScale& scale, const SweepPosition& sweep)
{
    const double countHeight = scale.pixelsPerCount(signal, mmPerMv);
    for (int lead = 0; lead < leads; ++lead) {
        const double centre = (lead + 0.5) * scale.height / leads;
        for (int column = 0; column < scale.width; ++column) {
            const auto [low, high] = extremes(signal, sweep, lead, column, scale.width);
            painter.setPen(QPen(Qt::black, 0));
            painter.drawLine(column, static_cast<int>(centre - high * countHeight), column,
                             static_cast<int>(centre - low * countHeight));
        }
    }
}

void monitorSweepNaive(benchmark::State& state)
{
    TLiveSignal signal;
    QPixmap screen(1920, 500);
    QPixmap frame(screen.size());
    const PageScale scale = PageScale::of(frame, 1.0);
    const PageLayout layout = layOutPage(scale, mmPerSec, 0.0);
    for (auto _ : state) {
        arrive(state, signal);
        paintGrid(frame, scale, GridStyle::dotted, {Qt::white, QColor(220, 200, 180)});
        {
            TDevicePainter painter(frame);
            drawNaively(*painter, signal, scale, sweepPosition(signal, layout));
        }
        QPainter(&screen).drawPixmap(0, 0, frame);
    }
}

BENCHMARK_CAPTURE(monitorSweep, traces, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(monitorSweep, traces_and_saturation, true)->Unit(benchmark::kMillisecond);
BENCHMARK(monitorSweepNaive)->Unit(benchmark::kMillisecond);

} // namespace
