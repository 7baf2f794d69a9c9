#include "simulators/TSimulatedPort.h"

#include "base/Error.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {

/// Opens both ends raw; false if that fails.
bool openEnds(int& device, int& holder, std::string& port)
{
    device = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char name[128] = {};
    if (device < 0 || ::grantpt(device) != 0 || ::unlockpt(device) != 0 ||
        ::ptsname_r(device, name, sizeof name) != 0)
        return false;
    port = name;
    holder = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios tty{};
    if (holder < 0 || ::tcgetattr(holder, &tty) != 0)
        return false;
    ::cfmakeraw(&tty);
    return ::tcsetattr(holder, TCSANOW, &tty) == 0;
}

/// Also where a program that was killed has left its link.
bool makeLink(const std::string& port, const std::string& link)
{
    struct stat there = {};
    if (::lstat(link.c_str(), &there) == 0 && S_ISLNK(there.st_mode))
        ::unlink(link.c_str());
    return ::symlink(port.c_str(), link.c_str()) == 0;
}

/// Unless it has become another's, or was never ours.
void removeLink(const std::string& port, const std::string& link)
{
    char target[128];
    const ssize_t size = ::readlink(link.c_str(), target, sizeof target);
    if (size > 0 && port == std::string(target, static_cast<std::size_t>(size)))
        ::unlink(link.c_str());
}

void closeEnd(int& end)
{
    if (end >= 0)
        ::close(std::exchange(end, -1));
}

} // namespace

TSimulatedPort::TSimulatedPort(const std::string& link) : m_link(link)
{
    open();
}

TSimulatedPort::~TSimulatedPort()
{
    close();
}

void TSimulatedPort::open()
{
    close();
    if (!openEnds(m_device, m_holder, m_port) || (!m_link.empty() && !makeLink(m_port, m_link))) {
        close();
        throw TError("Cannot create pseudo-terminal");
    }
}

void TSimulatedPort::close()
{
    if (isOpen() && !m_link.empty())
        removeLink(m_port, m_link);
    closeEnd(m_holder);
    closeEnd(m_device);
}

int TSimulatedPort::read(char* data, int size, int timeoutMs)
{
    pollfd wait{m_device, POLLIN, 0};
    if (::poll(&wait, 1, timeoutMs) <= 0 || (wait.revents & POLLIN) == 0)
        return 0;
    return static_cast<int>(std::max<ssize_t>(0, ::read(m_device, data, static_cast<std::size_t>(size))));
}

int TSimulatedPort::write(const char* data, int size)
{
    return static_cast<int>(std::max<ssize_t>(0, ::write(m_device, data, static_cast<std::size_t>(size))));
}

bool TSimulatedPort::waitForRoom(int timeoutMs)
{
    pollfd wait{m_device, POLLOUT, 0};
    return ::poll(&wait, 1, timeoutMs) > 0 && (wait.revents & POLLOUT) != 0;
}

void TSimulatedPort::sleep(int ms)
{
    ::poll(nullptr, 0, ms);
}
