#include "analysis/beats/TAverageBeat.h"
#include "analysis/beats/TBeatRing.h"
#include "analysis/filters/TOfflineFilterChain.h"
#include "display/QSignalBrowseDisplay.h"
#include "display/TStoredBeats.h"
#include "study/TEcgFile.h"

#include <QPainter>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

constexpr int channels = 12;
constexpr int rate = 500;
constexpr int hour = 3600;
constexpr int width = 1920;
constexpr int height = 1000;
constexpr double middle = 1800.0;

short ecg(int channel, int index)
{
    const double t = std::fmod(double(index) / rate, 0.8) - 0.4;
    const auto wave = [t](double at, double spread, double size) {
        return size * std::exp(-(t - at) * (t - at) / (2 * spread * spread));
    };
    const double beat =
        wave(-0.16, 0.02, 10) + wave(0, 0.01, 80) + wave(0.03, 0.01, -20) + wave(0.25, 0.04, 20);
    const double hum = 5 * std::sin(2 * M_PI * 50 * index / rate);
    const double wander = 40 * std::sin(2 * M_PI * 0.2 * index / rate);
    return short(std::lround(beat * (1 + channel % 3) + hum + wander));
}

/// An hour of twelve leads in a file, as a study has it, and its beats.
class TRecordedHour
{
public:
    TRecordedHour() : m_ring(channels), m_beats(&m_ring)
    {
        TEcgFile file(path(), channels, rate, TEcgFile::defaultHeaderSize, true);
        std::vector<short> frames;
        for (int second = 0; second < hour; ++second) {
            frames.clear();
            for (int i = 0; i < rate; ++i) {
                for (int channel = 0; channel < channels; ++channel)
                    frames.push_back(ecg(channel, second * rate + i));
            }
            file.addInterleaved(reinterpret_cast<const char*>(frames.data()),
                                int(frames.size() * sizeof(short)));
        }
        for (double t = 0.4; t < hour; t += 0.8)
            m_ring.add(beatAt(t));
    }

    std::unique_ptr<TEcgFile> open() const
    {
        auto file = std::make_unique<TEcgFile>(path(), channels, rate);
        file->setRange(-450, 450);
        return file;
    }
    TBeatSource* beats() { return &m_beats; }
    static TBeat beatAt(double t)
    {
        TBeat beat(channels);
        beat.setWindow(t - 0.3, 0.7);
        beat.setValue(TBeat::beatTime, t);
        beat.setValue(TBeat::rr, 0.8);
        beat.setFiducial(0, TBeat::rPosition, t);
        return beat;
    }

private:
    QString path() const { return m_folder.filePath(QStringLiteral("hour")); }

    QTemporaryDir m_folder;
    TBeatRing m_ring;
    TStoredBeats m_beats;
};

TRecordedHour& recordedHour()
{
    static TRecordedHour hourOnDisk;
    return hourOnDisk;
}

void setUp(QSignalBrowseDisplay& display)
{
    display.resize(width, height);
    display.setBeatSource(recordedHour().beats());
    display.setShowAverageBeat(true);
}

/// What the user waits for: open the file, build the filters, draw the page in the middle with its inset.
void browseFirstPaint(benchmark::State& state)
{
    recordedHour();
    QPixmap screen(width, height);
    for (auto _ : state) {
        const auto file = recordedHour().open();
        TOfflineFilterChain chain(file.get());
        chain.apply(true, true, true);
        TAverageBeat average(chain.current(), 20.0);
        average.complexFromBeat(TRecordedHour::beatAt(middle));
        QSignalBrowseDisplay display;
        setUp(display);
        display.setAverageBeat(&average);
        display.setSignal(chain.current());
        display.setStartTime(middle);
        display.render(&screen);
        benchmark::DoNotOptimize(screen);
    }
}
BENCHMARK(browseFirstPaint)->Unit(benchmark::kMillisecond);

/// The page a step further, as the arrow of the scroll bar brings it, over new ground each time.
void browseNextPaint(benchmark::State& state)
{
    const auto file = recordedHour().open();
    TOfflineFilterChain chain(file.get());
    chain.apply(true, true, true);
    TAverageBeat average(chain.current(), 20.0);
    average.complexFromBeat(TRecordedHour::beatAt(middle));
    QSignalBrowseDisplay display;
    setUp(display);
    display.setAverageBeat(&average);
    display.setSignal(chain.current());
    QPixmap screen(width, height);
    display.render(&screen);
    const double step = display.pageSeconds() / 10.0;
    double time = 0.0;
    for (auto _ : state) {
        time = time + step < hour - 60 ? time + step : 0.0;
        display.setStartTime(time);
        display.render(&screen);
        benchmark::DoNotOptimize(screen);
    }
}
BENCHMARK(browseNextPaint)->Unit(benchmark::kMillisecond);

// The naive form reads each sample for itself, draws each column for itself and the grid with every page.

void drawGrid(QPainter& painter, double millimetre)
{
    for (int row = 0; row * millimetre < height; ++row) {
        for (int column = 0; column * millimetre < width; ++column)
            painter.drawPoint(int(column * millimetre), int(row * millimetre));
    }
    for (double at = 0; at < width; at += 5 * millimetre) {
        painter.drawLine(int(at), 0, int(at), height);
        painter.drawLine(0, int(at), width, int(at));
    }
}

int naiveMean(TSignal& signal, int channel, int start, int count)
{
    double sum = 0;
    for (int i = start; i < start + count; ++i)
        sum += signal.sample(channel, i);
    return int(sum / count);
}

void drawLead(QPainter& painter, TSignal& signal, int channel, int start, int count)
{
    const int mean = naiveMean(signal, channel, start, count);
    const double centre = (channel + 0.5) * height / channels;
    const double scale = signal.countValue() * 38;
    for (int column = 0; column < width; ++column) {
        int low = signal.sample(channel, start + int(qint64(column) * count / width));
        int high = low;
        for (int i = int(qint64(column) * count / width); i <= int(qint64(column + 1) * count / width); ++i) {
            low = std::min(low, signal.sample(channel, start + i));
            high = std::max(high, signal.sample(channel, start + i));
        }
        painter.drawLine(column, int(centre - (high - mean) * scale), column,
                         int(centre - (low - mean) * scale));
    }
}

void browseNextPaintNaive(benchmark::State& state)
{
    const auto file = recordedHour().open();
    TOfflineFilterChain chain(file.get());
    chain.apply(true, true, true);
    QPixmap screen(width, height);
    const int count = int(20.0 * rate);
    int start = 0;
    for (auto _ : state) {
        start = start + count / 10 < (hour - 60) * rate ? start + count / 10 : 0;
        screen.fill(Qt::white);
        QPainter painter(&screen);
        drawGrid(painter, 3.78);
        for (int channel = 0; channel < channels; ++channel)
            drawLead(painter, *chain.current(), channel, start, count);
        benchmark::DoNotOptimize(screen);
    }
}
BENCHMARK(browseNextPaintNaive)->Unit(benchmark::kMillisecond);

void browseFirstPaintNaive(benchmark::State& state)
{
    recordedHour();
    QPixmap screen(width, height);
    for (auto _ : state) {
        const auto file = recordedHour().open();
        TOfflineFilterChain chain(file.get());
        chain.apply(true, true, true);
        screen.fill(Qt::white);
        QPainter painter(&screen);
        drawGrid(painter, 3.78);
        for (int channel = 0; channel < channels; ++channel)
            drawLead(painter, *chain.current(), channel, int(middle * rate), 20 * rate);
        benchmark::DoNotOptimize(screen);
    }
}
BENCHMARK(browseFirstPaintNaive)->Unit(benchmark::kMillisecond);

} // namespace
