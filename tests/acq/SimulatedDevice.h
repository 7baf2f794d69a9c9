#pragma once

#include "support/PseudoTerminal.h"

#include <QByteArray>
#include <QElapsedTimer>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

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
        m_toSend.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    }
    /// Answers an identify command with this.
    void setIdentity(const QByteArray& answer)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_identity = answer.toStdString();
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
        return QByteArray::fromStdString(m_commands);
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
        return m_times.at(static_cast<std::size_t>(second)) - m_times.at(static_cast<std::size_t>(first));
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
        while (m_streams && m_sent < m_toSend.size()) {
            const std::size_t most = std::min<std::size_t>(m_toSend.size() - m_sent, 4096);
            const int count = m_line.writeSome(m_toSend.data() + m_sent, static_cast<int>(most));
            if (count == 0)
                break;
            m_sent += static_cast<std::size_t>(count);
        }
        return true;
    }

    void obey(char command)
    {
        const char before = m_commands.empty() ? '\0' : m_commands.back();
        m_commands.push_back(command);
        m_times.push_back(m_clock.elapsed());
        if (command == 9 && before == 1)
            m_streams = true;
        else if (command == 1 || command == 2)
            m_streams = false;
        else if (command == 11)
            m_line.writeAll(QByteArray::fromStdString(m_identity));
    }

    TPseudoTerminal m_line;
    mutable std::mutex m_mutex;
    QElapsedTimer m_clock;
    // Nothing of Qt's shared data goes from thread to thread here: the thread sanitizer would not see who has
    // it.
    std::string m_commands;
    std::vector<qint64> m_times;
    std::string m_toSend;
    std::size_t m_sent = 0;
    std::string m_identity;
    bool m_streams = false;
    bool m_ends = false;
    std::thread m_thread;
};
