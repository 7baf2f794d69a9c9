#include "study/TMemberFile.h"

#include <algorithm>

qint64 TMemberFile::writeData(const char* data, qint64 size)
{
    if (m_head.size() < m_headSize) {
        m_head.append(data, int(std::min<qint64>(size, m_headSize - m_head.size())));
        m_isRefused = m_head.size() == m_headSize && !m_isHead(m_head);
    }
    return m_isRefused ? -1 : QFile::writeData(data, size);
}
