#include "wfdb/TWfdbSignalFile.h"

#include "base/Error.h"

#include <QFileInfo>
#include <QtEndian>

#include <algorithm>

namespace {

constexpr int missingSample212 = -2048;
/// Two values of format 212 take so many bytes.
constexpr int bytesOfPair = 3;

[[noreturn]] void fail()
{
    throw TError("Cannot read WFDB signal file");
}

/// Values that lie in so many bytes. A file of format 212 may end with half a pair, in two bytes.
qint64 valuesIn(qint64 bytes, int format)
{
    if (format == 16)
        return bytes / static_cast<qint64>(sizeof(qint16));
    return bytes / bytesOfPair * 2 + (bytes % bytesOfPair == 2 ? 1 : 0);
}

/// Bytes of format 212 that so many values take; half a pair takes two.
qint64 bytesBefore212(qint64 values)
{
    return values / 2 * bytesOfPair + values % 2 * 2;
}

short signed12(int bits)
{
    const int value = bits >= 0x800 ? bits - 0x1000 : bits;
    return value == missingSample212 ? TWfdbSignalFile::missing : static_cast<short>(value);
}

/// A value of format 212. The middle byte of a pair has the upper bits of both.
short value212(const QByteArray& bytes, qint64 value)
{
    const auto byteAt = [&bytes](qint64 i) { return static_cast<unsigned char>(bytes[static_cast<int>(i)]); };
    const qint64 pair = value / 2 * bytesOfPair;
    if (value % 2 == 0)
        return signed12(byteAt(pair) | (byteAt(pair + 1) & 0x0f) << 8);
    return signed12(byteAt(pair + 2) | (byteAt(pair + 1) & 0xf0) << 4);
}

} // namespace

TWfdbSignalFile::TWfdbSignalFile(const QString& path, int format, qint64 byteOffset, int signalCount)
    : m_file(path), m_format(format), m_offset(byteOffset), m_signalCount(signalCount)
{
    // A pipe would keep us waiting.
    if (!QFileInfo(path).isFile() || !m_file.open(QIODevice::ReadOnly) || m_file.size() < byteOffset)
        fail();
    m_frameCount = valuesIn(m_file.size() - byteOffset, format) / signalCount;
}

void TWfdbSignalFile::read(qint64 first, int count, short* out)
{
    std::fill_n(out, static_cast<qint64>(count) * m_signalCount, missing);
    const qint64 from = std::max<qint64>(first, 0);
    const qint64 to = std::min(first + count, m_frameCount);
    if (from >= to)
        return;
    out += (from - first) * m_signalCount;
    if (m_format == 16)
        read16(from * m_signalCount, to * m_signalCount, out);
    else
        read212(from * m_signalCount, to * m_signalCount, out);
}

QByteArray TWfdbSignalFile::readBytes(qint64 from, qint64 to)
{
    QByteArray bytes = m_file.seek(m_offset + from) ? m_file.read(to - from) : QByteArray();
    // They were there when the file was opened; a study with a hole in their place would look like a pause.
    if (bytes.size() != to - from)
        fail();
    return bytes;
}

void TWfdbSignalFile::read16(qint64 from, qint64 to, short* out)
{
    constexpr qint64 size = sizeof(qint16);
    const QByteArray bytes = readBytes(from * size, to * size);
    qFromLittleEndian<qint16>(bytes.constData(), to - from, out);
}

void TWfdbSignalFile::read212(qint64 from, qint64 to, short* out)
{
    const qint64 firstPair = from / 2;
    const QByteArray bytes = readBytes(firstPair * bytesOfPair, bytesBefore212(to));
    for (qint64 value = from; value < to; ++value)
        *out++ = value212(bytes, value - firstPair * 2);
}
