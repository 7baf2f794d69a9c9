#pragma once

#include "equipment/TOlmoThread.h"
#include "equipment/TPortEquipment.h"

/// The driver of an OLMO bicycle ergometer. It takes its first load about seven seconds after its creation,
/// for the device is reset then.
class TOlmoErgometer : public TPortEquipment
{
public:
    /// `port` is a name that CommPort takes.
    explicit TOlmoErgometer(const std::string& port, const TOlmoTimes& times = {});
};
