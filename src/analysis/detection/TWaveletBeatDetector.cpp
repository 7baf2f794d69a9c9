#include "analysis/detection/TWaveletBeatDetector.h"

#include "analysis/signals/TSignal.h"

#include <algorithm>

namespace {

/// Seconds of transform before the start, so that the thresholds are settled there.
constexpr double runIn = 4.0;

} // namespace

TWaveletBeatDetector::TWaveletBeatDetector(bool delineateWaves) : m_delineateWaves(delineateWaves) {}

void TWaveletBeatDetector::reset(TSignal* signal, double startTime, double endTime)
{
    TBeatDetector::reset(signal, startTime, endTime);
    m_transform = std::make_unique<TWaveletTransform>(signal, position() - signal->indexOf(runIn));
    m_channels.clear();
    for (int channel = 0; channel < signal->channelCount(); ++channel) {
        m_channels.emplace_back(*m_transform, channel, signal->samplingRate(), m_delineateWaves);
        m_channels.back().restart(position());
    }
}

void TWaveletBeatDetector::clear()
{
    TBeatDetector::clear();
    m_channels.clear();
    m_transform.reset();
}

void TWaveletBeatDetector::prepare(int end)
{
    m_transform->run(end);
}

int TWaveletBeatDetector::lastPosition() const
{
    return m_transform->endFor(signal()->sampleCount());
}

int TWaveletBeatDetector::detectChannel(int channel, int from, int to, std::vector<TChannelBeat>& out)
{
    const std::size_t before = out.size();
    m_channels[channel].detect(from, to, out);
    tellObserver(channel, out, before);
    return static_cast<int>(out.size() - before);
}

int TWaveletBeatDetector::finishChannel(int channel, int from, int to, std::vector<TChannelBeat>& out)
{
    const std::size_t before = out.size();
    m_channels[channel].finish(from, to, out);
    tellObserver(channel, out, before);
    return static_cast<int>(out.size() - before);
}

void TWaveletBeatDetector::tellObserver(int channel, const std::vector<TChannelBeat>& candidates,
                                        std::size_t first) const
{
    if (!m_observer)
        return;
    for (std::size_t i = first; i < candidates.size(); ++i)
        m_observer(channel, candidates[i]);
}
