#pragma once

#include <QByteArray>

/// Takes the bytes of a fuzzer apart from front to back. It never fails: what is missing reads as 0 or empty,
/// so that any bytes are an input.
class TFuzzReader
{
public:
    explicit TFuzzReader(const QByteArray& bytes) : m_bytes(bytes) {}

    bool atEnd() const { return m_at >= m_bytes.size(); }
    /// 0 to 255.
    int byte();
    /// A block behind its length in two bytes, low byte first; cut at the end of the input.
    QByteArray block();
    QByteArray rest() { return take(m_bytes.size()); }

    /// What `block` reads; `content` has at most 65535 bytes.
    static QByteArray makeBlock(const QByteArray& content);

private:
    QByteArray take(int size);

    QByteArray m_bytes;
    int m_at = 0;
};
