#include "study/StudyScan.h"

#include "base/Constants.h"
#include "base/Text.h"
#include "study/StudyDocument.h"
#include "study/StudyFiles.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QDir>
#include <QFileInfo>

#include <optional>
#include <unordered_map>

namespace {

QStringList studyFileNames(const QString& folder)
{
    const QString pattern = QLatin1String("*.") + QLatin1String(velantor::studyExtension);
    // A patient's number may begin with a point, which hides the file.
    return QDir(folder).entryList({pattern}, QDir::Files | QDir::Hidden | QDir::CaseSensitive, QDir::Name);
}

/// The name under which a study's set is found: the one in the study file, or that of the file itself where
/// the set was moved or names files elsewhere or those of another study.
QByteArray nameOfSet(const QString& folder, const StudyInfo& info, const QByteArray& nameOfFile)
{
    const bool isWhereItSays =
        info.baseFilename == nameOfFile ||
        (isSafeBaseFilename(info.baseFilename) &&
         readStudyId(studyFilePath(folder, info.baseFilename, velantor::studyExtension)) == info.id);
    return isWhereItSays ? info.baseFilename : nameOfFile;
}

std::optional<StudyInfo> readListedInfo(const QString& folder, const QString& fileName)
{
    const QJsonObject document = readStudyHead(folder + QLatin1Char('/') + fileName);
    if (document.isEmpty())
        return std::nullopt;
    StudyInfo info;
    readStudyInfo(info, document);
    if (!isStudyId(info.id))
        return std::nullopt;
    info.baseFilename = nameOfSet(folder, info, velantor::toText(QFileInfo(fileName).completeBaseName()));
    return info;
}

bool isComplete(const QString& folder, const QByteArray& baseFilename)
{
    const std::unique_ptr<TEcgFile> ecg =
        openEcgFile(studyFilePath(folder, baseFilename, velantor::ecgExtension));
    return ecg && openBeatFile(*ecg, studyFilePath(folder, baseFilename, velantor::beatsExtension));
}

} // namespace

std::vector<StudyInfo> scanStudies(const QString& folder)
{
    std::vector<StudyInfo> studies;
    std::unordered_map<qint32, std::size_t> placeOfId;
    for (const QString& fileName : folder.isEmpty() ? QStringList() : studyFileNames(folder)) {
        std::optional<StudyInfo> info = readListedInfo(folder, fileName);
        if (!info)
            continue;
        const auto [place, isNew] = placeOfId.try_emplace(info->id, studies.size());
        if (isNew) {
            studies.push_back(std::move(*info));
            continue;
        }
        StudyInfo& first = studies[place->second];
        if (!isComplete(folder, first.baseFilename) && isComplete(folder, info->baseFilename))
            first = std::move(*info);
    }
    return studies;
}
