#include "equipment/EquipmentFactory.h"

#include "equipment/TKipnetTreadmill.h"
#include "equipment/TOlmoErgometer.h"

std::unique_ptr<TEquipment> createEquipment(TEquipment::TKind kind, const QString& name, const QString& port)
{
    const std::string portName = port.toLocal8Bit().toStdString();
    if (name == QLatin1String("kipmachines")) {
        TKipnetTreadmill::TOptions options;
        options.kind = kind;
        return std::make_unique<TKipnetTreadmill>(portName, options);
    }
    if (name == QLatin1String("olmo") && kind == TEquipment::Ergometer)
        return std::make_unique<TOlmoErgometer>(portName);
    return nullptr;
}
