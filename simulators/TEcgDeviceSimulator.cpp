#include "simulators/TEcgDeviceSimulator.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace {

enum TCommand
{
    Start = 1,
    Stop = 2,
    Identify = 11
};

constexpr double voltsPerBatteryStep = 0.013;
constexpr int turnMs = 5;
/// Bytes kept for a slow reader; a device with a full queue would drop frames, this one waits.
constexpr std::size_t maxPending = 4096;

} // namespace

TEcgDeviceSimulator::TEcgDeviceSimulator(const TEcgDeviceOptions& options,
                                         std::unique_ptr<sim::TSampleSource> source)
    : m_options(options), m_source(std::move(source)), m_port(options.link),
      m_faults(options.garbledBytes, options.lostBytes, options.seed)
{
    m_state.electrodesOff = options.electrodesOff;
    m_state.battery = static_cast<int>(std::lround(options.batteryVolts / voltsPerBatteryStep)) & 0xff;
}

double TEcgDeviceSimulator::now() const
{
    using TClock = std::chrono::steady_clock;
    return std::chrono::duration<double>(TClock::now().time_since_epoch()).count();
}

void TEcgDeviceSimulator::run(const std::function<bool()>& isDone)
{
    while (!isDone()) {
        applyOutages();
        takeCommands();
        makeFrames();
        send();
    }
}

void TEcgDeviceSimulator::takeCommands()
{
    if (!m_port.isOpen()) {
        m_port.sleep(turnMs);
        return;
    }
    char commands[64];
    const bool isBusy = m_options.speed == 0.0 && m_streaming;
    const int count = m_port.read(commands, sizeof commands, isBusy ? 0 : turnMs);
    for (int i = 0; i < count; ++i)
        obey(static_cast<unsigned char>(commands[i]));
}

void TEcgDeviceSimulator::obey(int command)
{
    if (onCommand)
        onCommand(command);
    if (command == Start && !m_streaming) {
        m_streaming = true;
        m_streamStart = now();
        m_streamFrame = m_framesSent;
        if (m_firstStart < 0.0)
            m_firstStart = m_streamStart;
    } else if (command == Stop) {
        m_streaming = false;
        m_pending.clear();
    } else if (command == Identify) {
        const std::string& text = m_options.identifyText;
        m_pending.insert(m_pending.end(), text.begin(), text.end());
    }
}

bool TEcgDeviceSimulator::isWithin(const TEcgDeviceOptions::TOutage& outage) const
{
    const double elapsed = now() - m_firstStart;
    return m_firstStart >= 0.0 && outage.start >= 0.0 && elapsed >= outage.start &&
           elapsed < outage.start + outage.length;
}

void TEcgDeviceSimulator::applyOutages()
{
    const bool isPulled = isWithin(m_options.hangUp);
    if (isPulled && m_port.isOpen()) {
        m_port.close();
        m_streaming = false; // the program has to start the device again
        m_pending.clear();
    } else if (!isPulled && !m_port.isOpen()) {
        m_port.open();
    }
}

std::int64_t TEcgDeviceSimulator::framesDue() const
{
    if (m_options.speed == 0.0)
        return std::numeric_limits<std::int64_t>::max();
    return m_streamFrame +
           static_cast<std::int64_t>((now() - m_streamStart) * framesPerSecond() * m_options.speed);
}

void TEcgDeviceSimulator::makeFrames()
{
    const std::int64_t due = framesDue();
    while (m_streaming && !isFinished() && m_framesSent < due && m_pending.size() < maxPending) {
        m_state.samples = m_source->frame(m_framesSent);
        if (m_options.saturatedSample >= 0)
            m_state.samples[static_cast<std::size_t>(m_options.saturatedSample)] = 32767;
        ++m_framesSent;
        // What a silent device would have sent is lost, as with one whose cable is pulled.
        if (!isWithin(m_options.stall))
            m_faults.pass(m_options.isHighRate ? sim::highRateFrame(m_state) : sim::standardFrame(m_state),
                          m_pending);
    }
}

void TEcgDeviceSimulator::send()
{
    if (m_pending.empty() || !m_port.isOpen())
        return;
    const int count = m_port.write(m_pending.data(), static_cast<int>(m_pending.size()));
    m_pending.erase(m_pending.begin(), m_pending.begin() + count);
    if (count == 0)
        m_port.waitForRoom(turnMs);
}
