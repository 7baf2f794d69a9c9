#pragma once

#include "simulators/TEquipmentSimulator.h"

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

/// False if it has not come true in time.
inline bool comesTrue(const std::function<bool()>& condition, int timeoutMs = 10000)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

/// A simulated device with a thread of its own.
template <class TSimulator> class TServedDevice
{
public:
    explicit TServedDevice(const TEquipmentSimulatorOptions& options = {})
        : m_device(options), m_thread([this] { m_device.run([this] { return m_ends.load(); }); })
    {
    }
    ~TServedDevice()
    {
        m_ends = true;
        m_thread.join();
    }

    std::string path() const { return m_path; }

    std::vector<TReceivedMessage> messages() const { return m_device.messages(); }
    /// All messages, with a blank between them; a wrong one bears its remark.
    QByteArray told() const
    {
        std::string text;
        for (const TReceivedMessage& message : messages())
            text += (text.empty() ? "" : " ") + message.text +
                    (message.isValid() ? "" : "(" + message.remark + ")");
        return QByteArray::fromStdString(text);
    }
    /// Waits for that many messages.
    bool hasReceived(std::size_t count) const
    {
        return comesTrue([&] { return messages().size() >= count; });
    }
    /// Waits for these messages, and a moment for one too many.
    bool isTold(const QByteArray& expected) const
    {
        const bool came = comesTrue([&] { return told() == expected; });
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        return came && told() == expected;
    }

private:
    TSimulator m_device;
    const std::string m_path = m_device.path();
    std::atomic<bool> m_ends = false;
    std::thread m_thread;
};
