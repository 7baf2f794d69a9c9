#include "cli/StudyAccess.h"

#include "base/Error.h"
#include "base/Text.h"
#include "cli/Arguments.h"
#include "study/LocalStudyDatabase.h"

using velantor::fromText;

namespace {

constexpr char studyNotFound[] = "Study file not found";

} // namespace

qint32 studyId(const TCommandContext& context)
{
    return parseNumber(context.arguments().at(0), "study id", 1);
}

Study& openStudy(TCommandContext& context)
{
    Study* study = context.database().openStudy(studyId(context));
    if (study == nullptr)
        throw TError(studyNotFound);
    return *study;
}

bool isListed(TCommandContext& context, qint32 id)
{
    StudyInfo info;
    return context.database().findStudy(id, info);
}

void requireListed(TCommandContext& context, qint32 id)
{
    if (!isListed(context, id))
        throw TError(studyNotFound);
}

QJsonObject archiveRow(const StudyInfo& info)
{
    return {{QLatin1String("baseFilename"), fromText(info.baseFilename)},
            {QLatin1String("studyType"), fromText(info.studyType)},
            {QLatin1String("studyDateTime"), fromText(info.studyDateTime)},
            {QLatin1String("lastName"), fromText(info.lastName)},
            {QLatin1String("firstName"), fromText(info.firstName)}};
}

QJsonObject listRow(const StudyInfo& info)
{
    QJsonObject row = archiveRow(info);
    row.insert(QLatin1String("id"), info.id);
    row.insert(QLatin1String("status"), fromText(info.status));
    return row;
}
