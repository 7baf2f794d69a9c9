#include "acq/TAcqBuffer.h"
#include "acq/TAcqDevice.h"
#include "acq/TDemoAcqDevice.h"
#include "acq/TQtAcqDriver.h"
#include "analysis/signals/TInt16Signal.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <atomic>
#include <ctime>
#include <deque>
#include <mutex>
#include <vector>

/// The road of the samples from the reader to the signal. `frames` and `bytes_per_second` are those of one
/// second of work; 500 frames are a second of a recording.
namespace {

constexpr int channels = 14;
constexpr int rate = 500;
constexpr int frameBytes = channels * 2;

/// The simplest queue that does the same, a byte at a time.
class TPlainQueue
{
public:
    void push(const char* data, int size)
    {
        const std::lock_guard lock(m_mutex);
        for (int i = 0; i < size; ++i)
            m_bytes.push_back(data[i]);
    }

    int pop(char* data, int size)
    {
        const std::lock_guard lock(m_mutex);
        int count = 0;
        for (; count < size && !m_bytes.empty(); ++count) {
            data[count] = m_bytes.front();
            m_bytes.pop_front();
        }
        return count;
    }

private:
    std::mutex m_mutex;
    std::deque<char> m_bytes;
};

/// Frames go in one by one and come out in blocks of `state.range(0)`.
template <typename Queue> void bytesThroughQueue(benchmark::State& state)
{
    const int frames = static_cast<int>(state.range(0));
    const std::vector<char> frame(frameBytes, 'x');
    std::vector<char> block(static_cast<std::size_t>(frames) * frameBytes);
    Queue queue;
    for ([[maybe_unused]] const auto turn : state) {
        for (int i = 0; i < frames; ++i)
            queue.push(frame.data(), frameBytes);
        benchmark::DoNotOptimize(queue.pop(block.data(), static_cast<int>(block.size())));
    }
    state.SetBytesProcessed(state.iterations() * frames * frameBytes);
}
BENCHMARK_TEMPLATE(bytesThroughQueue, TAcqBuffer)->Arg(51)->Arg(2500);
BENCHMARK_TEMPLATE(bytesThroughQueue, TPlainQueue)->Arg(51)->Arg(2500);

/// Has as many frames as it is granted, which go through its queue one by one when the pump asks for them.
class TGrantedDevice : public TAcqDevice
{
public:
    void grant(int frames) { m_granted += frames; }

    void start() override {}
    bool isOk() const override { return true; }
    bool isWaiting() const override { return false; }
    int bytesAvailable() const override { return m_granted * frameBytes; }
    int read(char* buffer, int size) override
    {
        for (int i = 0; i < size / frameBytes; ++i)
            m_buffer.push(m_frame.data(), frameBytes);
        m_granted -= size / frameBytes;
        return m_buffer.pop(buffer, size);
    }
    int nextPacemakerPulse() override { return 0; }
    void resetDevice() override {}
    bool isChannelSaturated(int) const override { return false; }
    bool isElectrodeOff(const char*) const override { return false; }
    void stop() override {}
    const char* lastError() const override { return ""; }
    double batteryVoltage() const override { return 0.0; }
    int channelCount() const override { return channels; }
    const char* channelName(int) const override { return ""; }
    int samplingRate() const override { return rate; }
    int bytesPerSample() const override { return 2; }
    int resolutionBits() const override { return 16; }
    double rangeMin() const override { return -450.0; }
    double rangeMax() const override { return 450.0; }

private:
    const std::vector<char> m_frame = std::vector<char>(frameBytes, 'x');
    TAcqBuffer m_buffer;
    std::atomic<int> m_granted = 0;
};

void framesThroughPump(benchmark::State& state)
{
    constexpr int frames = 100 * 2500;
    TGrantedDevice device;
    TInt16Signal signal(4096, 10 * rate, channels, rate);
    TQtAcqDriver driver(&device, &signal);
    driver.start();
    int expected = 0;
    for ([[maybe_unused]] const auto turn : state) {
        device.grant(frames);
        expected += frames;
        while (signal.sampleCount() < expected)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    state.counters["frames"] = benchmark::Counter(static_cast<double>(expected), benchmark::Counter::kIsRate);
}
BENCHMARK(framesThroughPump)->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

/// A recording as it happens: `cpu_share` is that of one core, reader, pump and append together.
void replayInRealTime(benchmark::State& state)
{
    constexpr int milliseconds = 5000;
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("ecg500.dat")));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(10 * rate * frameBytes, 'x')) < 0)
        return state.SkipWithError("The file to be replayed cannot be written.");
    file.close();
    const QByteArray path = QFile::encodeName(file.fileName());
    TDemoAcqDevice device(path.constData(), channels, rate, 2, 16, 300.0, 0, -1);
    TInt16Signal signal(4096, 10 * rate, channels, rate);
    TQtAcqDriver driver(&device, &signal);
    driver.start();
    for ([[maybe_unused]] const auto turn : state) {
        QElapsedTimer time;
        time.start();
        const std::clock_t before = std::clock();
        while (time.elapsed() < milliseconds)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
        state.counters["cpu_share"] = seconds * 1000 / static_cast<double>(time.elapsed());
    }
}
BENCHMARK(replayInRealTime)->Iterations(1)->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kSecond);

} // namespace
