#include "app/RecentStudies.h"

#include "base/Settings.h"
#include "base/Text.h"
#include "study/StudyInfo.h"

#include <algorithm>

using velantor::fromText;

namespace {

QString entryOf(const StudyInfo& info)
{
    // All at once: a name with a place marker in it is a name all the same.
    return QStringLiteral("%1||%2||%3||%4")
        .arg(QString::number(info.id), fromText(info.studyDateTime), fromText(info.lastName),
             fromText(info.firstName));
}

TRecentStudy studyOf(const QStringList& parts)
{
    return {parts[0], QStringLiteral("%1, %2").arg(parts[2], parts[3]),
            QDateTime::fromString(parts[1], QStringLiteral("yyyyMMddHHmmss"))};
}

} // namespace

void RecentStudies::add(const StudyInfo& info)
{
    QStringList entries = settings::recentStudyList.value();
    entries.prepend(entryOf(info));
    while (entries.size() > mostKept)
        entries.removeLast();
    settings::recentStudyList.setValue(entries);
}

void RecentStudies::remove(qint32 id)
{
    QStringList entries = settings::recentStudyList.value();
    const QString digits = QString::number(id);
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const QString& entry) { return entry.startsWith(digits); });
    if (found == entries.end())
        return;
    entries.erase(found);
    settings::recentStudyList.setValue(entries);
}

std::vector<TRecentStudy> RecentStudies::shown()
{
    std::vector<TRecentStudy> studies;
    for (const QString& entry : settings::recentStudyList.value()) {
        const QStringList parts = entry.split(QStringLiteral("||"));
        if (parts.size() == 4 && studies.size() < mostShown)
            studies.push_back(studyOf(parts));
    }
    return studies;
}
