#include "support/PseudoTerminal.h"

#include <QElapsedTimer>

#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

TPseudoTerminal::TPseudoTerminal() : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
{
    char name[64];
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0 ||
        ::ptsname_r(m_master, name, sizeof name) != 0)
        throw std::runtime_error("no pseudo-terminal");
    m_path = name;
}

void TPseudoTerminal::hangUp()
{
    if (m_master >= 0)
        ::close(m_master);
    m_master = -1;
}

int TPseudoTerminal::writeSome(const char* data, int size)
{
    const ssize_t count = ::write(m_master, data, static_cast<std::size_t>(size));
    return count > 0 ? static_cast<int>(count) : 0;
}

bool TPseudoTerminal::writeAll(const QByteArray& bytes, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    int done = 0;
    while (done < bytes.size() && timer.elapsed() < timeoutMs) {
        const int count = writeSome(bytes.constData() + done, bytes.size() - done);
        done += count;
        if (count == 0)
            wait(POLLOUT);
    }
    return done == bytes.size();
}

QByteArray TPseudoTerminal::readSome(int size)
{
    QByteArray bytes(size, '\0');
    const ssize_t count = ::read(m_master, bytes.data(), static_cast<std::size_t>(size));
    bytes.resize(count > 0 ? static_cast<int>(count) : 0);
    return bytes;
}

QByteArray TPseudoTerminal::readAll(int size, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    QByteArray bytes;
    while (bytes.size() < size && timer.elapsed() < timeoutMs) {
        wait(POLLIN);
        bytes += readSome(size - bytes.size());
    }
    return bytes;
}

void TPseudoTerminal::wait(short events)
{
    constexpr int turnMs = 5;
    pollfd waits{m_master, events, 0};
    ::poll(&waits, 1, turnMs);
    // A line that nobody has open is ready at once, with nothing.
    if ((waits.revents & POLLHUP) != 0)
        ::usleep(1000);
}
