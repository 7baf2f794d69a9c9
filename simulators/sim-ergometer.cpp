#include "simulators/EquipmentProgram.h"
#include "simulators/TErgometerSimulator.h"

int main(int argc, char* argv[])
{
    return sim::runEquipmentProgram(argc, argv, "A simulated ergometer.",
                                    [](const TEquipmentSimulatorOptions& options) {
                                        return std::make_unique<TErgometerSimulator>(options);
                                    });
}
