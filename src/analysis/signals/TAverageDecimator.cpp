#include "analysis/signals/TAverageDecimator.h"

#include "analysis/signals/TSignal.h"

#include <algorithm>

namespace {

constexpr int maxFactor = 4096;

} // namespace

TAverageDecimator::TAverageDecimator(int factor) : m_factor(std::clamp(factor, 1, maxFactor)) {}

void TAverageDecimator::run()
{
    if (!source() || !sink())
        return;
    const int maxFrames = std::max(TFrameBuffer::maxFrames / m_factor, 1);
    while (const int frames = std::min(available() / m_factor, maxFrames)) {
        m_output.prepare(source()->channelCount(), frames);
        for (int channel = 0; channel < source()->channelCount(); ++channel)
            average(channel, frames, m_output.row(channel));
        setPosition(position() + frames * m_factor);
        m_output.giveTruncated(sink());
    }
}

void TAverageDecimator::average(int channel, int frames, double* out)
{
    m_input.resize(static_cast<std::size_t>(frames) * m_factor);
    source()->readDoubles(channel, position(), frames * m_factor, m_input.data());
    const double weight = 1.0 / m_factor;
    const double* from = m_input.data();
    for (int frame = 0; frame < frames; ++frame, from += m_factor) {
        double sum = 0.0;
        for (int i = 0; i < m_factor; ++i)
            sum += from[i];
        out[frame] = sum * weight;
    }
}
