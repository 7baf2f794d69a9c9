#include "simulators/TTreadmillSimulator.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr std::size_t maxMessageBytes = 16;
constexpr char ownAddress = '2';

struct TCommand
{
    const char* name;
    std::size_t digits;
    int maximum;
};

constexpr TCommand commands[] = {{"GO", 0, 0}, {"ST", 0, 0}, {"V", 4, 400}, {"E", 4, 200}, {"N", 4, 800}};

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// Of what stands between ";" and the check sum.
std::string checkSum(const std::string& body)
{
    const int sum = std::accumulate(body.begin(), body.end(), 0,
                                    [](int total, char byte) { return (total + (byte & 0xff)) & 0xff; });
    return {static_cast<char>('0' + sum / 10 % 10), static_cast<char>('0' + sum % 10)};
}

std::string valueRemark(const std::string& value, const TCommand& command)
{
    if (value.size() != command.digits)
        return "wrong length";
    if (!std::all_of(value.begin(), value.end(), isDigit))
        return "value is no number";
    return !value.empty() && std::stoi(value) > command.maximum ? "value out of range" : "";
}

std::string commandRemark(const std::string& body)
{
    for (const TCommand& command : commands) {
        const std::string name = command.name;
        if (body.compare(0, name.size(), name) == 0)
            return valueRemark(body.substr(name.size()), command);
    }
    return "unknown command";
}

} // namespace

std::string treadmillRemark(const std::string& message)
{
    constexpr std::size_t shortest = 5; // ";", the address, the check sum, ":"
    if (message.size() < shortest)
        return "wrong length";
    const std::string body = message.substr(1, message.size() - 4);
    if (body.front() != ownAddress)
        return "wrong address";
    if (message.substr(message.size() - 3, 2) != checkSum(body))
        return "wrong check sum";
    return commandRemark(body.substr(1));
}

TTreadmillSimulator::TTreadmillSimulator(const TEquipmentSimulatorOptions& options)
    : TEquipmentSimulator(options)
{
}

void TTreadmillSimulator::take(char byte)
{
    if (m_message.empty() && byte != ';') {
        receive({byte}, "outside of a message", {});
        return;
    }
    if (byte == ';' && !m_message.empty()) {
        receive(m_message, "not ended", {});
        m_message.clear();
    }
    m_message += byte;
    if (byte == ':')
        receive(m_message, treadmillRemark(m_message), m_message);
    else if (m_message.size() == maxMessageBytes)
        receive(m_message, "too long", {});
    else
        return;
    m_message.clear();
}
