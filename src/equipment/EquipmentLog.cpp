#include "equipment/EquipmentLog.h"

Q_LOGGING_CATEGORY(equipmentLog, "velantor.equipment")
