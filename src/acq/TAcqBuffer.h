#pragma once

#include <QMutex>

#include <atomic>
#include <vector>

/// The hand-over of samples from a device's reader thread to the pump: a queue of bytes without an upper
/// bound. A stalled pump makes it grow.
class TAcqBuffer
{
public:
    /// Appends all bytes of a frame at once.
    void push(const char* data, int size);
    /// Takes up to `size` bytes from the front; returns their number.
    int pop(char* data, int size);
    /// Bytes waiting. Without the lock: it may be stale, never torn.
    qint64 size() const { return m_size.load(std::memory_order_acquire); }
    /// What the queue holds of the memory, waiting bytes or not.
    qint64 reservedBytes();

private:
    QMutex m_mutex;
    /// Waiting bytes are those from m_first on; the room before them is reclaimed when it outgrows them, and
    /// the memory itself when a long queue has been emptied.
    std::vector<char> m_bytes;
    std::size_t m_first = 0;
    /// Read first and written last under the lock, which orders the accesses for those, too, that do not see
    /// into the mutex.
    std::atomic<qint64> m_size = 0;
};
