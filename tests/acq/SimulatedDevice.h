#pragma once

#include "support/PseudoTerminal.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QVector>

#include <chrono>
#include <mutex>
#include <thread>

/// A device at the far end of a pseudo-terminal. It notes the commands that come, and sends what it is fed
/// from the keep alive command after a start on until a stop. (Not from the start itself: what is sent before
/// the second start is purged, and the tests count frames.)
class TSimulatedDevice
{
public:
    TSimulatedDevice() : m_thread([this] { run(); }) {}
    ~TSimulatedDevice()
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_ends = true;
        }
        m_thread.join();
    }

    const std::string& path() const { return m_line.path(); }

    void feed(const QByteArray& bytes)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_toSend += bytes;
    }
    /// Answers an identify command with this.
    void setIdentity(const QByteArray& answer)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_identity = answer;
    }
    void hangUp()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_line.hangUp();
    }

    /// All commands so far.
    QByteArray commands() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_commands;
    }
    void forgetCommands()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_commands.clear();
        m_times.clear();
    }
    /// Milliseconds between the commands `first` and `second`, counted in the order in which they came.
    qint64 msBetween(int first, int second) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_times.value(second) - m_times.value(first);
    }
    bool waitForCommands(const QByteArray& expected, int timeoutMs = 5000) const
    {
        QElapsedTimer timer;
        timer.start();
        while (commands() != expected && timer.elapsed() < timeoutMs)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return commands() == expected;
    }

private:
    void run()
    {
        m_clock.start();
        while (turn())
            std::this_thread::sleep_for(std::chrono::microseconds(500));
    }

    bool turn()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_ends)
            return false;
        for (const char command : m_line.readSome(256))
            obey(command);
        while (m_streams && !m_toSend.isEmpty()) {
            const int count = m_line.writeSome(m_toSend.constData(), qMin(m_toSend.size(), 4096));
            if (count == 0)
                break;
            m_toSend.remove(0, count);
        }
        return true;
    }

    void obey(char command)
    {
        const char before = m_commands.isEmpty() ? '\0' : m_commands.back();
        m_commands.append(command);
        m_times.append(m_clock.elapsed());
        if (command == 9 && before == 1)
            m_streams = true;
        else if (command == 1 || command == 2)
            m_streams = false;
        else if (command == 11)
            m_line.writeAll(m_identity);
    }

    TPseudoTerminal m_line;
    mutable std::mutex m_mutex;
    QElapsedTimer m_clock;
    QByteArray m_commands;
    QVector<qint64> m_times;
    QByteArray m_toSend;
    QByteArray m_identity;
    bool m_streams = false;
    bool m_ends = false;
    std::thread m_thread;
};
