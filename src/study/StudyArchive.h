#pragma once

#include "study/StudyInfo.h"
#include "study/TMemberFile.h"

#include <QString>
#include <QTemporaryDir>

#include <array>
#include <vector>

class QZipFileExtractor;

/// Path of the archive of a study in a folder.
QString archivePath(const QString& folder, const QByteArray& baseFilename);

/// Writes the archive of the study set `info.baseFilename` of the data folder into `targetFolder`, in the
/// place of an older one; until it is complete it bears the additional ending "part". Throws the texts of
/// QZipFileCreator.
void writeArchive(const QString& dataFolder, const StudyInfo& info, const QString& targetFolder);

/// What the archive tells of its study, without unpacking it. False if it is none of ours; throws the texts
/// of QZipFileExtractor if it cannot be opened.
bool readArchiveInfo(const QString& path, StudyInfo& info);

/// Every archive of ours in a folder; files that cannot be read are left out.
std::vector<StudyInfo> listArchives(const QString& folder);

/// Takes the study of an archive into a data folder. Archives come from shared folders and are not trusted:
/// the files are unpacked beside the store, checked, and take their places at the end. A bad archive never
/// touches a study that is there; what was unpacked from it stays behind only where there was nothing.
class TArchiveImport
{
public:
    /// Unpacks and checks. Throws "File is not a valid Velantor study Zip archive", or the texts of
    /// QZipFileExtractor for an archive that cannot be opened or has a damaged member.
    TArchiveImport(const QString& path, const QString& dataFolder);

    /// What the list shows of the study, its id included.
    const StudyInfo& info() const { return m_info; }

    /// Puts the files in their places. Throws "Write error".
    void commit();

private:
    struct TMember
    {
        const char* extension;
        int headSize;
        TMemberFile::THeadCheck isHead;
        bool isUnpacked = false;
    };

    QString stagedPath(const TMember& member) const;
    QString finalPath(const TMember& member) const;
    void unpack(const QString& path);
    void unpackMember(QZipFileExtractor& archive, TMember& member);
    void check();
    void checkReplacedStudy() const;
    void leaveUnpackedFiles();

    QString m_dataFolder;
    QTemporaryDir m_staging;
    StudyInfo m_info;
    /// The study file comes last into its place: with it the set is complete.
    std::array<TMember, 3> m_members;
};
