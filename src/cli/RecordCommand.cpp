#include "base/Error.h"
#include "base/Text.h"
#include "cli/Command.h"
#include "cli/RecordDevice.h"
#include "cli/TConsoleExamination.h"
#include "study/LocalStudyDatabase.h"

namespace {

TStressProtocol restingEcg()
{
    TStressProtocol protocol("ECG", TProtocolType::Ecg);
    protocol.addStage(TStagePhase::Rest, 0.0);
    return protocol;
}

TStressProtocol storedProtocol(const StudyDatabase& database, const QByteArray& name)
{
    TStressProtocol protocol;
    if (!database.protocol(name, protocol))
        throw TError(QStringLiteral("Unknown protocol %1").arg(velantor::fromText(name)));
    if (protocol.stageCount() == 0)
        throw TError(QStringLiteral("Protocol %1 has no stages").arg(velantor::fromText(name)));
    return protocol;
}

TStressProtocol makeProtocol(const TRecordOptions& options, const StudyDatabase& database)
{
    TStressProtocol protocol = options.test == TRecordOptions::RestingEcg ? restingEcg()
                               : options.test == TRecordOptions::TiltTest
                                   ? TStressProtocol::tiltTest()
                                   : storedProtocol(database, options.protocolName);
    for (int i = 0; i < protocol.stageCount(); ++i)
        protocol.stage(i).setDuration(protocol.stage(i).duration() / options.stageScale);
    return protocol;
}

/// Whoever names equipment relies on it.
void checkEquipment(const TRecordOptions& options, const TStressProtocol& protocol)
{
    const bool isTreadmill = protocol.type() == TProtocolType::Treadmill;
    if (options.equipmentName.isEmpty() || protocol.type() == TProtocolType::Ergometer ||
        (isTreadmill && options.equipmentName == QLatin1String("kipmachines")))
        return;
    throw TError(QStringLiteral("No %1 equipment for protocol %2")
                     .arg(options.equipmentName, velantor::fromText(protocol.name())));
}

void checkSpace(const TRecordOptions& options, const StudyDatabase& database)
{
    if (options.test != TRecordOptions::RestingEcg && !database.hasFreeSpace())
        throw TError("There is not enough free space on disk. "
                     "Please free at least 50 MB to start a new study.");
}

void record(TCommandContext& context)
{
    const TRecordOptions options = parseRecordOptions(context.options());
    auto device = makeRecordDevice(options);
    StudyDatabase& database = context.database();
    const TStressProtocol protocol = makeProtocol(options, database);
    checkEquipment(options, protocol);
    checkSpace(options, database);
    TConsoleExamination(options, protocol, std::move(device), database, context.output()).run();
}

} // namespace

std::span<const TCommand> recordCommands()
{
    static const TCommand commands[] = {
        {"record", "", "a whole examination, told as it happens, until its time or an interruption", record,
         recordOptions()},
    };
    return commands;
}
