#include "equipment/EquipmentFactory.h"

#include "base/Text.h"
#include "equipment/TKipnetTreadmill.h"
#include "equipment/TOlmoErgometer.h"

std::unique_ptr<TEquipment> createEquipment(TEquipment::TKind kind, const QString& name, const QString& port)
{
    const std::string portName = velantor::toText(port).toStdString();
    if (name == QLatin1String("kipmachines")) {
        TKipnetTreadmill::TOptions options;
        options.kind = kind;
        return std::make_unique<TKipnetTreadmill>(portName, options);
    }
    if (name == QLatin1String("olmo") && kind == TEquipment::Ergometer)
        return std::make_unique<TOlmoErgometer>(portName);
    return nullptr;
}
