#include "analysis/filters/TFftBaselineStream.h"

#include "analysis/signals/TSignal.h"

#include <algorithm>

namespace {

constexpr int blockLength = 1024;
constexpr int hop = 64;
constexpr int lead = 480; ///< samples of a block before those that are given on
/// The mirror of bin 1 is bin 1023, that of bin 0 is itself; bin 1022 goes with them and halves bin 2.
constexpr int clearedBins[] = {0, 1, 1022, 1023};
// Both transforms together multiply by the length; these two factors take it back.
constexpr double scaleIn = 1.0 / 32768;
constexpr double scaleOut = 32.0;

} // namespace

TFftBaselineStream::TFftBaselineStream()
    : m_fft(blockLength), m_fillFrom(lead), m_real(blockLength), m_imaginary(blockLength)
{
}

void TFftBaselineStream::attach(TSignal* source, int position)
{
    TStreamProcessor::attach(source, position);
    m_fillFrom = lead;
}

void TFftBaselineStream::run()
{
    if (!source() || !sink())
        return;
    while (available() >= blockLength - m_fillFrom) {
        m_output.prepare(source()->channelCount(), hop);
        for (int channel = 0; channel < source()->channelCount(); ++channel)
            filter(channel, m_output.row(channel));
        setPosition(position() + blockLength - m_fillFrom - (blockLength - hop));
        m_fillFrom = 0;
        m_output.giveTruncated(sink());
    }
}

void TFftBaselineStream::filter(int channel, double* out)
{
    std::fill_n(m_real.begin(), m_fillFrom, 0.0);
    source()->readDoubles(channel, position(), blockLength - m_fillFrom, m_real.data() + m_fillFrom);
    std::transform(m_real.begin(), m_real.end(), m_real.begin(), [](double x) { return x * scaleIn; });
    std::fill(m_imaginary.begin(), m_imaginary.end(), 0.0);
    m_fft.forward(m_real.data(), m_imaginary.data());
    for (const int bin : clearedBins)
        m_real[bin] = m_imaginary[bin] = 0.0;
    m_fft.inverse(m_real.data(), m_imaginary.data());
    std::transform(m_real.begin() + lead, m_real.begin() + lead + hop, out,
                   [](double x) { return x * scaleOut; });
}
