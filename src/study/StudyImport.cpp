#include "study/StudyImport.h"

#include "base/Constants.h"
#include "base/Error.h"
#include "platform/FreeSpace.h"
#include "study/FilePlacement.h"
#include "study/JsonBounds.h"
#include "study/QZipFileExtractor.h"
#include "study/Study.h"
#include "study/StudyArchive.h"
#include "study/StudyFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

/// What has to stay free for a recording that runs.
constexpr qint64 reservedBytes = 50LL * 1024 * 1024;

/// The largest member that may be unpacked; no value if the file system does not tell.
std::optional<qint64> roomFor(const QString& folder)
{
    const std::optional<qint64> free = freeBytes(folder);
    return free ? std::optional(std::max<qint64>(0, *free - reservedBytes)) : std::nullopt;
}

} // namespace

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

/// Where the file that is replaced stays until all are in place.
QString TArchiveImport::keptPath(const TMember& member) const
{
    return m_staging.filePath(QLatin1String("old.") + QLatin1String(member.extension));
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
        member.isUnpacked = archive.extract(QLatin1String(member.extension), target, roomFor(m_dataFolder));
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

/// The files of a study that is there are replaced only by the same study.
void TArchiveImport::checkReplacedStudy() const
{
    const QByteArray& name = m_info.baseFilename;
    qint32 owner = readStudyId(studyFilePath(m_dataFolder, name, velantor::studyExtension));
    // A damaged study file is what an archive may have to mend; the recording still tells whose it is.
    if (owner == 0)
        owner = readEcgStudyId(studyFilePath(m_dataFolder, name, velantor::ecgExtension));
    if (owner != 0 && owner != m_info.id)
        throw TError(invalidArchive);
}

bool TArchiveImport::isPlaceFree() const
{
    return std::none_of(m_members.begin(), m_members.end(),
                        [this](const TMember& member) { return QFile::exists(finalPath(member)); });
}

void TArchiveImport::leaveUnpackedFiles()
{
    if (!isPlaceFree())
        return;
    for (const TMember& member : m_members) {
        if (member.isUnpacked)
            moveFile(stagedPath(member), finalPath(member));
    }
}

void TArchiveImport::commit()
{
    for (const TMember& member : m_members) {
        if (!syncFile(stagedPath(member)))
            throw TError("Write error");
    }
    for (auto member = m_members.rbegin(); member != m_members.rend(); ++member) {
        linkFile(finalPath(*member), keptPath(*member));
        if (!moveFile(stagedPath(*member), finalPath(*member))) {
            restoreOldFiles();
            throw TError("Write error");
        }
    }
}

void TArchiveImport::restoreOldFiles() const
{
    for (const TMember& member : m_members) {
        if (QFile::exists(keptPath(member)))
            moveFile(keptPath(member), finalPath(member));
    }
}

void removeStaleImports(const QString& dataFolder)
{
    // An import takes seconds; one of yesterday is none that is still running.
    const QDateTime yesterday = QDateTime::currentDateTime().addDays(-1);
    const QDir data(dataFolder + QLatin1String("/data"));
    for (const QFileInfo& folder : data.entryInfoList({QStringLiteral("import-*")}, QDir::Dirs)) {
        if (folder.lastModified() < yesterday)
            QDir(folder.filePath()).removeRecursively();
    }
}
