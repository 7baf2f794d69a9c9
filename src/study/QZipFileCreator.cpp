#include "study/QZipFileCreator.h"

#include "base/Error.h"
#include "study/MinizipDevice.h"

#include <QBuffer>
#include <QFile>

#include <algorithm>
#include <array>
#include <utility>

#include <minizip/zip.h>

namespace {

constexpr int chunkSize = 32768;
constexpr int maxCommentSize = 0xFFFF;
/// From this size on a member may not fit the 32-bit sizes of its header. Deflate makes incompressible data
/// larger by 5 bytes in 16 KB at most; the margin is more than that for 4 GB.
constexpr qint64 zip64Size = 0xFFFFFFFFLL - 4 * 1024 * 1024;
/// General purpose flag: the member's name is UTF-8.
constexpr uLong utf8NameFlag = 1UL << 11;

bool isAscii(const QByteArray& name)
{
    return std::none_of(name.begin(), name.end(), [](char c) { return (c & 0x80) != 0; });
}

} // namespace

QZipFileCreator::QZipFileCreator(const QString& path, QObject* parent)
    : QObject(parent), m_device(std::make_unique<MinizipDevice>(path, MinizipDevice::Mode::Create))
{
    m_zip = zipOpen2_64(nullptr, APPEND_STATUS_CREATE, nullptr, m_device->table());
    if (m_zip == nullptr)
        throw TError("Cannot create zip archive");
}

QZipFileCreator::~QZipFileCreator()
{
    if (m_zip != nullptr)
        zipClose(m_zip, m_comment.size() <= maxCommentSize ? m_comment.constData() : nullptr);
}

void QZipFileCreator::addFile(const QString& sourcePath, const QString& memberName)
{
    QFile source(sourcePath);
    if (!source.open(QIODevice::ReadOnly))
        throw TError("Cannot open new file in zip");
    addMember(source, memberName);
}

void QZipFileCreator::addData(const QByteArray& bytes, const QString& memberName)
{
    QBuffer source;
    source.setData(bytes);
    source.open(QIODevice::ReadOnly);
    addMember(source, memberName);
}

void QZipFileCreator::close()
{
    if (m_zip == nullptr)
        return;
    const bool fits = m_comment.size() <= maxCommentSize;
    const int result = zipClose(std::exchange(m_zip, nullptr), fits ? m_comment.constData() : nullptr);
    if (result != ZIP_OK || !fits)
        throw TError("Cannot close zip archive");
}

void QZipFileCreator::addMember(QIODevice& source, const QString& memberName)
{
    openMember(memberName, source.size());
    if (!copyMember(source))
        giveUp("Cannot write data in zip file");
    if (zipCloseFileInZip(m_zip) != ZIP_OK)
        giveUp("Cannot close file in zip");
}

void QZipFileCreator::openMember(const QString& memberName, qint64 size)
{
    const QByteArray name = memberName.toUtf8();
    // minizip forgets to free its directory entry when it learns of a failure here, so we look ourselves.
    m_device->setWriteErrorsHidden(true);
    // No file info at all: a zeroed one would be written as a day of 1980.
    const int result =
        zipOpenNewFileInZip4_64(m_zip, name.constData(), nullptr, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                                Z_DEFAULT_COMPRESSION, 0, -MAX_WBITS, DEF_MEM_LEVEL, Z_DEFAULT_STRATEGY,
                                nullptr, 0, 0, isAscii(name) ? 0 : utf8NameFlag, size >= zip64Size ? 1 : 0);
    m_device->setWriteErrorsHidden(false);
    if (result != ZIP_OK || m_device->hasFailed())
        giveUp("Cannot open new file in zip");
}

bool QZipFileCreator::copyMember(QIODevice& source)
{
    std::array<char, chunkSize> chunk;
    for (;;) {
        const qint64 got = source.read(chunk.data(), chunkSize);
        if (got <= 0)
            return got == 0;
        if (zipWriteInFileInZip(m_zip, chunk.data(), unsigned(got)) != ZIP_OK)
            return false;
    }
}

void QZipFileCreator::giveUp(const char* text)
{
    m_device->giveUp();
    throw TError(text);
}
