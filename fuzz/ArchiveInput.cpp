#include "fuzz/ArchiveInput.h"

#include "base/Constants.h"
#include "base/Error.h"
#include "base/Text.h"
#include "fuzz/EcgInput.h"
#include "fuzz/GoodStudy.h"
#include "fuzz/ScratchFolder.h"
#include "fuzz/StudyInput.h"
#include "fuzz/TFuzzReader.h"
#include "study/QZipFileCreator.h"

#include <algorithm>
#include <iterator>

namespace {

/// A mutated input can ask for a thousand empty members, which would only take time.
constexpr int maxMembers = 8;

constexpr const char* memberNames[] = {"info", "vtstudy", "vtecg", "vtbeats"};
constexpr int knownNames = std::size(memberNames);
constexpr int otherName = knownNames;

// The first byte of a member: its name in the lower half, where its bytes come from in the upper.
constexpr int nameMask = 0x0F;
constexpr int contentShift = 4;
constexpr int contentMask = 0x03;

QByteArray memberName(int code, TFuzzReader& reader)
{
    const int name = (code & nameMask) % (knownNames + 1);
    return name == otherName ? reader.block() : QByteArray(memberNames[name]);
}

QByteArray memberContent(int code, const QByteArray& name, TFuzzReader& reader, const TGoodStudy& good)
{
    switch (static_cast<TMemberContent>((code >> contentShift) & contentMask)) {
    case TMemberContent::StudyText:
        return compressedStudyFile(reader.block());
    case TMemberContent::Good:
        return good.file(name);
    case TMemberContent::EcgHeader:
        return ecgFile(reader.block(), QByteArray(2 * velantor::maxChannels, '\0'));
    case TMemberContent::Block:
        break;
    }
    return reader.block();
}

QString readComment(TFuzzReader& reader)
{
    const bool isOurs = reader.byte() % 2 == 0;
    return isOurs ? QLatin1String(velantor::archiveMagic) : QString::fromUtf8(reader.block());
}

bool buildArchive(TFuzzReader& reader, const TGoodStudy& good, const QString& path)
{
    try {
        QZipFileCreator archive(path);
        archive.setComment(readComment(reader));
        for (int i = 0; i < maxMembers && !reader.atEnd(); ++i) {
            const int code = reader.byte();
            const QByteArray name = memberName(code, reader);
            archive.addData(memberContent(code, name, reader, good), velantor::fromText(name));
        }
        archive.close();
        return true;
    } catch (const TError&) {
        return false;
    }
}

void patch(QByteArray& bytes, TFuzzReader patches)
{
    while (!patches.atEnd() && !bytes.isEmpty()) {
        const int low = patches.byte();
        const int place = low + 256 * patches.byte();
        bytes[place % bytes.size()] = static_cast<char>(patches.byte());
    }
}

QByteArray makeMember(const TArchiveMember& member)
{
    const auto known = std::find(std::begin(memberNames), std::end(memberNames), member.name);
    const auto name = static_cast<int>(known - std::begin(memberNames));
    QByteArray bytes(1, static_cast<char>(name + (static_cast<int>(member.kind) << contentShift)));
    if (name == otherName)
        bytes += TFuzzReader::makeBlock(member.name);
    if (member.kind != TMemberContent::Good)
        bytes += TFuzzReader::makeBlock(member.content);
    return bytes;
}

QByteArray makeMembers(const std::vector<TArchiveMember>& members)
{
    QByteArray bytes(1, '\0');
    for (const TArchiveMember& member : members)
        bytes += makeMember(member);
    return bytes;
}

} // namespace

bool writeArchiveFromInput(const QByteArray& input, const TGoodStudy& good, const QString& path)
{
    TFuzzReader reader(input);
    const auto form = static_cast<TArchiveForm>(reader.byte() % static_cast<int>(TArchiveForm::Count));
    if (form == TArchiveForm::RawFile)
        return writeFile(path, reader.rest());
    const bool isPatched = form == TArchiveForm::PatchedMembers;
    const QByteArray patches = isPatched ? reader.block() : QByteArray();
    if (!buildArchive(reader, good, path))
        return false;
    if (!isPatched)
        return true;
    QByteArray bytes = readFile(path);
    patch(bytes, TFuzzReader(patches));
    return writeFile(path, bytes);
}

QByteArray makeRawArchiveInput(const QByteArray& file)
{
    return static_cast<char>(TArchiveForm::RawFile) + file;
}

QByteArray makeArchiveInput(const std::vector<TArchiveMember>& members)
{
    return static_cast<char>(TArchiveForm::Members) + makeMembers(members);
}

QByteArray makePatchedArchiveInput(const QByteArray& patches, const std::vector<TArchiveMember>& members)
{
    return static_cast<char>(TArchiveForm::PatchedMembers) + TFuzzReader::makeBlock(patches) +
           makeMembers(members);
}
