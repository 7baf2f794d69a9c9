#ifndef _WIN32

#include "platform/CommPortSystem.h"
#include "platform/SerialLine.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <thread>

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

bool flush(int port, int queue)
{
    return ::ioctl(port, TCFLSH, queue) == 0;
}

using TClock = std::chrono::steady_clock;

TClock::time_point deadlineAfter(int timeoutMs)
{
    return TClock::now() + std::chrono::milliseconds(timeoutMs);
}

int remainingMs(TClock::time_point deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - TClock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left.count()));
}

/// Gives the last bytes a moment to go out. The kernel holds up a close for half a minute if the other side
/// takes nothing any more, so that what is left then is dropped.
void drainOrDrop(int port)
{
    constexpr int drainMs = 50;
    const TClock::time_point deadline = deadlineAfter(drainMs);
    int waiting = 0;
    while (::ioctl(port, TIOCOUTQ, &waiting) == 0 && waiting > 0) {
        if (TClock::now() >= deadline) {
            flush(port, TCOFLUSH);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace

struct CommPort::TSystem::TState
{
    TDescriptor port;
    /// Readable once the port is interrupted, so that a waiting poll returns.
    TDescriptor wake{::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)};
    std::atomic<bool> interrupted = false;
    /// Keeps the two in step: an interruption is either of the port before the opening or of the one after.
    std::mutex interruption;

    void interrupt();
    void clearInterruption();
    /// Whether the port became ready in time; false also when interrupted. `failed` tells a port that is
    /// gone.
    bool waitFor(short events, TClock::time_point deadline, bool& failed);
};

void CommPort::TSystem::TState::interrupt()
{
    const std::lock_guard lock(interruption);
    interrupted = true;
    ::eventfd_write(wake.get(), 1);
}

void CommPort::TSystem::TState::clearInterruption()
{
    const std::lock_guard lock(interruption);
    eventfd_t count = 0;
    ::eventfd_read(wake.get(), &count);
    interrupted = false;
}

bool CommPort::TSystem::TState::waitFor(short events, TClock::time_point deadline, bool& failed)
{
    failed = false;
    while (!interrupted) {
        pollfd waits[] = {{port.get(), events, 0}, {wake.get(), POLLIN, 0}};
        const int ready = ::poll(waits, 2, remainingMs(deadline));
        if (ready > 0 && (waits[0].revents & events) != 0)
            return true;
        if (ready < 0 ? errno != EINTR : (waits[0].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
            failed = true;
            return false;
        }
        if ((ready > 0 && waits[1].revents != 0) || TClock::now() >= deadline)
            return false;
    }
    return false;
}

CommPort::TSystem::TSystem() : m_state(std::make_unique<TState>()) {}

CommPort::TSystem::~TSystem() = default;

void CommPort::TSystem::open(const std::string& name, const TCommSettings& settings)
{
    if (!m_state->wake.isOpen()) // Nothing could end a wait.
        throw TCommError(TCommError::TReason::ConnectFailed, "Connect failed");
    m_state->clearInterruption();
    m_state->port = serial::openAlone(name);
    try {
        serial::setUp(m_state->port.get(), settings);
    } catch (const TCommError&) {
        close();
        throw;
    }
}

bool CommPort::TSystem::isOpen() const
{
    return m_state->port.isOpen();
}

void CommPort::TSystem::close()
{
    if (!isOpen())
        return;
    drainOrDrop(m_state->port.get());
    ::ioctl(m_state->port.get(), TIOCNXCL);
    m_state->port.reset();
}

int CommPort::TSystem::read(char* data, int size, int timeoutMs)
{
    if (!isOpen())
        return -1;
    const TClock::time_point deadline = deadlineAfter(timeoutMs);
    bool failed = false;
    while (m_state->waitFor(POLLIN, deadline, failed)) {
        const ssize_t count = ::read(m_state->port.get(), data, static_cast<std::size_t>(size));
        if (count > 0)
            return static_cast<int>(count);
        if (count == 0 || (errno != EAGAIN && errno != EINTR))
            return -1; // hung up
    }
    return failed ? -1 : 0;
}

bool CommPort::TSystem::write(const char* data, int size, int timeoutMs)
{
    if (!isOpen())
        return false;
    const TClock::time_point deadline = deadlineAfter(timeoutMs);
    bool failed = false;
    int done = 0;
    while (done < size) {
        const ssize_t count =
            ::write(m_state->port.get(), data + done, static_cast<std::size_t>(size - done));
        const bool mustWait = count < 0 && (errno == EAGAIN || errno == EINTR);
        if (count > 0)
            done += static_cast<int>(count);
        else if (!mustWait || !m_state->waitFor(POLLOUT, deadline, failed))
            return false;
    }
    return true;
}

bool CommPort::TSystem::purgeInput()
{
    return isOpen() && flush(m_state->port.get(), TCIFLUSH);
}

bool CommPort::TSystem::purgeOutput()
{
    return isOpen() && flush(m_state->port.get(), TCOFLUSH);
}

void CommPort::TSystem::interrupt()
{
    m_state->interrupt();
}

bool CommPort::TSystem::isInterrupted() const
{
    return m_state->interrupted;
}

void CommPort::TSystem::resume()
{
    m_state->clearInterruption();
}

#endif // _WIN32
