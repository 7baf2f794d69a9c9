#include "analysis/signals/TFrameBuffer.h"

#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <array>

namespace {

template <typename Sample> using TRows = std::array<const Sample*, velantor::maxChannels>;

/// A pointer for each channel that a sink can have; those without a row of their own share the last one.
template <typename Sample>
TRows<Sample> rowsOf(const std::vector<Sample>& samples, int channelCount, int frames)
{
    TRows<Sample> rows{};
    for (int i = 0; i < velantor::maxChannels; ++i)
        rows[i] = samples.data() + static_cast<std::size_t>(frames) * std::min(i, channelCount);
    return rows;
}

} // namespace

void TFrameBuffer::prepare(int channelCount, int frames)
{
    m_channelCount = channelCount;
    m_frames = frames;
    m_samples.resize(static_cast<std::size_t>(frames) * (channelCount + 1));
    std::fill(m_samples.end() - frames, m_samples.end(), 0.0);
}

void TFrameBuffer::giveTruncated(TSignal* sink)
{
    m_truncated.resize(m_samples.size());
    std::transform(m_samples.begin(), m_samples.end(), m_truncated.begin(), velantor::truncated<short>);
    sink->addPerChannel(rowsOf(m_truncated, m_channelCount, m_frames).data(), m_frames);
}

void TFrameBuffer::giveDoubles(TSignal* sink)
{
    sink->addPerChannelDouble(rowsOf(m_samples, m_channelCount, m_frames).data(), m_frames);
}
