#include "simulators/TErgometerSimulator.h"

#include <charconv>
#include <utility>

namespace {

constexpr int maxLoad = 1000; ///< watts
constexpr std::size_t maxNumberBytes = 8;
constexpr char letters[] = "rcapdie";

std::string lines(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "ok\r\n";
    return text;
}

int answerLines(char letter)
{
    switch (letter) {
    case 'r':
        return 0;
    case 'c':
        return 3;
    case 'e':
        return 2;
    default:
        return 1;
    }
}

} // namespace

TErgometerSimulator::TErgometerSimulator(const TEquipmentSimulatorOptions& options)
    : TEquipmentSimulator(options)
{
}

void TErgometerSimulator::take(char byte)
{
    const bool isNumber = m_expected == TExpected::Load || m_expected == TExpected::Change;
    if (!isNumber || !takeNumber(byte))
        takeCommand(byte);
}

bool TErgometerSimulator::takeNumber(char byte)
{
    if (byte == '\n') {
        endNumber();
        return true;
    }
    if ((byte >= '0' && byte <= '9') || byte == '-') {
        m_number += byte;
        if (m_number.size() < maxNumberBytes)
            return true;
    }
    if (!m_number.empty())
        receive(m_number, "number is not ended", {});
    m_number.clear();
    m_expected = TExpected::Command;
    return byte == '-' || (byte >= '0' && byte <= '9');
}

void TErgometerSimulator::endNumber()
{
    int value = 0;
    const char* const end = m_number.data() + m_number.size();
    const auto [rest, error] = std::from_chars(m_number.data(), end, value);
    const int load = m_expected == TExpected::Change ? m_load + value : value;
    std::string remark;
    if (error != std::errc() || rest != end)
        remark = "no number";
    else if (load <= 0 || load > maxLoad)
        remark = "load out of range";
    else
        m_load = load;
    m_expected = TExpected::Command;
    const std::string text = std::exchange(m_number, {});
    receive(text, remark, lines(2));
}

void TErgometerSimulator::takeCommand(char letter)
{
    const std::string remark = commandRemark(letter);
    m_expected = TExpected::Command;
    if (remark.empty())
        obey(letter);
    receive({letter}, remark, lines(answerLines(letter)));
}

std::string TErgometerSimulator::commandRemark(char letter) const
{
    if (std::string(letters).find(letter) == std::string::npos)
        return "unknown command";
    if (letter == 'd' && m_expected != TExpected::FirstLoad)
        return "not prepared";
    if ((letter == 'i' || letter == 'e') && m_load == 0)
        return "no load";
    return {};
}

void TErgometerSimulator::obey(char letter)
{
    if (letter == 'r' || letter == 'e')
        m_load = 0;
    else if (letter == 'p')
        m_expected = TExpected::FirstLoad;
    else if (letter == 'd')
        m_expected = TExpected::Load;
    else if (letter == 'i')
        m_expected = TExpected::Change;
}
