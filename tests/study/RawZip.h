#pragma once

#include <QByteArray>

#include <limits>

#include <zlib.h>

/// Bytes of a zip archive with one member, put together field by field so that each can lie.
struct TRawZip
{
    QByteArray name = "info";
    QByteArray packed;
    quint16 flags = 0;
    quint16 method = Z_DEFLATED;
    quint32 crc = 0;
    quint32 size = 0;
    quint16 entries = 1;
    QByteArray directoryExtra;
    QByteArray comment = "VTZIP1";
    quint16 commentSize = 6;

    /// An honest archive of `content`.
    explicit TRawZip(const QByteArray& content)
        : packed(deflated(content)), crc(crcOf(content)), size(quint32(content.size()))
    {
    }

    static quint32 crcOf(const QByteArray& bytes)
    {
        return quint32(crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()), uInt(bytes.size())));
    }

    static QByteArray number(quint64 value, int bytes)
    {
        QByteArray result;
        for (int i = 0; i < bytes; ++i, value /= 256)
            result.append(char(value % 256));
        return result;
    }

    QByteArray bytes() const
    {
        const QByteArray local = "PK\3\4" + header(0) + name + packed;
        const QByteArray directory =
            "PK\1\2" + number(0, 2) + header(directoryExtra.size()) + number(0, 14) + name + directoryExtra;
        return local + directory + "PK\5\6" + number(0, 4) + number(entries, 2) + number(entries, 2) +
               number(quint64(directory.size()), 4) + number(quint64(local.size()), 4) +
               number(commentSize, 2) + comment;
    }

private:
    /// The fields that local header and directory entry share, from the version needed to the extra length.
    QByteArray header(int extraSize) const
    {
        return number(20, 2) + number(flags, 2) + number(method, 2) + number(0, 4) + number(crc, 4) +
               number(quint64(packed.size()), 4) + number(size, 4) + number(quint64(name.size()), 2) +
               number(quint64(extraSize), 2);
    }

    static QByteArray deflated(const QByteArray& content)
    {
        // qCompress puts four bytes of size, the zlib header of two and a checksum of four around the stream.
        const QByteArray wrapped = qCompress(content);
        return wrapped.mid(6, wrapped.size() - 10);
    }
};
