#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

struct TGoodStudy;

/// The form in which the first byte of an input, modulo their number, wants the rest to become an archive.
enum class TArchiveForm
{
    RawFile = 0,
    Members = 1,        ///< a well-formed archive of the members that the rest tells
    PatchedMembers = 2, ///< a block of patches first: place in two bytes, low byte first, and the new byte
    Count
};

/// Where the bytes of a member come from.
enum class TMemberContent
{
    Block = 0,     ///< as they stand
    StudyText = 1, ///< the text of a study file, which gets mark and compression
    Good = 2,      ///< the file of the good study that the member is named after; nothing follows
    EcgHeader = 3 ///< the document of a samples file, which gets mark and filling; one frame of zeros follows
};

struct TArchiveMember
{
    /// One of the four that archives have, or any other.
    QByteArray name;
    TMemberContent kind = TMemberContent::Good;
    QByteArray content;
};

/// Writes the archive that an input stands for. False if it cannot be built, which leaves part of it.
bool writeArchiveFromInput(const QByteArray& input, const TGoodStudy& good, const QString& path);

QByteArray makeRawArchiveInput(const QByteArray& file);
/// With a comment of "VTZIP1".
QByteArray makeArchiveInput(const std::vector<TArchiveMember>& members);
/// The same, with triples of patches.
QByteArray makePatchedArchiveInput(const QByteArray& patches, const std::vector<TArchiveMember>& members);
