#include "equipment/TEquipmentThread.h"

#include <chrono>
#include <exception>
#include <utility>

TEquipmentThread::TEquipmentThread(std::string port, const TCommSettings& settings, int turnMs,
                                   int lastWordsMs)
    : m_portName(std::move(port)), m_settings(settings), m_turnMs(turnMs), m_lastWordsMs(lastWordsMs)
{
}

TEquipmentThread::~TEquipmentThread() = default;

void TEquipmentThread::requestStart()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_startRequested = true;
}

void TEquipmentThread::requestStop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopRequested = true;
        m_commitRequested = false;
        if (mustLeaveOff())
            m_port.interrupt();
    }
    m_wake.notify_all();
}

void TEquipmentThread::requestCommit(const TEquipmentValues& values)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_committed = values;
    m_commitRequested = true;
}

void TEquipmentThread::endAndWait()
{
    requestInterruption();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // The flag comes first: who is interrupted must know why.
        m_ending = true;
        if (mustLeaveOff())
            m_port.interrupt();
    }
    m_wake.notify_all();
    wait();
    // What the thread did is done: Qt has seen to that, but the thread sanitizer cannot see into Qt.
    [[maybe_unused]] const bool hasEnded = m_ended;
}

bool TEquipmentThread::mustLeaveOff() const
{
    switch (m_phase) {
    case TPhase::Working:
        return m_ending || m_stopRequested;
    case TPhase::Stopping:
        return m_ending;
    case TPhase::Leaving:
        break;
    }
    return false;
}

bool TEquipmentThread::isCutShort() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return mustLeaveOff();
}

bool TEquipmentThread::pause(int ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_wake.wait_for(lock, std::chrono::milliseconds(ms), [this] { return mustLeaveOff(); });
}

bool TEquipmentThread::pauseUntilEnd(int ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_wake.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_ending.load(); });
}

void TEquipmentThread::run()
{
    const bool isUnhurt = guarded([this] {
        begin();
        turns();
    });
    guarded([this, isUnhurt] { leaveDevice(isUnhurt); });
    m_port.close();
    guarded([this] { end(); });
    m_ended = true;
}

bool TEquipmentThread::guarded(const std::function<void()>& action) noexcept
{
    try {
        action();
        return true;
    } catch (const std::exception& error) {
        reportQuietly(error.what());
    } catch (...) {
        reportQuietly("Unexpected error");
    }
    return false;
}

void TEquipmentThread::reportQuietly(const char* text) noexcept
{
    try {
        report(text);
    } catch (...) { // The stop must go out even where there is no memory for a text.
    }
}

void TEquipmentThread::turns()
{
    while (!isEnding()) {
        enter(TPhase::Working);
        openPort();
        prepare();
        if (!isEnding())
            turn();
        // After a stop, and be it one that could not go out, no other one cuts the rest short.
        pause(m_turnMs);
    }
}

void TEquipmentThread::turn()
{
    TEquipmentValues committed;
    switch (takeRequest(committed)) {
    case TRequest::Start:
        serveStart();
        break;
    case TRequest::Stop:
        if (!serveStop())
            oweStop();
        break;
    case TRequest::Commit:
        serveCommit(committed);
        break;
    case TRequest::None:
        break;
    }
}

TEquipmentThread::TRequest TEquipmentThread::takeRequest(TEquipmentValues& committed)
{
    // Chosen and taken in one: a stop that came in between would void the commit in vain. Taken before it is
    // served: one that comes meanwhile has its own turn.
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (std::exchange(m_startRequested, false))
        return TRequest::Start;
    if (std::exchange(m_stopRequested, false)) {
        setPhase(TPhase::Stopping);
        return TRequest::Stop;
    }
    committed = m_committed;
    return std::exchange(m_commitRequested, false) ? TRequest::Commit : TRequest::None;
}

void TEquipmentThread::oweStop()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_stopRequested = true;
}

bool TEquipmentThread::isStopOwed() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_stopRequested;
}

void TEquipmentThread::openPort()
{
    if (m_port.isOpen())
        return;
    m_port.open(m_portName, m_settings);
    // An interruption that came while the port was being opened is gone.
    enter(TPhase::Working);
}

void TEquipmentThread::enter(TPhase phase)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    setPhase(phase);
}

void TEquipmentThread::setPhase(TPhase phase)
{
    m_phase = phase;
    if (mustLeaveOff())
        m_port.interrupt();
    else if (phase == TPhase::Leaving)
        m_port.resume(m_lastWordsMs, m_lastWordsMs);
    else
        m_port.resume(m_settings.readTimeoutMs, m_settings.writeTimeoutMs);
}

void TEquipmentThread::leaveDevice(bool mayOpen)
{
    if (mayOpen && isStopOwed())
        openPort();
    if (!m_port.isOpen())
        return;
    enter(TPhase::Leaving);
    sayLastWords(isStopOwed());
}
