#pragma once

#include "equipment/TEquipment.h"
#include "equipment/TEquipmentValues.h"

/// What the drivers of devices at a serial port have in common. The calls always return true: a link that
/// fails later is noted by the thread, and values are then accepted with nothing behind them.
class TPortEquipment : public TEquipment
{
public:
    bool isOk() override { return true; }
    bool start() override;
    bool stop() override;
    /// A commit that still waits is replaced: only the last values go out, always as they were together.
    bool commit() override;
    /// A value that is not finite, or has no known name, changes nothing.
    bool setValue(const char* name, double value) override;

protected:
    /// Starts the thread.
    TPortEquipment(TKind kind, std::unique_ptr<TEquipmentThread> thread);

private:
    TEquipmentValues m_values;
};
