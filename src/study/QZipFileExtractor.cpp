#include "study/QZipFileExtractor.h"

#include "base/Error.h"
#include "base/Text.h"
#include "study/MinizipDevice.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <utility>

#include <minizip/unzip.h>

namespace {

constexpr unsigned chunkSize = 32768;
/// Smallest entry of a zip directory, in bytes.
constexpr qint64 minDirectoryEntry = 46;
/// Members that an archive may have; ours have four. It bounds the walk over a directory made to be long.
constexpr ZPOS64_T maxMembers = 65535;
/// In place of a 32-bit size: the true one is in an extra field, which minizip does not read everywhere. A
/// member of 4 GB is refused rather than found corrupt after it was unpacked.
constexpr ZPOS64_T sizeElsewhere = 0xFFFFFFFF;
/// General purpose flag: the member is encrypted.
constexpr uLong encryptedFlag = 1;

/// Opens a device for writing for the length of a scope.
class TargetOpener
{
public:
    explicit TargetOpener(QIODevice& target) : m_target(target), m_open(target.open(QIODevice::WriteOnly)) {}
    TargetOpener(const TargetOpener&) = delete;
    TargetOpener& operator=(const TargetOpener&) = delete;
    ~TargetOpener()
    {
        if (m_open)
            m_target.close();
    }

    bool isOpen() const { return m_open; }

    /// False if what was written did not all get out of the program's buffers.
    bool close()
    {
        auto* file = qobject_cast<QFileDevice*>(&m_target);
        const bool flushed = file == nullptr || file->flush();
        m_open = false;
        m_target.close();
        return flushed && (file == nullptr || file->error() == QFileDevice::NoError);
    }

private:
    QIODevice& m_target;
    bool m_open;
};

/// Closes the handle's current member at the end of a scope that an exception leaves.
class MemberCloser
{
public:
    explicit MemberCloser(unzFile zip) : m_zip(zip) {}
    MemberCloser(const MemberCloser&) = delete;
    MemberCloser& operator=(const MemberCloser&) = delete;
    ~MemberCloser()
    {
        if (m_zip != nullptr)
            unzCloseCurrentFile(m_zip);
    }

    int close() { return unzCloseCurrentFile(std::exchange(m_zip, nullptr)); }

private:
    unzFile m_zip;
};

} // namespace

struct QZipFileExtractor::TMember
{
    qint64 size;
    uLong flags;
    uLong method;
};

void QZipFileExtractor::TCloser::operator()(void* zip) const
{
    unzClose(zip);
}

QZipFileExtractor::QZipFileExtractor(const QString& path, QObject* parent)
    : QObject(parent), m_device(std::make_unique<MinizipDevice>(path, MinizipDevice::Mode::Read))
{
    m_zip.reset(unzOpen2_64(nullptr, m_device->table()));
    if (m_zip == nullptr)
        throw TError("Cannot open zip archive");
    readGlobalInfo();
}

QZipFileExtractor::~QZipFileExtractor() = default;

void QZipFileExtractor::readGlobalInfo()
{
    unz_global_info64 info{};
    const bool read = unzGetGlobalInfo64(m_zip.get(), &info) == UNZ_OK;
    // minizip believes any count; one that cannot lie in the file comes from no archive of anyone's.
    if (!read || info.number_entry > maxMembers ||
        qint64(info.number_entry) > m_device->size() / minDirectoryEntry)
        throw TError("Cannot read zip archive");
    m_memberCount = int(info.number_entry);
    readComment(int(info.size_comment));
}

void QZipFileExtractor::readComment(int size)
{
    QByteArray text(size, '\0');
    if (unzGetGlobalComment(m_zip.get(), text.data(), uLong(size)) != size)
        throw TError("Cannot read comment in zip archive");
    m_comment = velantor::fromText(text);
}

qint64 QZipFileExtractor::uncompressedSize(const QString& memberName)
{
    const auto member = locate(memberName.toUtf8());
    return member ? member->size : -1;
}

bool QZipFileExtractor::extractToFile(const QString& memberName, const QString& targetPath,
                                      std::optional<qint64> maxSize)
{
    QFile target(targetPath);
    return extract(memberName, target, maxSize);
}

bool QZipFileExtractor::extract(const QString& memberName, QIODevice& target, std::optional<qint64> maxSize)
{
    const auto member = locate(memberName.toUtf8());
    if (!member)
        return false;
    if (member->size == qint64(sizeElsewhere) || (maxSize && member->size > *maxSize))
        throw TError("Cannot read file in zip archive");
    openMember(*member);
    MemberCloser closer(m_zip.get());
    copyMember(*member, target);
    if (closer.close() != UNZ_OK)
        throw TError("Corrupt file read from zip archive");
    return true;
}

std::optional<QZipFileExtractor::TMember> QZipFileExtractor::locate(const QByteArray& name)
{
    QByteArray found(name.size() + 1, '\0');
    for (int i = 0; i < m_memberCount; ++i) {
        unz_file_info64 info{};
        if ((i == 0 ? unzGoToFirstFile(m_zip.get()) : unzGoToNextFile(m_zip.get())) != UNZ_OK ||
            unzGetCurrentFileInfo64(m_zip.get(), &info, found.data(), uLong(found.size()), nullptr, 0,
                                    nullptr, 0) != UNZ_OK)
            throw TError("Cannot get file info from zip archive");
        if (info.size_filename == uLong(name.size()) && found.startsWith(name))
            return TMember{qint64(std::min(info.uncompressed_size, sizeElsewhere)), info.flag,
                           info.compression_method};
    }
    return std::nullopt;
}

void QZipFileExtractor::openMember(const TMember& member)
{
    const bool readable =
        (member.flags & encryptedFlag) == 0 && (member.method == Z_DEFLATED || member.method == 0);
    if (!readable || unzOpenCurrentFile(m_zip.get()) != UNZ_OK)
        throw TError("Cannot open file in zip archive");
}

void QZipFileExtractor::copyMember(const TMember& member, QIODevice& target)
{
    TargetOpener opener(target);
    std::array<char, chunkSize> chunk;
    qint64 copied = 0;
    int got = opener.isOpen() ? 0 : UNZ_ERRNO;
    while (opener.isOpen() && (got = unzReadCurrentFile(m_zip.get(), chunk.data(), chunkSize)) > 0) {
        copied += got;
        if (copied > member.size || target.write(chunk.data(), got) != got) {
            got = UNZ_ERRNO;
            break;
        }
    }
    // A stream that ends before the declared size is never held against its checksum, so it is refused here.
    if (got < 0 || copied != member.size || !opener.close())
        throw TError("Cannot read file in zip archive");
}
