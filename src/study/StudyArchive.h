#pragma once

#include "study/StudyInfo.h"

#include <QString>

#include <vector>

/// What an archive that is none of ours, or holds no sound study, is refused with.
inline constexpr char invalidArchive[] = "File is not a valid Velantor study Zip archive";

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
