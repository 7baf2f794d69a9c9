#include "fuzz/TFuzzReader.h"

#include <algorithm>

int TFuzzReader::byte()
{
    return atEnd() ? 0 : static_cast<unsigned char>(m_bytes.at(m_at++));
}

QByteArray TFuzzReader::block()
{
    const int low = byte();
    return take(low + 256 * byte());
}

QByteArray TFuzzReader::makeBlock(const QByteArray& content)
{
    Q_ASSERT(content.size() <= 0xFFFF);
    QByteArray block;
    block.append(static_cast<char>(content.size() % 256));
    block.append(static_cast<char>(content.size() / 256));
    return block + content;
}

QByteArray TFuzzReader::take(int size)
{
    const QByteArray taken = m_bytes.mid(m_at, size);
    m_at += taken.size();
    return taken;
}
