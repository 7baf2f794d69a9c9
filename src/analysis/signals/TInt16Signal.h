#pragma once

#include "analysis/signals/TSampleRing.h"
#include "analysis/signals/TSignal.h"

/// A live signal of 16-bit samples: a ring of the last `capacity` samples of each channel. What has left the
/// ring reads 0.
class TInt16Signal : public TSignal
{
public:
    /// Sizes in samples per channel, rate in samples per second.
    TInt16Signal(int blockSize, int capacity, int channelCount, int samplingRate);
    ~TInt16Signal() override;

    int sample(int channel, int index) override;
    void readDoubles(int channel, int start, int count, double* out) override;
    short* loadBlock(int channel, int block) override;
    void freeBlock(void* buffer) override;

    /// Frames of 16-bit samples in the byte order of the machine; `size` in bytes.
    void addInterleaved(const char* data, int size) override;
    void addPerChannel(const short* const* data, int n) override;
    /// Truncated and clamped to 16 bits.
    void addPerChannelDouble(const double* const* data, int n) override;

    bool readsByBlock() const override { return false; }
    int oldestSample() const override { return m_rings.oldest(sampleCount()); }

private:
    /// `sampleOf(channel, frame)` gives the samples.
    template <typename SampleOf> void append(int frames, SampleOf sampleOf);

    TSampleRing<short> m_rings;
};
