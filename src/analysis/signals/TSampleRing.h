#pragma once

#include <QtGlobal>

#include <algorithm>
#include <vector>

/// The last `capacity` samples of each channel. The sample with absolute index i lies at i mod `capacity`, so
/// that the place of writing follows from the number of samples written so far, which the signal keeps.
template <typename Sample> class TSampleRing
{
public:
    TSampleRing(int channelCount, int capacity)
        : m_channelCount(channelCount), m_capacity(std::max(capacity, 1)), m_rowLength(m_capacity + rowGap),
          m_samples(m_rowLength * static_cast<std::size_t>(channelCount))
    {
    }

    int capacity() const { return m_capacity; }
    int oldest(int sampleCount) const { return std::max(sampleCount - m_capacity, 0); }

    bool holds(qint64 index, int sampleCount) const
    {
        return index >= oldest(sampleCount) && index < sampleCount;
    }

    /// Only for an index that the ring holds.
    Sample at(int channel, int index) const { return row(channel)[index % m_capacity]; }

    /// Writes `frames` samples of each channel behind the `sampleCount` that are there; `sampleOf(channel,
    /// frame)` gives them. Those that the same call would overwrite are passed over.
    template <typename SampleOf> void write(int sampleCount, int frames, SampleOf sampleOf)
    {
        int frame = std::max(frames - m_capacity, 0);
        int place = static_cast<int>((static_cast<qint64>(sampleCount) + frame) % m_capacity);
        while (frame < frames) {
            const int run = std::min(frames - frame, m_capacity - place);
            for (int channel = 0; channel < m_channelCount; ++channel) {
                Sample* const to = row(channel) + place;
                for (int i = 0; i < run; ++i)
                    to[i] = sampleOf(channel, frame + i);
            }
            frame += run;
            place = 0;
        }
    }

    /// Samples [start, start + count) as `convert` gives them; 0 where the ring has none.
    template <typename Out, typename Convert>
    void read(int channel, int start, int count, int sampleCount, Out* out, Convert convert) const
    {
        const qint64 end = static_cast<qint64>(start) + count;
        const qint64 from = std::clamp<qint64>(oldest(sampleCount), start, end);
        const qint64 to = std::clamp<qint64>(sampleCount, from, end);
        std::fill(out, out + (from - start), Out(0));
        std::fill(out + (to - start), out + count, Out(0));
        for (qint64 index = from; index < to;) {
            const int place = static_cast<int>(index % m_capacity);
            const int run = static_cast<int>(std::min<qint64>(to - index, m_capacity - place));
            const Sample* const samples = row(channel) + place;
            std::transform(samples, samples + run, out + (index - start), convert);
            index += run;
        }
    }

    /// Position of a block in the ring, counted in blocks from its start, or below 0 if it counts as gone:
    /// only what was written since the last turn of the ring has a place.
    int placeOfBlock(int block, int blockCount, int blockSize) const
    {
        const int slots = m_capacity / blockSize;
        return slots > 0 ? block + blockCount % slots - blockCount : -1;
    }

private:
    /// A gap between channels: rows a multiple of a page apart would all fall on the same few cache lines.
    static constexpr std::size_t rowGap = 64 / sizeof(Sample);

    static_assert(sizeof(Sample) <= 64);

    Sample* row(int channel) { return m_samples.data() + m_rowLength * channel; }
    const Sample* row(int channel) const { return m_samples.data() + m_rowLength * channel; }

    int m_channelCount;
    int m_capacity;
    std::size_t m_rowLength;
    std::vector<Sample> m_samples;
};
