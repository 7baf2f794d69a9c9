#include "analysis/signals/TFirStreamBase.h"

#include "analysis/signals/TSignal.h"

#include <algorithm>

TFirStreamBase::TFirStreamBase(const std::vector<double>& coefficients, int delay)
    : m_delay(std::max(delay, 0))
{
    const int n = static_cast<int>(coefficients.size());
    for (int i = 0; i < n; ++i)
        m_taps.push_back({coefficients[n - 1 - i], i});
}

void TFirStreamBase::run()
{
    if (!source() || !sink())
        return;
    while (available() > m_delay) {
        const int frames = std::min(available() - m_delay, TFrameBuffer::maxFrames);
        m_output.prepare(source()->channelCount(), frames);
        for (int channel = 0; channel < source()->channelCount(); ++channel)
            convolve(channel, frames, m_output.row(channel));
        setPosition(position() + frames);
        give(m_output);
    }
}

void TFirStreamBase::convolve(int channel, int frames, double* out)
{
    const int n = static_cast<int>(m_taps.size());
    m_input.resize(frames + n + fir::padding);
    source()->readDoubles(channel, position() + 1 + m_delay - n, frames + n - 1, m_input.data());
    fir::sum(m_taps, m_input.data(), frames, out);
}
