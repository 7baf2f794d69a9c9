#pragma once

#include "wfdb/WfdbCodes.h"

#include <QByteArray>

/// Puts the bytes of an annotation file together, word by word.
class TAnnotationBytes
{
public:
    TAnnotationBytes& add(char mnemonic, int interval) { return word(wfdb::codeOf(mnemonic), interval); }
    TAnnotationBytes& num(int value) { return word(60, value & 0xff); }
    TAnnotationBytes& subtype(int value) { return word(61, value & 0xff); }
    TAnnotationBytes& channel(int value) { return word(62, value); }

    TAnnotationBytes& skip(qint32 interval)
    {
        const auto bits = static_cast<quint32>(interval);
        return word(59, 0).raw(static_cast<int>(bits >> 16)).raw(static_cast<int>(bits & 0xffff));
    }

    TAnnotationBytes& aux(const QByteArray& text)
    {
        word(63, text.size());
        m_bytes += text;
        if (text.size() % 2 == 1)
            m_bytes += '\0';
        return *this;
    }

    TAnnotationBytes& word(int code, int value) { return raw(code << 10 | value); }

    TAnnotationBytes& raw(int bits)
    {
        m_bytes += static_cast<char>(bits & 0xff);
        m_bytes += static_cast<char>(bits >> 8);
        return *this;
    }

    const QByteArray& withoutEnd() const { return m_bytes; }
    QByteArray bytes() const { return m_bytes + QByteArray(2, '\0'); }

private:
    QByteArray m_bytes;
};
