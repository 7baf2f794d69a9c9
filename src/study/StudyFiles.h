#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <memory>

class Study;
class TBeatFile;
class TEcgFile;

// The three files of a study on disk. Files may come from a shared folder: what is read is not trusted, and
// whatever is wrong with a file, its reader answers with nothing.

inline constexpr int ecgHeaderSize = 4096;
inline constexpr int beatsHeaderSize = 256;

// First bytes by which each file shows that it is one of ours: its mark, and of the samples file the document
// behind it.
inline constexpr int studyHeadSize = 8;
inline constexpr int ecgHeadSize = 6 + ecgHeaderSize;
inline constexpr int beatsHeadSize = 8;
/// Whether a file may begin with these bytes; fewer than the size above only if the file ends there.
bool isStudyHead(const QByteArray& head);
bool isEcgHead(const QByteArray& head);
bool isBeatsHead(const QByteArray& head);

/// "folder/baseFilename.extension".
QString studyFilePath(const QString& folder, const QByteArray& baseFilename, const char* extension);

/// The document of a study file as compact JSON text, in either form. False if the file is absent, cannot be
/// opened, is too short, has a foreign mark or holds nothing that can be expanded.
bool readStudyDocument(const QString& path, QByteArray& document);
/// The same, parsed; empty also if the document is broken or lacks its `study` or `patient`.
QJsonObject readStudyObjects(const QString& path);
/// The `study` and `patient` of a study file, without the time that its results take; empty as above. Of the
/// other members only the brackets are looked at: a study with a damaged number in there is still listed.
QJsonObject readStudyHead(const QString& path);
/// The id in a study file; 0 if there is no sound study with a valid id.
qint32 readStudyId(const QString& path);

/// Mark and compressed document, written beside and put in place at the end, so that a failure leaves the old
/// file. Throws "Cannot create study file" or "Write error".
void saveStudyFile(Study& study, const QString& path);

/// A study with its results, events and open files, or null. The other two files of the set are found by the
/// path, so that a set moved to another name stays readable.
std::unique_ptr<Study> loadStudy(const QString& path);

/// Null if the file cannot be opened or its header is not one of ours.
std::unique_ptr<TEcgFile> openEcgFile(const QString& path);
/// Null if the file cannot be opened or has a foreign mark.
std::unique_ptr<TBeatFile> openBeatFile(TEcgFile& ecg, const QString& path);

/// Mark and document that fill the head of a samples file; throws "Cannot create file" if the channel names
/// alone are too long for it. The study must have its samples file.
QByteArray makeEcgHeader(Study& study);
QByteArray makeBeatHeader();
