#include "study/TRecordFile.h"

#include "base/Error.h"
#include "platform/FileSync.h"

#include <QFileInfo>

#include <algorithm>

TRecordFile::TRecordFile(const QString& path, int headerSize, int recordSize, TMode mode)
    : m_file(QFileInfo(path).absoluteFilePath()), m_headerSize(headerSize), m_recordSize(recordSize)
{
    if (headerSize < 0 || recordSize <= 0)
        fail(mode);
    if (mode == TMode::Create)
        create();
    else
        open();
}

void TRecordFile::fail(TMode mode)
{
    throw TError(mode == TMode::Create ? "Cannot create file" : "Cannot open file");
}

TRecordFile::~TRecordFile()
{
    if (m_hasRest)
        cutRest();
}

void TRecordFile::create()
{
    // Whatever has the name already may be a recording that someone needs.
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered))
        fail(TMode::Create);
    if (!writeHeader({})) {
        m_file.remove();
        fail(TMode::Create);
    }
}

void TRecordFile::open()
{
    const auto existing = QIODevice::ExistingOnly | QIODevice::Unbuffered;
    // A study on a read-only medium or in a folder of someone else can still be looked at.
    if (!m_file.open(QIODevice::ReadWrite | existing) && !m_file.open(QIODevice::ReadOnly | existing))
        fail(TMode::Open);
    if (m_file.isSequential())
        fail(TMode::Open);
    m_count = std::max<qint64>(0, m_file.size() - m_headerSize) / m_recordSize;
}

void TRecordFile::cutRest()
{
    const qint64 end = offsetOf(m_count);
    m_hasRest = isWritable() && m_file.size() > end && !m_file.resize(end);
}

QByteArray TRecordFile::header()
{
    return m_file.seek(0) ? m_file.read(m_headerSize) : QByteArray();
}

bool TRecordFile::writeHeader(const QByteArray& bytes)
{
    QByteArray header = bytes.left(m_headerSize);
    header.append(m_headerSize - header.size(), '\0');
    return writeAt(0, header.constData(), header.size());
}

bool TRecordFile::append(const char* data, int n)
{
    if (m_hasRest)
        cutRest();
    const bool done = writeAt(offsetOf(m_count), data, qint64(n) * m_recordSize);
    if (done)
        m_count += n;
    if (!done || m_hasRest)
        cutRest();
    if (!done)
        return false;
    // Writing to a file that was deleted under us succeeds, but what is written will be lost.
    m_isLost = m_isLost || !QFile::exists(m_file.fileName());
    m_writeFailed = m_writeFailed || m_isLost;
    return true;
}

bool TRecordFile::update(qint64 index, const char* data)
{
    return index >= 0 && index < m_count && writeAt(offsetOf(index), data, m_recordSize);
}

int TRecordFile::read(qint64 index, int n, char* out)
{
    if (index < 0 || index >= m_count || n <= 0 || !m_file.seek(offsetOf(index)))
        return 0;
    const qint64 bytes = std::min<qint64>(n, m_count - index) * m_recordSize;
    return int(std::max<qint64>(0, m_file.read(out, bytes)) / m_recordSize);
}

bool TRecordFile::sync()
{
    if (!isWritable())
        return true;
    const bool done = velantor::syncToDisk(m_file);
    m_isLost = m_isLost || !done;
    m_writeFailed = m_writeFailed || m_isLost;
    return done;
}

bool TRecordFile::writeAt(qint64 offset, const char* data, qint64 size)
{
    if (!isWritable())
        return false;
    const bool done = m_file.seek(offset) && m_file.write(data, size) == size;
    m_writeFailed = m_writeFailed || !done;
    return done;
}
