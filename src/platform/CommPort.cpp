#include "platform/CommPort.h"

#include "platform/CommPortSystem.h"

#include <algorithm>
#include <chrono>
#include <cstring>

CommPort::CommPort() : m_system(std::make_unique<TSystem>()) {}

CommPort::~CommPort()
{
    close();
}

void CommPort::open(const std::string& name, const TCommSettings& settings)
{
    close();
    m_settings = settings;
    m_input.resize(static_cast<std::size_t>(std::max(settings.inputQueueBytes, 1)));
    m_failed = false;
    m_system->open(name, settings);
}

bool CommPort::isOpen() const
{
    return m_system->isOpen();
}

void CommPort::close()
{
    m_system->close();
    m_next = m_end = 0;
}

int CommPort::read(char* data, int size)
{
    using TClock = std::chrono::steady_clock;
    const auto deadline = TClock::now() + std::chrono::milliseconds(m_settings.readTimeoutMs);
    const auto remainingMs = [deadline] {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - TClock::now());
        return static_cast<int>(left.count());
    };
    int done = 0;
    while (done < size) {
        if (m_next == m_end && !fillWithin(remainingMs()))
            break;
        const int available =
            static_cast<int>(std::min<std::size_t>(m_end - m_next, static_cast<std::size_t>(size - done)));
        std::memcpy(data + done, m_input.data() + m_next, static_cast<std::size_t>(available));
        m_next += static_cast<std::size_t>(available);
        done += available;
    }
    return done == 0 && m_failed ? -1 : done;
}

bool CommPort::fill()
{
    return fillWithin(m_settings.readTimeoutMs);
}

bool CommPort::fillWithin(int timeoutMs)
{
    m_next = m_end = 0;
    const int count =
        m_system->read(m_input.data(), static_cast<int>(m_input.size()), std::max(timeoutMs, 0));
    m_failed = count < 0;
    m_end = static_cast<std::size_t>(std::max(count, 0));
    return count > 0;
}

bool CommPort::write(const char* data, int size)
{
    return m_system->write(data, size, m_settings.writeTimeoutMs);
}

bool CommPort::purgeInput()
{
    m_next = m_end = 0;
    return m_system->purgeInput();
}

bool CommPort::purgeOutput()
{
    return m_system->purgeOutput();
}

void CommPort::interrupt()
{
    m_system->interrupt();
}

bool CommPort::isInterrupted() const
{
    return m_system->isInterrupted();
}

void CommPort::resume(int readTimeoutMs, int writeTimeoutMs)
{
    m_settings.readTimeoutMs = readTimeoutMs;
    m_settings.writeTimeoutMs = writeTimeoutMs;
    m_system->resume();
}
