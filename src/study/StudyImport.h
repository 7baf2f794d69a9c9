#pragma once

#include "study/StudyInfo.h"
#include "study/TMemberFile.h"

#include <QString>
#include <QTemporaryDir>

#include <array>

class QZipFileExtractor;

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

    /// Puts the files in their places, all or none. Throws "Write error".
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
    QString keptPath(const TMember& member) const;
    QString finalPath(const TMember& member) const;
    void unpack(const QString& path);
    void unpackMember(QZipFileExtractor& archive, TMember& member);
    void check();
    void checkReplacedStudy() const;
    bool isPlaceFree() const;
    void leaveUnpackedFiles();
    void restoreOldFiles() const;

    QString m_dataFolder;
    QTemporaryDir m_staging;
    StudyInfo m_info;
    /// The study file comes last into its place: with it the set is complete.
    std::array<TMember, 3> m_members;
};

/// Takes away what an import that was killed left behind.
void removeStaleImports(const QString& dataFolder);
