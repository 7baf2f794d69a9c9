#include "cli/PatientOptions.h"

#include "base/Text.h"

namespace {

void setText(StudyInfo& info, const QString& assignment)
{
    const int equals = assignment.indexOf(QLatin1Char('='));
    if (equals < 0)
        throw TUsageError(QStringLiteral("%1 is not a KEY=VALUE").arg(assignment));
    const auto member = studyInfoMember(velantor::toText(assignment.left(equals)));
    // The store makes the file name itself.
    if (member == nullptr || member == &StudyInfo::baseFilename)
        throw TUsageError(QStringLiteral("Unknown patient key %1").arg(assignment.left(equals)));
    info.*member = velantor::toText(assignment.mid(equals + 1));
}

} // namespace

StudyInfo studyInfoFrom(const TOptions& options)
{
    StudyInfo info;
    for (const QString& assignment : options.values(patientOption.name))
        setText(info, assignment);
    if (options.has(studyTypeOption.name))
        info.studyType = velantor::toText(options.value(studyTypeOption.name));
    return info;
}
