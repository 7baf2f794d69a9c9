#include "analysis/detection/TWaveletTransform.h"

#include "analysis/delineation/QuadraticSplineWavelet.h"

#include <algorithm>

namespace {

/// Ten blocks, and with small blocks at least what a search for missed beats may go back.
int capacityFor(const TSignal& signal)
{
    return std::max(10 * signal.blockSize(), 40 * signal.samplingRate());
}

void appendZeros(TDoubleSignal& signal, int count)
{
    const std::vector<double> zeros(count, 0.0);
    const std::vector<const double*> rows(signal.channelCount(), zeros.data());
    signal.addPerChannelDouble(rows.data(), count);
}

} // namespace

TWaveletTransform::TWaveletTransform(TSignal* signal, int position) : m_origin(std::max(position, 0))
{
    for (int scale = 1; scale <= TWaveletSpan::scaleCount; ++scale) {
        const TDoubleVector taps = velantor::waveletFilter(scale);
        const int delay = taps.size() / 2;
        TScale& s = m_scales[scale - 1];
        s.firstKnown = taps.size() - 1 - delay;
        s.output = std::make_unique<TDoubleSignal>(signal->blockSize(), capacityFor(*signal),
                                                   signal->channelCount(), signal->samplingRate());
        appendZeros(*s.output, s.firstKnown);
        s.stream = std::make_unique<TFirStreamDouble>(taps.values(), delay);
        s.stream->attach(signal, m_origin + s.firstKnown);
        s.stream->setSink(s.output.get());
    }
}

void TWaveletTransform::run(int end)
{
    for (TScale& scale : m_scales)
        scale.stream->runTo(end);
}

int TWaveletTransform::end() const
{
    int end = std::numeric_limits<int>::max();
    for (const TScale& scale : m_scales)
        end = std::min(end, scale.output->sampleCount());
    return m_origin + end;
}

int TWaveletTransform::endFor(int sampleCount) const
{
    int end = std::numeric_limits<int>::max();
    for (const TScale& scale : m_scales)
        end = std::min(end, std::max(scale.firstKnown, sampleCount - m_origin - scale.stream->delay()));
    return m_origin + end;
}

void TWaveletTransform::read(int channel, int begin, int end, TWaveletSpan& span) const
{
    const int from = std::max(begin, m_origin);
    span.reset(from, std::min(end, this->end()));
    for (int scale = 1; scale <= TWaveletSpan::scaleCount; ++scale) {
        TDoubleSignal& output = *m_scales[scale - 1].output;
        output.readDoubles(channel, from - m_origin, span.size(), span.data(scale));
    }
}
