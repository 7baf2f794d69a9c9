#ifndef _WIN32

#include "platform/CommPortSystem.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <thread>
#include <utility>

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <fcntl.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

// The settings are those of the kernel's termios2, which takes any baud rate; the C library's termios knows
// only the standard ones, and 570000 is none of them.

namespace {

/// A file descriptor that is closed with its owner.
class TDescriptor
{
public:
    explicit TDescriptor(int descriptor = -1) : m_descriptor(descriptor) {}
    ~TDescriptor() { reset(); }
    TDescriptor(const TDescriptor&) = delete;
    TDescriptor& operator=(const TDescriptor&) = delete;

    int get() const { return m_descriptor; }
    bool isOpen() const { return m_descriptor >= 0; }
    int release() { return std::exchange(m_descriptor, -1); }
    void reset(int descriptor = -1)
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        m_descriptor = descriptor;
    }

private:
    int m_descriptor;
};

TCommError openError(int error)
{
    using TReason = TCommError::TReason;
    switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return {TReason::PortNotFound, "Port not found"};
    case ENAMETOOLONG:
    case ENOTDIR:
    case ENOTTY:
    case EISDIR:
        return {TReason::InvalidPort, "Invalid port"};
    case EACCES:
    case EBUSY:
    case EPERM:
        return {TReason::PortInUse, "Port already in use"};
    default:
        return {TReason::ConnectFailed, "Connect failed"};
    }
}

[[noreturn]] void failSetup(const char* text)
{
    throw TCommError(TCommError::TReason::SetupFailed, text);
}

std::string pathOf(const std::string& name)
{
    if (name.empty())
        throw openError(ENOTTY);
    return name.front() == '/' ? name : "/dev/" + name;
}

tcflag_t characterSize(int dataBits)
{
    switch (dataBits) {
    case 5:
        return CS5;
    case 6:
        return CS6;
    case 7:
        return CS7;
    default:
        return CS8;
    }
}

void applySettings(termios2& tty, const TCommSettings& settings)
{
    // Raw bytes, but parity stays as it is.
    tty.c_iflag &= ~static_cast<tcflag_t>(IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL | IUCLC |
                                          IXON | IXOFF);
    tty.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    tty.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    tty.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | CBAUD | (CBAUD << IBSHIFT));
    tty.c_cflag |= CREAD | CLOCAL | BOTHER | (BOTHER << IBSHIFT) | characterSize(settings.dataBits);
    if (settings.stopBits == 2)
        tty.c_cflag |= CSTOPB;
    if (settings.flowControl == TCommSettings::TFlowControl::None)
        tty.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
    tty.c_ispeed = tty.c_ospeed = static_cast<speed_t>(settings.baud);
    tty.c_cc[VMIN] = 0;
    tty.c_cc[VTIME] = 0;
}

void restControlLines(int port)
{
    // Ports without such lines, such as pseudo-terminals, refuse; that is no failure.
    const int lines = TIOCM_DTR | TIOCM_RTS;
    ::ioctl(port, TIOCMBIC, &lines);
}

/// Bytes at once instead of after the chip's pause: a block of samples must not wait for the next one.
void askForLowLatency(int port)
{
    serial_struct serial{};
    if (::ioctl(port, TIOCGSERIAL, &serial) == 0) {
        serial.flags |= ASYNC_LOW_LATENCY;
        ::ioctl(port, TIOCSSERIAL, &serial);
    }
}

bool flush(int port, int queue)
{
    return ::ioctl(port, TCFLSH, queue) == 0;
}

void setUp(int port, const TCommSettings& settings)
{
    termios2 tty{};
    if (::ioctl(port, TCGETS2, &tty) != 0)
        failSetup("GetCommState failed");
    applySettings(tty, settings);
    if (::ioctl(port, TCSETS2, &tty) != 0)
        failSetup("SetCommState failed");
    if (settings.flowControl == TCommSettings::TFlowControl::None)
        restControlLines(port);
    askForLowLatency(port);
    if (!flush(port, TCIOFLUSH))
        failSetup("PurgeComm failed");
}

int openAlone(const std::string& path)
{
    TDescriptor port(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!port.isOpen())
        throw openError(errno);
    if (::isatty(port.get()) == 0)
        throw openError(ENOTTY);
    // The lock stops a second program of ours even where it may pass over the terminal's exclusive mode.
    if (::flock(port.get(), LOCK_EX | LOCK_NB) != 0)
        throw openError(EBUSY);
    if (::ioctl(port.get(), TIOCEXCL) != 0)
        throw openError(errno);
    return port.release();
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
    m_state->port.reset(openAlone(pathOf(name)));
    try {
        setUp(m_state->port.get(), settings);
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
