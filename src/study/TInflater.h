#pragma once

#include <QByteArray>

#include <zlib.h>

/// Expands the `qCompress` form piece by piece: 4 bytes of length, which are not believed, and a zlib stream.
/// Borrows the compressed bytes.
class TInflater
{
public:
    static constexpr int lengthPrefix = 4;

    explicit TInflater(const QByteArray& compressed);
    ~TInflater();
    TInflater(const TInflater&) = delete;
    TInflater& operator=(const TInflater&) = delete;

    /// Bytes written to `buffer`; 0 at the end or on damage, `finished` tells which.
    int read(char* buffer, int size);
    /// Whether the end of the stream was reached and its checksum is right.
    bool finished() const { return m_finished; }

private:
    z_stream m_stream{};
    bool m_ready = false;
    bool m_finished = false;
};
