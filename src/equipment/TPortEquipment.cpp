#include "equipment/TPortEquipment.h"

#include "equipment/TEquipmentThread.h"

#include <QByteArray>

#include <cmath>
#include <utility>

namespace {

struct TNamedValue
{
    const char* name;
    double TEquipmentValues::*value;
};

constexpr TNamedValue namedValues[] = {
    {"speed", &TEquipmentValues::speed},
    {"incline", &TEquipmentValues::incline},
    {"workload", &TEquipmentValues::workload},
};

} // namespace

TPortEquipment::TPortEquipment(TKind kind, std::unique_ptr<TEquipmentThread> thread)
    : TEquipment(kind, std::move(thread))
{
    this->thread().start(QThread::InheritPriority);
}

bool TPortEquipment::start()
{
    thread().requestStart();
    return true;
}

bool TPortEquipment::stop()
{
    thread().requestStop();
    return true;
}

bool TPortEquipment::commit()
{
    thread().requestCommit(m_values);
    return true;
}

bool TPortEquipment::setValue(const char* name, double value)
{
    for (const TNamedValue& known : namedValues) {
        if (std::isfinite(value) && qstricmp(name, known.name) == 0)
            m_values.*known.value = value;
    }
    return true;
}
