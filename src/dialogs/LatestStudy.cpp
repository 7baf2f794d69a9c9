#include "dialogs/LatestStudy.h"

#include "base/Error.h"
#include "study/StudyDatabase.h"

#include <algorithm>

namespace {

std::optional<StudyInfo> readInfo(StudyDatabase& database, qint32 id)
{
    Study* study = database.openStudy(id);
    if (!study)
        return std::nullopt;
    const auto close = [&database](Study* opened) { database.closeStudy(opened); };
    const std::unique_ptr<Study, decltype(close)> closing(study, close);
    StudyInfo info;
    database.infoFromStudy(info, *study);
    return info;
}

} // namespace

std::optional<StudyInfo> latestStudy(StudyDatabase* database)
try {
    std::vector<StudyInfo> studies = database ? database->listStudies() : std::vector<StudyInfo>();
    std::stable_sort(studies.begin(), studies.end(), [](const StudyInfo& one, const StudyInfo& other) {
        return one.studyDateTime < other.studyDateTime;
    });
    return studies.empty() ? std::nullopt : readInfo(*database, studies.back().id);
} catch (const TError&) {
    // A store in trouble has nothing to repeat. What was typed so far is worth more than the reason.
    return std::nullopt;
}
