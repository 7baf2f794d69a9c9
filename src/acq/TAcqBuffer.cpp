#include "acq/TAcqBuffer.h"

#include <QMutexLocker>

#include <algorithm>

namespace {

/// More than the longest block that the pump takes; only a stall needs more.
constexpr std::size_t keptBytes = 256 * 1024;

} // namespace

void TAcqBuffer::push(const char* data, int size)
{
    const QMutexLocker lock(&m_mutex);
    const qint64 waiting = m_size.load(std::memory_order_acquire);
    m_bytes.insert(m_bytes.end(), data, data + size);
    m_size.store(waiting + size, std::memory_order_release);
}

int TAcqBuffer::pop(char* data, int size)
{
    const QMutexLocker lock(&m_mutex);
    const auto waiting = static_cast<std::size_t>(m_size.load(std::memory_order_acquire));
    const std::size_t count = std::min(waiting, static_cast<std::size_t>(std::max(size, 0)));
    std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_first), count, data);
    m_first += count;
    if (m_first >= m_bytes.size() - m_first) {
        m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_first));
        m_first = 0;
    }
    if (m_bytes.empty() && m_bytes.capacity() > keptBytes)
        std::vector<char>().swap(m_bytes);
    m_size.store(static_cast<qint64>(waiting - count), std::memory_order_release);
    return static_cast<int>(count);
}

qint64 TAcqBuffer::reservedBytes()
{
    const QMutexLocker lock(&m_mutex);
    static_cast<void>(m_size.load(std::memory_order_acquire));
    return static_cast<qint64>(m_bytes.capacity());
}
