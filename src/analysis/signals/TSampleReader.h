#pragma once

#include <QtGlobal>

class TSignal;

/// Reads single samples of one channel at a stride, through locked blocks where the signal has them. What it
/// gives is what `TSignal::sample` would. Keeps one block locked while it lives.
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
    int sample(qint64 index);
    bool moveTo(int block);
    void release();

    TSignal* m_signal;
    int m_channel;
    int m_stride;
    int m_blockSize;
    bool m_byBlock;
    /// Absolute index of the locked block's first sample, and the block; null when none is locked.
    qint64 m_base = 0;
    const short* m_samples = nullptr;
};
