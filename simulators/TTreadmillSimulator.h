#pragma once

#include "simulators/TEquipmentSimulator.h"

/// A Kipnet treadmill: takes messages between ";" and ":" that go on (GO), stop (ST), set a speed (V), an
/// incline (E) or a load (N), and sends each back as its answer.
class TTreadmillSimulator : public TEquipmentSimulator
{
public:
    explicit TTreadmillSimulator(const TEquipmentSimulatorOptions& options = {});

protected:
    void take(char byte) override;

private:
    std::string m_message; ///< from its ";" on
};

/// What is wrong with a message from ";" to ":"; empty if nothing is.
std::string treadmillRemark(const std::string& message);
