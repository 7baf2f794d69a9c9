#pragma once

#include "analysis/signals/TSignal.h"

#include <random>

/// A signal that holds all its samples, as a recording on disk does, and counts what is asked of it.
class TStoredSignal : public TSignal
{
public:
    TStoredSignal(int blockSize, const std::vector<std::vector<short>>& samples, int samplingRate = 500)
        : TSignal(blockSize, static_cast<int>(samples.size()), samplingRate), m_samples(samples)
    {
        setSampleCount(samples.empty() ? 0 : static_cast<int>(samples[0].size()));
    }

    ~TStoredSignal() override { freeAllBlocks(); }

    int sample(int channel, int index) override
    {
        ++samplesAsked;
        return at(channel, index);
    }

    void readDoubles(int channel, int start, int count, double* out) override
    {
        for (int i = 0; i < count; ++i)
            out[i] = at(channel, start + i);
    }

    short* loadBlock(int channel, int block) override
    {
        ++blocksLoaded;
        auto buffer = std::make_unique<short[]>(blockSize());
        for (int i = 0; i < blockSize(); ++i)
            buffer[i] = at(channel, block * blockSize() + i);
        return buffer.release();
    }

    void freeBlock(void* buffer) override
    {
        ++blocksFreed;
        delete[] static_cast<short*>(buffer);
    }

    /// Grows by samples of one channel each, all of the same length.
    void grow(const std::vector<std::vector<short>>& more)
    {
        for (std::size_t i = 0; i < more.size(); ++i)
            m_samples[i].insert(m_samples[i].end(), more[i].begin(), more[i].end());
        setSampleCount(static_cast<int>(m_samples[0].size()));
        notifyListeners();
    }

    using TSignal::setSampleCount;

    int samplesAsked = 0;
    int blocksLoaded = 0;
    int blocksFreed = 0;

private:
    short at(int channel, int index) const
    {
        if (channel < 0 || channel >= channelCount() || index < 0 || index >= sampleCount())
            return 0;
        const auto& samples = m_samples[channel];
        return static_cast<std::size_t>(index) < samples.size() ? samples[index] : short(0);
    }

    std::vector<std::vector<short>> m_samples;
};

/// The same numbers in every run.
inline std::vector<std::vector<short>> randomSamples(int channels, int count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<std::vector<short>> samples(channels, std::vector<short>(count));
    for (auto& row : samples) {
        for (short& sample : row)
            sample = static_cast<short>(generator());
    }
    return samples;
}

/// Appends samples [from, from + n) of every channel.
inline void append(TSignal& signal, const std::vector<std::vector<short>>& samples, int from, int n)
{
    std::vector<const short*> rows;
    for (const auto& row : samples)
        rows.push_back(row.data() + from);
    signal.addPerChannel(rows.data(), n);
}

/// Cuts [0, count) into pieces of 1 to `longest` and hands them to `take(from, n)`.
template <typename Take> void cutAtRandom(int count, int longest, unsigned seed, Take take)
{
    std::mt19937 generator(seed);
    for (int from = 0; from < count;) {
        const int n = std::min<int>(1 + generator() % longest, count - from);
        take(from, n);
        from += n;
    }
}
