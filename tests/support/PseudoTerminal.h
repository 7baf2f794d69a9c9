#pragma once

#include <QByteArray>
#include <QElapsedTimer>

#include <stdexcept>
#include <string>

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

/// A serial line without hardware: the program opens `path()`, the test is what stands at the other end.
class TPseudoTerminal
{
public:
    TPseudoTerminal() : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
        char name[64];
        if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0 ||
            ::ptsname_r(m_master, name, sizeof name) != 0)
            throw std::runtime_error("no pseudo-terminal");
        m_path = name;
    }
    ~TPseudoTerminal() { hangUp(); }
    TPseudoTerminal(const TPseudoTerminal&) = delete;
    TPseudoTerminal& operator=(const TPseudoTerminal&) = delete;

    const std::string& path() const { return m_path; }
    int descriptor() const { return m_master; }

    /// The line is cut; the path is gone.
    void hangUp()
    {
        if (m_master >= 0)
            ::close(m_master);
        m_master = -1;
    }

    /// What fits at once; returns the bytes taken.
    int writeSome(const char* data, int size)
    {
        const ssize_t count = ::write(m_master, data, static_cast<std::size_t>(size));
        return count > 0 ? static_cast<int>(count) : 0;
    }

    bool writeAll(const QByteArray& bytes, int timeoutMs = 5000)
    {
        QElapsedTimer timer;
        timer.start();
        int done = 0;
        while (done < bytes.size() && timer.elapsed() < timeoutMs) {
            const int count = writeSome(bytes.constData() + done, bytes.size() - done);
            done += count;
            if (count == 0)
                wait(POLLOUT, 5);
        }
        return done == bytes.size();
    }

    /// What has come by now, at most `size` bytes.
    QByteArray readSome(int size = 65536)
    {
        QByteArray bytes(size, '\0');
        const ssize_t count = ::read(m_master, bytes.data(), static_cast<std::size_t>(size));
        bytes.resize(count > 0 ? static_cast<int>(count) : 0);
        return bytes;
    }

    /// `size` bytes, fewer if they do not come in time.
    QByteArray readAll(int size, int timeoutMs = 5000)
    {
        QElapsedTimer timer;
        timer.start();
        QByteArray bytes;
        while (bytes.size() < size && timer.elapsed() < timeoutMs) {
            wait(POLLIN, 5);
            bytes += readSome(size - bytes.size());
        }
        return bytes;
    }

    /// Until one of the events, or that time; a line that nobody has opened is waited for, too.
    void wait(short events, int timeoutMs)
    {
        pollfd waits{m_master, events, 0};
        ::poll(&waits, 1, timeoutMs);
        if ((waits.revents & POLLHUP) != 0)
            ::usleep(1000);
    }

private:
    int m_master;
    std::string m_path;
};
