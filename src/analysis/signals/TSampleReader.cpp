#include "analysis/signals/TSampleReader.h"

#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <limits>

namespace {

/// Up to this stride it is faster to convert a ring's samples in a row than to ask for those that are looked
/// at.
constexpr int maxChunkStride = 3;

constexpr qint64 minIndex = std::numeric_limits<int>::min();
constexpr qint64 maxIndex = std::numeric_limits<int>::max();

template <typename SampleAt>
void findExtremes(qint64 count, int stride, int* low, int* high, SampleAt sampleAt)
{
    int least = sampleAt(0);
    int greatest = least;
    for (qint64 i = stride; i < count - 1; i += stride) {
        const int value = sampleAt(i);
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    }
    const int value = sampleAt(count - 1);
    *low = std::min(least, value);
    *high = std::max(greatest, value);
}

} // namespace

TSampleReader::TSampleReader(TSignal* signal, int channel, int stride)
    : m_signal(signal), m_channel(channel), m_stride(stride), m_blockSize(signal->blockSize()),
      m_byBlock(signal->readsByBlock()), m_byChunk(!m_byBlock && stride <= maxChunkStride)
{
}

TSampleReader::~TSampleReader()
{
    release();
}

void TSampleReader::extremes(qint64 first, qint64 last, int* low, int* high)
{
    const qint64 count = last - first + 1;
    if (isInBlock(first, last)) {
        const short* const samples = m_block + (first - m_base);
        findExtremes(count, m_stride, low, high, [samples](qint64 i) { return int(samples[i]); });
    } else if (m_byChunk && (isInChunk(first, last) || readChunk(first, last))) {
        const int* const samples = m_chunk.data() + (first - m_base);
        findExtremes(count, m_stride, low, high, [samples](qint64 i) { return samples[i]; });
    } else {
        findExtremes(count, m_stride, low, high, [this, first](qint64 i) { return sample(first + i); });
    }
}

bool TSampleReader::isInBlock(qint64 first, qint64 last) const
{
    return m_block && first >= m_base && last < m_blockEnd;
}

bool TSampleReader::lockBlockOf(qint64 index)
{
    release();
    const int block = static_cast<int>(index / m_blockSize);
    m_base = static_cast<qint64>(block) * m_blockSize;
    m_blockEnd = std::min<qint64>(m_base + m_blockSize, m_signal->sampleCount());
    m_block = m_signal->lockBlock(m_channel, block);
    return m_block != nullptr;
}

void TSampleReader::release()
{
    if (m_block)
        m_signal->unlockBlock(m_channel, static_cast<int>(m_base / m_blockSize));
    m_block = nullptr;
}

bool TSampleReader::isInChunk(qint64 first, qint64 last) const
{
    return first >= m_base && last < m_base + m_chunkLength;
}

bool TSampleReader::readChunk(qint64 first, qint64 last)
{
    const qint64 length = m_chunk.size();
    if (first < minIndex || first > maxIndex - length || last >= first + length)
        return false;
    std::array<double, std::tuple_size_v<decltype(m_chunk)>> samples;
    m_signal->readDoubles(m_channel, static_cast<int>(first), static_cast<int>(length), samples.data());
    std::transform(samples.begin(), samples.end(), m_chunk.begin(), velantor::truncated<int>);
    m_base = first;
    m_chunkLength = static_cast<int>(length);
    return true;
}

int TSampleReader::sample(qint64 index)
{
    // What a block holds behind the signal's end is none of its samples.
    if (index < 0 || index >= m_signal->sampleCount())
        return 0;
    if (isInBlock(index, index) || (m_byBlock && lockBlockOf(index)))
        return m_block[index - m_base];
    return m_signal->sample(m_channel, static_cast<int>(index));
}
