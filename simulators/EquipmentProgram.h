#pragma once

#include "simulators/TEquipmentSimulator.h"

#include <functional>
#include <memory>

namespace sim {

/// The program around a simulated treadmill or ergometer: its options, its log, its end. Returns the exit
/// status.
int runEquipmentProgram(
    int argc, char* argv[], const char* description,
    const std::function<std::unique_ptr<TEquipmentSimulator>(const TEquipmentSimulatorOptions&)>& makeDevice);

} // namespace sim
