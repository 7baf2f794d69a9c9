#ifndef _WIN32

#include "platform/SerialLine.h"

#include <cerrno>

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <fcntl.h>
#include <linux/serial.h>
#include <sys/file.h>
#include <sys/ioctl.h>

// The settings are those of the kernel's termios2, which takes any baud rate; the C library's termios knows
// only the standard ones, and 570000 is none of them.

namespace serial {

namespace {

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

} // namespace

TDescriptor openAlone(const std::string& name)
{
    const std::string path = pathOf(name);
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
    return port;
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
    if (::ioctl(port, TCFLSH, TCIOFLUSH) != 0)
        failSetup("PurgeComm failed");
}

} // namespace serial

#endif // _WIN32
