#pragma once

#include "analysis/signals/TSampleRing.h"
#include "analysis/signals/TSignal.h"

/// A live signal of doubles, in counts: a ring of the last `capacity` samples of each channel. `sample` and
/// the blocks give them truncated, the blocks clamped to 16 bits as well; `readDoubles` gives them as they
/// are.
class TDoubleSignal : public TSignal
{
public:
    /// Sizes in samples per channel, rate in samples per second.
    TDoubleSignal(int blockSize, int capacity, int channelCount, int samplingRate);
    ~TDoubleSignal() override;

    int sample(int channel, int index) override;
    void readDoubles(int channel, int start, int count, double* out) override;
    short* loadBlock(int channel, int block) override;
    void freeBlock(void* buffer) override;

    /// Frames of doubles; `size` in bytes.
    void addInterleaved(const char* data, int size) override;
    void addPerChannel(const short* const* data, int n) override;
    void addPerChannel(const double* const* data, int n) { addPerChannelDouble(data, n); }
    void addPerChannelDouble(const double* const* data, int n) override;

    bool readsByBlock() const override { return false; }
    int oldestSample() const override { return m_rings.oldest(sampleCount()); }

private:
    /// `sampleOf(channel, frame)` gives the samples.
    template <typename SampleOf> void append(int frames, SampleOf sampleOf);

    TSampleRing<double> m_rings;
};
