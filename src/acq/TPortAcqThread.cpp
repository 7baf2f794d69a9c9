#include "acq/TPortAcqThread.h"

#include <chrono>
#include <cstring>
#include <exception>
#include <set>
#include <utility>

namespace {

/// The same text in a place where it stays for good: who asks for an error may still read it when the next
/// start clears it. There are but a few different ones.
const char* keptText(const std::string& text)
{
    static std::mutex mutex;
    static std::set<std::string> texts;
    const std::lock_guard<std::mutex> lock(mutex);
    return texts.insert(text).first->c_str();
}

} // namespace

TPortAcqThread::TPortAcqThread(TAcqBuffer& buffer, std::string port, int baud, int keepAliveFrames)
    : m_buffer(buffer), m_portName(std::move(port)), m_baud(baud), m_keepAliveFrames(keepAliveFrames)
{
}

// The classes of the devices have ended the thread before: it runs their code.
TPortAcqThread::~TPortAcqThread() = default;

void TPortAcqThread::startReading()
{
    // Here, not in the thread: whoever restarts a failed reader must not find the old failure right after.
    m_stopping = false;
    m_errorText = "";
    m_failed = false;
    start(QThread::InheritPriority);
    if (!isRunning() && !isFinished()) // The system gave no thread.
        fail("Unexpected error");
}

void TPortAcqThread::stopReading()
{
    requestInterruption();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
        if (m_port)
            m_port->interrupt();
    }
    m_stop.notify_all();
    wait();
}

void TPortAcqThread::run()
{
    m_saturation.clear();
    try {
        readPort();
    } catch (const TReadFailure&) {
        fail("Device read error");
    } catch (const TError& error) {
        fail(error.what());
    } catch (...) {
        fail("Unexpected error");
    }
}

void TPortAcqThread::readPort()
{
    TAcqPort port(m_portName, m_baud, m_readTimeoutMs);
    setPort(&port);
    try {
        startDevice(port);
        stream();
        stopDevice(port);
    } catch (...) {
        setPort(nullptr);
        throw;
    }
    setPort(nullptr);
}

void TPortAcqThread::startDevice(TAcqPort& port)
{
    m_sinceKeepAlive = m_keepAliveFrames;
    port.sendStart();
    if (!pause(acq::commandPauseMs))
        return;
    port.sendStart();
    port.sendKeepAlive();
}

void TPortAcqThread::stopDevice(TAcqPort& port)
{
    port.sendStop();
    msleep(acq::commandPauseMs);
    port.sendStop();
}

void TPortAcqThread::setPort(TAcqPort* port)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_port = port;
    // The stop may have come while the port was being opened.
    if (m_port && m_stopping)
        m_port->interrupt();
}

bool TPortAcqThread::pause(int ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_stop.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_stopping.load(); });
}

bool TPortAcqThread::nextFrame(TFrameParser& parser, TEcgSample& sample)
{
    while (!m_stopping) {
        const int byte = m_port->readByte();
        if (byte < 0 && !m_stopping)
            throw TReadFailure();
        if (byte >= 0 && parser.add(static_cast<unsigned char>(byte), sample))
            return true;
    }
    return false;
}

void TPortAcqThread::frameDone()
{
    if (--m_sinceKeepAlive > 0)
        return;
    m_port->sendKeepAlive();
    pause(acq::keepAlivePauseMs);
    m_port->sendKeepAlive();
    m_sinceKeepAlive = m_keepAliveFrames;
}

void TPortAcqThread::publishBattery(const TEcgSample& sample)
{
    m_batteryVolts.store(sample.batteryVolts, std::memory_order_relaxed);
}

void TPortAcqThread::publishElectrodes(const TEcgSample& sample)
{
    m_electrodesOff.store(sample.electrodesOff, std::memory_order_relaxed);
}

bool TPortAcqThread::isElectrodeOff(const char* name) const
{
    const unsigned off = m_electrodesOff.load(std::memory_order_relaxed);
    for (std::size_t i = 0; name && i < acq::electrodeNames.size(); ++i) {
        if (std::strcmp(name, acq::electrodeNames[i]) == 0)
            return (off >> i & 1U) != 0;
    }
    return false;
}

void TPortAcqThread::fail(const std::string& text)
{
    m_errorText.store(keptText(text), std::memory_order_release);
    m_failed.store(true, std::memory_order_release);
}
