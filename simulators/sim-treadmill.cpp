#include "simulators/EquipmentProgram.h"
#include "simulators/TTreadmillSimulator.h"

int main(int argc, char* argv[])
{
    return sim::runEquipmentProgram(argc, argv, "A simulated treadmill.",
                                    [](const TEquipmentSimulatorOptions& options) {
                                        return std::make_unique<TTreadmillSimulator>(options);
                                    });
}
