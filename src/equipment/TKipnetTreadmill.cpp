#include "equipment/TKipnetTreadmill.h"

TKipnetTreadmill::TKipnetTreadmill(const std::string& port) : TKipnetTreadmill(port, TOptions()) {}

TKipnetTreadmill::TKipnetTreadmill(const std::string& port, const TOptions& options)
    : TPortEquipment(options.kind, std::make_unique<TKipnetThread>(port, options.times, options.logPath))
{
}
