#pragma once

#include "equipment/TKipnetThread.h"
#include "equipment/TPortEquipment.h"

/// The driver of a Kipnet treadmill, or of an ergometer that speaks as one.
class TKipnetTreadmill : public TPortEquipment
{
public:
    struct TOptions
    {
        TKind kind = Treadmill;
        TKipnetTimes times = {};
        QString logPath = TKipnetLog::defaultPath();
    };

    /// `port` is a name that CommPort takes.
    explicit TKipnetTreadmill(const std::string& port);
    TKipnetTreadmill(const std::string& port, const TOptions& options);
};
