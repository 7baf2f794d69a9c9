#include "study/StudyArchive.h"

#include "base/Constants.h"
#include "base/Error.h"
#include "base/Text.h"
#include "study/FilePlacement.h"
#include "study/JsonBounds.h"
#include "study/JsonText.h"
#include "study/QZipFileCreator.h"
#include "study/QZipFileExtractor.h"
#include "study/StudyFiles.h"

#include <QBuffer>
#include <QDir>
#include <QJsonDocument>

namespace {

constexpr char infoMember[] = "info";
/// The "info" member holds a few names; more is not one of ours.
constexpr qint64 maxInfoBytes = 64 * 1024;

QByteArray makeInfoMember(const StudyInfo& info)
{
    const QJsonObject patient{{QLatin1String("lastName"), velantor::fromText(info.lastName)},
                              {QLatin1String("firstName"), velantor::fromText(info.firstName)}};
    const QJsonObject document{{QLatin1String("baseFilename"), velantor::fromText(info.baseFilename)},
                               {QLatin1String("studyDateTime"), velantor::fromText(info.studyDateTime)},
                               {QLatin1String("studyType"), velantor::fromText(info.studyType)},
                               {QLatin1String("patient"), patient}};
    return compactJson(QJsonDocument(document));
}

} // namespace

QString archivePath(const QString& folder, const QByteArray& baseFilename)
{
    return studyFilePath(folder, baseFilename, velantor::archiveExtension);
}

void writeArchive(const QString& dataFolder, const StudyInfo& info, const QString& targetFolder)
{
    const QString target = archivePath(targetFolder, info.baseFilename);
    const QString unfinished = target + QLatin1String(".part");
    QZipFileCreator archive(unfinished);
    archive.setComment(QLatin1String(velantor::archiveMagic));
    for (const char* extension : {velantor::studyExtension, velantor::ecgExtension, velantor::beatsExtension})
        archive.addFile(studyFilePath(dataFolder, info.baseFilename, extension), QLatin1String(extension));
    archive.addData(makeInfoMember(info), QLatin1String(infoMember));
    archive.close();
    // On the disk before it replaces an older archive, which a power cut would otherwise take along.
    if (!syncFile(unfinished) || !moveFile(unfinished, target))
        throw TError("Cannot close zip archive");
}

bool readArchiveInfo(const QString& path, StudyInfo& info)
{
    QZipFileExtractor archive(path);
    QBuffer member;
    if (archive.comment() != QLatin1String(velantor::archiveMagic) ||
        !archive.extract(QLatin1String(infoMember), member, maxInfoBytes))
        return false;
    const QJsonObject document = parseBoundedJson(member.data());
    const QJsonObject patient = document.value(QLatin1String("patient")).toObject();
    const auto text = [](const QJsonObject& object, const char* key) {
        return velantor::toText(object.value(QLatin1String(key)).toString());
    };
    if (text(document, "baseFilename").isEmpty() || patient.isEmpty())
        return false;
    info.baseFilename = text(document, "baseFilename");
    info.studyDateTime = text(document, "studyDateTime");
    info.studyType = text(document, "studyType");
    info.lastName = text(patient, "lastName");
    info.firstName = text(patient, "firstName");
    return true;
}

std::vector<StudyInfo> listArchives(const QString& folder)
{
    const QString pattern = QLatin1String("*.") + QLatin1String(velantor::archiveExtension);
    std::vector<StudyInfo> archives;
    for (const QString& name : QDir(folder).entryList({pattern}, QDir::Files | QDir::Hidden, QDir::Name)) {
        try {
            StudyInfo info;
            if (readArchiveInfo(folder + QLatin1Char('/') + name, info))
                archives.push_back(info);
        } catch (const TError&) {
            continue; // no archive at all, or a damaged one
        }
    }
    return archives;
}
