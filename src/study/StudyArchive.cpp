#include "study/StudyArchive.h"

#include "base/Constants.h"
#include "base/Error.h"
#include "base/Text.h"
#include "platform/FileSync.h"
#include "study/JsonBounds.h"
#include "study/QZipFileCreator.h"
#include "study/QZipFileExtractor.h"
#include "study/Study.h"
#include "study/StudyDocument.h"
#include "study/StudyFiles.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <algorithm>
#include <filesystem>

namespace {

constexpr char infoMember[] = "info";
/// The "info" member holds a few names; more is not one of ours.
constexpr qint64 maxInfoBytes = 64 * 1024;
constexpr char invalidArchive[] = "File is not a valid Velantor study Zip archive";

QByteArray makeInfoMember(const StudyInfo& info)
{
    const QJsonObject patient{{QLatin1String("lastName"), velantor::fromText(info.lastName)},
                              {QLatin1String("firstName"), velantor::fromText(info.firstName)}};
    const QJsonObject document{{QLatin1String("baseFilename"), velantor::fromText(info.baseFilename)},
                               {QLatin1String("studyDateTime"), velantor::fromText(info.studyDateTime)},
                               {QLatin1String("studyType"), velantor::fromText(info.studyType)},
                               {QLatin1String("patient"), patient}};
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

/// Replaces the target at once; QFile::rename would refuse an existing one.
bool moveFile(const QString& from, const QString& to)
{
    std::error_code error;
    std::filesystem::rename(from.toStdU16String(), to.toStdU16String(), error);
    return !error;
}

bool syncFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && velantor::syncToDisk(file);
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
    if (!moveFile(unfinished, target))
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

TArchiveImport::TArchiveImport(const QString& path, const QString& dataFolder)
    : m_dataFolder(dataFolder), m_staging(dataFolder + QLatin1String("/data/import-XXXXXX")),
      m_members{{{velantor::studyExtension, studyHeadSize, isStudyHead},
                 {velantor::ecgExtension, ecgHeadSize, isEcgHead},
                 {velantor::beatsExtension, beatsHeadSize, isBeatsHead}}}
{
    if (!readArchiveInfo(path, m_info) || !isSafeBaseFilename(m_info.baseFilename))
        throw TError(invalidArchive);
    try {
        unpack(path);
        check();
    } catch (const TError&) {
        leaveUnpackedFiles();
        throw;
    }
}

QString TArchiveImport::stagedPath(const TMember& member) const
{
    return m_staging.filePath(QLatin1String("set.") + QLatin1String(member.extension));
}

QString TArchiveImport::finalPath(const TMember& member) const
{
    return studyFilePath(m_dataFolder, m_info.baseFilename, member.extension);
}

void TArchiveImport::unpack(const QString& path)
{
    if (!m_staging.isValid())
        throw TError("Cannot create file");
    QZipFileExtractor archive(path);
    // A study file that is never going to be read is not worth the place on the disk.
    if (archive.uncompressedSize(QLatin1String(velantor::studyExtension)) > TJsonCost::maxParseBytes)
        throw TError(invalidArchive);
    for (TMember& member : m_members)
        unpackMember(archive, member);
}

void TArchiveImport::unpackMember(QZipFileExtractor& archive, TMember& member)
{
    TMemberFile target(stagedPath(member), member.headSize, member.isHead);
    try {
        member.isUnpacked = archive.extract(QLatin1String(member.extension), target);
    } catch (const TError&) {
        if (!target.isRefused())
            throw;
    }
    if (!member.isUnpacked)
        throw TError(invalidArchive);
}

void TArchiveImport::check()
{
    const std::unique_ptr<Study> study = loadStudy(stagedPath(m_members.front()));
    if (!study || !isStudyId(study->id()))
        throw TError(invalidArchive);
    // The list shows what the index member tells; the rest comes from the study itself.
    const StudyInfo told = m_info;
    infoFromStudy(m_info, *study);
    m_info.baseFilename = told.baseFilename;
    m_info.studyDateTime = told.studyDateTime;
    m_info.studyType = told.studyType;
    m_info.lastName = told.lastName;
    m_info.firstName = told.firstName;
    checkReplacedStudy();
}

void TArchiveImport::checkReplacedStudy() const
{
    const qint32 present = readStudyId(finalPath(m_members.front()));
    if (present != 0 && present != m_info.id)
        throw TError(invalidArchive);
}

void TArchiveImport::leaveUnpackedFiles()
{
    const bool isPlaceFree = std::none_of(m_members.begin(), m_members.end(), [this](const TMember& member) {
        return QFile::exists(finalPath(member));
    });
    if (!isPlaceFree)
        return;
    for (const TMember& member : m_members) {
        if (member.isUnpacked)
            moveFile(stagedPath(member), finalPath(member));
    }
}

void TArchiveImport::commit()
{
    for (auto member = m_members.rbegin(); member != m_members.rend(); ++member) {
        if (!syncFile(stagedPath(*member)) || !moveFile(stagedPath(*member), finalPath(*member)))
            throw TError("Write error");
    }
}
