#pragma once

#include "simulators/TSimulatedPort.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// How a simulated treadmill or ergometer behaves. The fault begins when `faultAfter` messages have been
/// served well, and lasts for `faultTimes` messages; below 0 for good.
struct TEquipmentSimulatorOptions
{
    enum class TFault
    {
        None,
        Silent, ///< no answer
        Short,  ///< the answer's last byte is missing
        Late,   ///< the answer comes after `lateMs`
        HangUp  ///< the cable is pulled when the message has come, for good
    };

    std::string link; ///< symbolic link to the port; empty for none
    TFault fault = TFault::None;
    int faultAfter = 0;
    int faultTimes = -1;
    int lateMs = 1000;
};

/// Something that a simulated device was sent.
struct TReceivedMessage
{
    std::string text;     ///< without a line feed
    std::string remark;   ///< what is wrong with it; empty if nothing is
    double seconds = 0.0; ///< since the device was made

    bool isValid() const { return remark.empty(); }
};

/// A device that is sent messages and answers each that is valid, at the far end of a pseudo-terminal. One
/// thread serves it; only `messages` may be asked from another one.
class TEquipmentSimulator
{
public:
    virtual ~TEquipmentSimulator() = default;

    /// Where the program finds the device.
    std::string path() const { return m_port.path(); }
    /// Is told of each message as it arrives.
    std::function<void(const TReceivedMessage&)> onMessage;

    /// Serves the line until `isDone` says so; it is asked about every 5 ms.
    void run(const std::function<bool()>& isDone);

    /// All so far, in their order.
    std::vector<TReceivedMessage> messages() const;

protected:
    explicit TEquipmentSimulator(const TEquipmentSimulatorOptions& options);

    virtual void take(char byte) = 0;
    /// Derived classes call it with each message; one with a remark gets no answer.
    void receive(const std::string& text, const std::string& remark, const std::string& answer);

private:
    using TClock = std::chrono::steady_clock;
    struct TAnswer
    {
        TClock::time_point due;
        std::string text;
    };

    void takeBytes();
    void sendDueAnswers();
    bool isFaulty(std::size_t message) const;
    void answerFaulty(const std::string& answer);
    void send(const std::string& text);

    const TEquipmentSimulatorOptions m_options;
    TSimulatedPort m_port;
    const TClock::time_point m_start = TClock::now();
    std::vector<TAnswer> m_lateAnswers;
    mutable std::mutex m_mutex; ///< guards the messages
    std::vector<TReceivedMessage> m_messages;
};
