#include "app/StressStart.h"

#include "base/Error.h"
#include "base/Settings.h"
#include "base/Text.h"
#include "equipment/EquipmentFactory.h"
#include "study/StudyDatabase.h"

#include <QCoreApplication>

QString spaceWarning(const StudyDatabase& database)
{
    if (database.hasFreeSpace())
        return {};
    return QCoreApplication::translate("StressStart", "There is not enough free space on disk.\n"
                                                      "Please free at least 50 MB to start a new study.");
}

bool isTiltTest(const StudyInfo& info)
{
    return info.protocolName == tiltTestName;
}

void setStressType(StudyInfo& info)
{
    if (isTiltTest(info))
        info.studyType = "Tilt test";
}

TStressProtocol stressProtocol(const StudyInfo& info, const StudyDatabase& database)
{
    if (isTiltTest(info))
        return TStressProtocol::tiltTest();
    TStressProtocol protocol;
    if (!database.protocol(info.protocolName, protocol))
        throw TError(QStringLiteral("Unknown protocol %1").arg(velantor::fromText(info.protocolName)));
    return protocol;
}

std::unique_ptr<TEquipment> createStressEquipment(const TStressProtocol& protocol)
{
    switch (protocol.type()) {
    case TProtocolType::Treadmill:
        return createEquipment(TEquipment::Treadmill, settings::treadmillEquipment.value(),
                               settings::treadmillPort.value());
    case TProtocolType::Ergometer:
        return createEquipment(TEquipment::Ergometer, settings::ergometerEquipment.value(),
                               settings::ergometerPort.value());
    default:
        return nullptr;
    }
}
