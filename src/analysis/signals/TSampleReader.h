#pragma once

#include <QtGlobal>

#include <array>

class TSignal;

/// Finds the extremes of spans of one channel that follow each other, looking at samples at a stride. Reads
/// through locked blocks where the signal has them; what it sees is what `TSignal::sample` gives. Keeps one
/// block locked while it lives.
class TSampleReader
{
public:
    TSampleReader(TSignal* signal, int channel, int stride);
    ~TSampleReader();
    TSampleReader(const TSampleReader&) = delete;
    TSampleReader& operator=(const TSampleReader&) = delete;

    /// Least and greatest sample from `first` to `last` inclusive, at the stride; the last one always counts.
    void extremes(qint64 first, qint64 last, int* low, int* high);

private:
    bool isInBlock(qint64 first, qint64 last) const;
    bool lockBlockOf(qint64 index);
    void release();
    bool isInChunk(qint64 first, qint64 last) const;
    bool readChunk(qint64 first, qint64 last);
    int sample(qint64 index);

    TSignal* m_signal;
    int m_channel;
    int m_stride;
    int m_blockSize;
    bool m_byBlock;
    bool m_byChunk;
    /// Absolute index of the first sample of the locked block or of the chunk.
    qint64 m_base = 0;
    const short* m_block = nullptr;
    qint64 m_blockEnd = 0;
    int m_chunkLength = 0;
    std::array<int, 512> m_chunk;
};
