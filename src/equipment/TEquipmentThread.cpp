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

void TEquipmentThread::requestCommit(const TEquipmentValues& values)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_committed = values;
    m_commitRequested = true;
}

TEquipmentValues TEquipmentThread::takeCommitted()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_commitRequested = false;
    return m_committed;
}

void TEquipmentThread::endAndWait()
{
    requestInterruption();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // The flag comes first: who is interrupted must know why.
        m_ending = true;
        m_port.interrupt();
    }
    m_wake.notify_all();
    wait();
    // What the thread did is done: Qt has seen to that, but the thread sanitizer cannot see into Qt.
    [[maybe_unused]] const bool hasEnded = m_ended;
}

bool TEquipmentThread::pause(int ms)
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
        openPort();
        prepare();
        if (!isEnding())
            turn();
        pause(m_turnMs);
    }
}

void TEquipmentThread::turn()
{
    // A request is taken before it is served, so that one that comes meanwhile has its own turn.
    if (m_startRequested.exchange(false)) {
        serveStart();
    } else if (m_stopRequested.exchange(false)) {
        if (!serveStop())
            m_stopRequested = true;
    } else if (m_commitRequested) {
        serveCommit(takeCommitted());
    }
}

void TEquipmentThread::openPort()
{
    if (m_port.isOpen())
        return;
    m_port.open(m_portName, m_settings);
    const std::lock_guard<std::mutex> lock(m_mutex);
    // An interruption that came while the port was being opened is gone.
    if (m_ending)
        m_port.interrupt();
}

void TEquipmentThread::resumePort()
{
    // Who saw the flag may be here before the interruption, which must not cut the last words short.
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_port.resume(m_lastWordsMs, m_lastWordsMs);
}

void TEquipmentThread::leaveDevice(bool mayOpen)
{
    if (mayOpen && m_stopRequested)
        openPort();
    if (!m_port.isOpen())
        return;
    resumePort();
    sayLastWords(m_stopRequested.exchange(false));
}
