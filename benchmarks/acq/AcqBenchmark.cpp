#include "acq/AcqChannels.h"
#include "acq/LeadComputation.h"
#include "acq/TAcqBuffer.h"
#include "acq/TAcqDevice.h"
#include "acq/TDemoAcqDevice.h"
#include "acq/TFrameParser.h"
#include "acq/THRAcqDevice.h"
#include "acq/TQtAcqDriver.h"
#include "acq/TStdAcqDevice.h"
#include "analysis/signals/TInt16Signal.h"
#include "simulators/TEcgDeviceSimulator.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <atomic>
#include <ctime>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
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

/// What the readers do with the bytes of the line, without the line: `frames` of the device in a second.
template <typename Parser, int deviceRate> void framesThroughParser(benchmark::State& state)
{
    constexpr bool isHighRate = deviceRate == 1000;
    const auto source = sim::makeSampleSource(QStringLiteral("pattern"), deviceRate, 450.0);
    std::vector<std::uint8_t> line;
    for (int i = 0; i < deviceRate; ++i) {
        sim::TDeviceState device;
        device.samples = source->frame(i);
        const auto frame = isHighRate ? sim::highRateFrame(device) : sim::standardFrame(device);
        line.insert(line.end(), frame.begin(), frame.end());
    }
    Parser parser;
    TEcgSample sample;
    std::int64_t frames = 0;
    for ([[maybe_unused]] const auto turn : state) {
        for (const std::uint8_t byte : line) {
            if (!parser.add(byte, sample))
                continue;
            acq::computeAugmentedLeads(sample);
            if (!isHighRate)
                acq::zeroDetachedLeads(sample);
            benchmark::DoNotOptimize(sample);
            ++frames;
        }
    }
    if (frames != static_cast<std::int64_t>(state.iterations()) * deviceRate)
        state.SkipWithError("Frames were lost.");
    state.counters["frames"] = benchmark::Counter(static_cast<double>(frames), benchmark::Counter::kIsRate);
}
BENCHMARK_TEMPLATE(framesThroughParser, TStdFrameParser, 500);
BENCHMARK_TEMPLATE(framesThroughParser, THRFrameParser, 1000);

double threadSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// A device at the far end of a line, on a thread of its own whose processor time is known.
class TFarEnd
{
public:
    explicit TFarEnd(const TEcgDeviceOptions& options)
        : m_simulator(options, sim::makeSampleSource(QStringLiteral("pattern"),
                                                     options.isHighRate ? 1000 : 500, 450.0)),
          m_thread([this] {
              m_simulator.run([this] {
                  m_seconds = threadSeconds();
                  return m_done.load();
              });
          })
    {
    }
    ~TFarEnd()
    {
        m_done = true;
        m_thread.join();
    }
    TFarEnd(const TFarEnd&) = delete;
    TFarEnd& operator=(const TFarEnd&) = delete;

    std::string path() const { return m_simulator.path(); }
    /// Up to about 5 ms ago.
    double processorSeconds() const { return m_seconds; }

private:
    std::atomic<bool> m_done = false;
    std::atomic<double> m_seconds = 0.0;
    TEcgDeviceSimulator m_simulator;
    std::thread m_thread;
};

std::unique_ptr<TAcqDevice> deviceAt(const std::string& path, bool isHighRate)
{
    if (isHighRate)
        return std::make_unique<THRAcqDevice>(path.c_str(), acq::highRateBaud);
    return std::make_unique<TStdAcqDevice>(path.c_str(), acq::standardBaud, acq::allChannels);
}

/// A recording from a device as it happens; `cpu_share` is that of one core for reader, pump and append
/// together, without the simulated device.
void recordInRealTime(benchmark::State& state)
{
    constexpr int milliseconds = 5000;
    TEcgDeviceOptions options;
    options.isHighRate = state.range(0) != 0;
    const TFarEnd farEnd(options);
    const auto device = deviceAt(farEnd.path(), options.isHighRate);
    TInt16Signal signal(4096, 10 * rate, channels, rate);
    TQtAcqDriver driver(device.get(), &signal);
    driver.start();
    for ([[maybe_unused]] const auto turn : state) {
        while (signal.sampleCount() == 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QElapsedTimer time;
        time.start();
        const int first = signal.sampleCount();
        const std::clock_t before = std::clock();
        const double farBefore = farEnd.processorSeconds();
        while (time.elapsed() < milliseconds)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const double all = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
        const double seconds = static_cast<double>(time.elapsed()) / 1000;
        state.counters["cpu_share"] = (all - (farEnd.processorSeconds() - farBefore)) / seconds;
        state.counters["frames"] = (signal.sampleCount() - first) / seconds;
    }
}
BENCHMARK(recordInRealTime)->Arg(0)->Arg(1)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);

} // namespace
