#include "analysis/signals/TFirDecimator.h"

#include "analysis/signals/TSignal.h"

#include <algorithm>

namespace {

constexpr int maxDecimation = 4096;

} // namespace

TFirDecimator::TFirDecimator(const std::vector<double>& coefficients, int decimation)
    : m_length(static_cast<int>(coefficients.size())), m_delay(m_length / 2),
      m_decimation(std::clamp(decimation, 1, maxDecimation)),
      m_maxFrames(std::max(TFrameBuffer::maxFrames / m_decimation, 1)),
      m_phaseLength(m_maxFrames + m_length / m_decimation + 1 + fir::padding)
{
    for (int i = 0; i < m_length; ++i) {
        const int back = m_length - 1 - i;
        m_taps.push_back({coefficients[i], back % m_decimation * m_phaseLength + back / m_decimation});
    }
    m_phases.resize(static_cast<std::size_t>(m_phaseLength) * m_decimation);
}

void TFirDecimator::run()
{
    if (!source() || !sink())
        return;
    while (const int frames = framesToCome()) {
        m_output.prepare(source()->channelCount(), frames);
        for (int channel = 0; channel < source()->channelCount(); ++channel) {
            if (m_decimation == 1)
                source()->readDoubles(channel, position(), frames, m_output.row(channel));
            else
                filter(channel, frames, m_output.row(channel));
        }
        setPosition(position() + frames * m_decimation);
        m_output.giveTruncated(sink());
    }
}

/// A position is taken while it lies before the source's end less the delay and one step.
int TFirDecimator::framesToCome() const
{
    const int beyond = std::max(available() - m_delay - m_decimation, 0);
    const int frames = beyond / m_decimation + (beyond % m_decimation != 0 ? 1 : 0);
    return std::min(frames, m_maxFrames);
}

void TFirDecimator::filter(int channel, int frames, double* out)
{
    const int count = (frames - 1) * m_decimation + m_length;
    m_input.resize(count);
    source()->readDoubles(channel, position() + m_delay + 1 - m_length, count, m_input.data());
    for (int phase = 0; phase < m_decimation; ++phase) {
        double* to = m_phases.data() + static_cast<std::size_t>(m_phaseLength) * phase;
        for (int i = phase; i < count; i += m_decimation)
            *to++ = m_input[i];
    }
    fir::sum(m_taps, m_phases.data(), frames, out);
}
