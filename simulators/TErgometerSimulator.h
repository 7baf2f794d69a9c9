#pragma once

#include "simulators/TEquipmentSimulator.h"

/// An OLMO ergometer: takes one-letter commands, and after `d` and `i` a number with a line feed, and answers
/// with lines.
class TErgometerSimulator : public TEquipmentSimulator
{
public:
    explicit TErgometerSimulator(const TEquipmentSimulatorOptions& options = {});

protected:
    void take(char byte) override;

private:
    enum class TExpected
    {
        Command,
        FirstLoad, ///< `d`, after `p`
        Load,      ///< a number
        Change     ///< a number
    };

    /// False if the byte is none of a number's.
    bool takeNumber(char byte);
    void endNumber();
    void takeCommand(char letter);
    std::string commandRemark(char letter) const;
    void obey(char letter);

    TExpected m_expected = TExpected::Command;
    std::string m_number;
    int m_load = 0; ///< watts
};
