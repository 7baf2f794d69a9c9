#include "analysis/signals/TSampleReader.h"

#include "analysis/signals/TSignal.h"

#include <limits>

TSampleReader::TSampleReader(TSignal* signal, int channel, int stride)
    : m_signal(signal), m_channel(channel), m_stride(stride), m_blockSize(signal->blockSize()),
      m_byBlock(signal->readsByBlock())
{
}

TSampleReader::~TSampleReader()
{
    release();
}

void TSampleReader::extremes(qint64 first, qint64 last, int* low, int* high)
{
    int least = sample(last);
    int greatest = least;
    for (qint64 i = first; i < last; i += m_stride) {
        const int value = sample(i);
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    }
    *low = least;
    *high = greatest;
}

int TSampleReader::sample(qint64 index)
{
    if (index < 0 || index > std::numeric_limits<int>::max())
        return 0;
    if (!m_byBlock)
        return m_signal->sample(m_channel, static_cast<int>(index));
    if (m_samples && index >= m_base && index < m_base + m_blockSize)
        return m_samples[index - m_base];
    if (moveTo(static_cast<int>(index / m_blockSize)))
        return m_samples[index - m_base];
    return m_signal->sample(m_channel, static_cast<int>(index));
}

bool TSampleReader::moveTo(int block)
{
    release();
    m_base = static_cast<qint64>(block) * m_blockSize;
    m_samples = m_signal->lockBlock(m_channel, block);
    return m_samples != nullptr;
}

void TSampleReader::release()
{
    if (m_samples)
        m_signal->unlockBlock(m_channel, static_cast<int>(m_base / m_blockSize));
    m_samples = nullptr;
}
