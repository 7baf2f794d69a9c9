#pragma once

class TSignal;

/// What a block processor sees of its source: a block and its two neighbours, locked while the window stands
/// on them.
class TSignalWindow
{
public:
    /// `source` is borrowed and outlives the window.
    explicit TSignalWindow(TSignal* source);
    ~TSignalWindow();
    TSignalWindow(const TSignalWindow&) = delete;
    TSignalWindow& operator=(const TSignalWindow&) = delete;

    /// Takes the blocks `block - 1`, `block` and `block + 1`, and releases those held before.
    void move(int block, int channel);

    /// The sample at `offset` from the start of the current block; 0 beyond the neighbours and where the
    /// signal has no block.
    short sample(int offset) const
    {
        if (offset >= 0 && offset < m_blockSize)
            return m_current ? m_current[offset] : short(0);
        if (offset < 0)
            return m_previous && offset >= -m_blockSize ? m_previous[offset + m_blockSize] : short(0);
        return m_next && offset - m_blockSize < m_blockSize ? m_next[offset - m_blockSize] : short(0);
    }

    int blockSize() const { return m_blockSize; }
    /// `blockSize()` samples each, null where the signal has no block.
    const short* previous() const { return m_previous; }
    const short* current() const { return m_current; }
    const short* next() const { return m_next; }
    TSignal* source() const { return m_source; }
    /// -1 before the first move.
    int channel() const { return m_channel; }
    int block() const { return m_block; }

private:
    int m_blockSize;
    const short* m_previous = nullptr;
    const short* m_current = nullptr;
    const short* m_next = nullptr;
    TSignal* m_source;
    int m_channel = -1;
    int m_block = 0;
};
