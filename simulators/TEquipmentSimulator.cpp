#include "simulators/TEquipmentSimulator.h"

namespace {

constexpr int turnMs = 5;

} // namespace

TEquipmentSimulator::TEquipmentSimulator(const TEquipmentSimulatorOptions& options)
    : m_options(options), m_port(options.link)
{
}

void TEquipmentSimulator::run(const std::function<bool()>& isDone)
{
    while (!isDone()) {
        takeBytes();
        sendDueAnswers();
    }
}

std::vector<TReceivedMessage> TEquipmentSimulator::messages() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_messages;
}

void TEquipmentSimulator::takeBytes()
{
    if (!m_port.isOpen()) {
        m_port.sleep(turnMs);
        return;
    }
    char bytes[64];
    const int count = m_port.read(bytes, sizeof bytes, turnMs);
    for (int i = 0; i < count && m_port.isOpen(); ++i)
        take(bytes[i]);
}

void TEquipmentSimulator::receive(const std::string& text, const std::string& remark,
                                  const std::string& answer)
{
    const double seconds = std::chrono::duration<double>(TClock::now() - m_start).count();
    const TReceivedMessage message{text, remark, seconds};
    std::size_t number = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        number = m_messages.size();
        m_messages.push_back(message);
    }
    if (onMessage)
        onMessage(message);
    if (isFaulty(number))
        answerFaulty(message.isValid() ? answer : std::string());
    else if (message.isValid())
        send(answer);
}

bool TEquipmentSimulator::isFaulty(std::size_t message) const
{
    const auto number = static_cast<long long>(message) - m_options.faultAfter;
    return number >= 0 && (m_options.faultTimes < 0 || number < m_options.faultTimes);
}

void TEquipmentSimulator::answerFaulty(const std::string& answer)
{
    using TFault = TEquipmentSimulatorOptions::TFault;
    if (m_options.fault == TFault::None)
        send(answer);
    else if (m_options.fault == TFault::Short && !answer.empty())
        send(answer.substr(0, answer.size() - 1));
    else if (m_options.fault == TFault::Late)
        m_lateAnswers.push_back({TClock::now() + std::chrono::milliseconds(m_options.lateMs), answer});
    else if (m_options.fault == TFault::HangUp)
        m_port.close();
}

void TEquipmentSimulator::sendDueAnswers()
{
    const TClock::time_point now = TClock::now();
    while (!m_lateAnswers.empty() && m_lateAnswers.front().due <= now) {
        send(m_lateAnswers.front().text);
        m_lateAnswers.erase(m_lateAnswers.begin());
    }
}

void TEquipmentSimulator::send(const std::string& text)
{
    // Answers are short, and nobody reads an answer that found no room.
    if (m_port.isOpen() && !text.empty())
        m_port.write(text.data(), static_cast<int>(text.size()));
}
