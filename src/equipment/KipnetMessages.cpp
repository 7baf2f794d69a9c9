#include "equipment/KipnetMessages.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace kipnet {

namespace {

// The "0" behind the ";" is the place of the address, the last two digits are that of the check sum.
constexpr char goTemplate[] = ";0GO00:";
constexpr char stopTemplate[] = ";0ST00:";
constexpr char speedTemplate[] = ";0V000000:";
constexpr char inclineTemplate[] = ";0E000000:";
constexpr char loadTemplate[] = ";0N000000:";

constexpr char deviceAddress = '2';
constexpr std::size_t addressOffset = 1;
constexpr std::size_t valueOffset = 3;
constexpr std::size_t valueDigits = 4;

constexpr int maxSpeed = 400;   ///< tenths of km/h
constexpr int maxIncline = 200; ///< tenths of a percent
constexpr int maxLoad = 800;    ///< watts

char digit(unsigned value)
{
    return static_cast<char>('0' + value % 10);
}

/// Fills in address and check sum: the sum of what lies between the ";" and the check sum.
std::string sealed(std::string message)
{
    message[addressOffset] = deviceAddress;
    const std::size_t sumOffset = message.size() - 3;
    unsigned sum = 0;
    for (std::size_t i = addressOffset; i < sumOffset; ++i)
        sum += static_cast<unsigned char>(message[i]);
    sum %= 256;
    message[sumOffset] = digit(sum / 10);
    message[sumOffset + 1] = digit(sum);
    return message;
}

std::string withValue(const char* pattern, double value, int maximum)
{
    const int number = static_cast<int>(std::clamp<double>(value, 0, maximum));
    char digits[valueDigits + 1];
    std::snprintf(digits, sizeof digits, "%04d", number);
    return sealed(std::string(pattern).replace(valueOffset, valueDigits, digits));
}

} // namespace

std::string goMessage()
{
    return sealed(goTemplate);
}

std::string stopMessage()
{
    return sealed(stopTemplate);
}

std::string speedMessage(double kmPerHour)
{
    return withValue(speedTemplate, kmPerHour * 10, maxSpeed);
}

std::string inclineMessage(double percent)
{
    return withValue(inclineTemplate, percent * 10, maxIncline);
}

std::string loadMessage(double watts)
{
    return withValue(loadTemplate, watts, maxLoad);
}

} // namespace kipnet
