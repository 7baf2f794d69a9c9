#include "study/TInflater.h"

#include <algorithm>

TInflater::TInflater(const QByteArray& compressed)
{
    const int prefix = std::min(lengthPrefix, compressed.size());
    m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(compressed.constData() + prefix));
    m_stream.avail_in = static_cast<uInt>(compressed.size() - prefix);
    m_ready = inflateInit(&m_stream) == Z_OK;
}

TInflater::~TInflater()
{
    inflateEnd(&m_stream);
}

int TInflater::read(char* buffer, int size)
{
    if (!m_ready || m_finished)
        return 0;
    m_stream.next_out = reinterpret_cast<Bytef*>(buffer);
    m_stream.avail_out = static_cast<uInt>(size);
    const int result = inflate(&m_stream, Z_NO_FLUSH);
    m_finished = result == Z_STREAM_END;
    m_ready = result == Z_OK;
    return m_ready || m_finished ? size - static_cast<int>(m_stream.avail_out) : 0;
}
