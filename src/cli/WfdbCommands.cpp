#include "cli/Command.h"
#include "cli/JsonOutput.h"
#include "cli/PatientOptions.h"
#include "cli/StudyAccess.h"
#include "study/LocalStudyDatabase.h"
#include "study/WfdbImport.h"

namespace {

void importRecord(TCommandContext& context)
{
    StudyInfo fields = studyInfoFrom(context.options());
    const QString& record = context.arguments().at(0);
    context.output().writeLine(listRow(importWfdb(context.database(), record, std::move(fields))));
}

constexpr TOption importOptions[] = {patientOption, studyTypeOption};

constexpr TCommand commands[] = {
    {"import-wfdb", "RECORD", "make a study of a WFDB record (RECORD.hea and its files); prints its line",
     importRecord, importOptions},
};

} // namespace

std::span<const TCommand> wfdbCommands()
{
    return commands;
}
