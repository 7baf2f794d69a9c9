#include "analysis/filters/TOfflineFilterChain.h"

#include "analysis/filters/FirTables.h"
#include "analysis/filters/IirTables.h"
#include "analysis/filters/TFirBlockFilter.h"
#include "analysis/filters/TParabolaDetrend.h"
#include "analysis/signals/TFilteredSignal.h"
#include "base/Error.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr double windowSeconds = 3.0;

double meanOf(TSignal& signal, int channel, int start, int count)
{
    std::vector<double> samples(count);
    signal.readDoubles(channel, start, count, samples.data());
    return count > 0 ? std::accumulate(samples.begin(), samples.end(), 0.0) / count : 0.0;
}

/// Through the means of the first and the last seconds, and through their middle. A recording shorter than a
/// window is a window as a whole.
std::unique_ptr<TParabolaDetrend> fitParabola(TSignal& signal, int channel)
{
    const int sampleCount = signal.sampleCount();
    const int windowCount = std::min(signal.indexOf(windowSeconds), sampleCount);
    const double firstMean = meanOf(signal, channel, 0, windowCount);
    const double lastMean = meanOf(signal, channel, sampleCount - windowCount, windowCount);
    return std::make_unique<TParabolaDetrend>(
        TParabolaDetrend::TPoint{windowCount / 2.0, firstMean},
        TParabolaDetrend::TPoint{sampleCount / 2.0, (firstMean + lastMean) / 2.0},
        TParabolaDetrend::TPoint{sampleCount - windowCount / 2.0, lastMean});
}

std::unique_ptr<TBlockProcessor> recursion(const velantor::TIirTable* table)
{
    return table ? std::make_unique<TIirBlockFilter>(table->coefficients, table->margin, true) : nullptr;
}

std::unique_ptr<TBlockProcessor> convolution(const std::vector<double>* table)
{
    return table ? std::make_unique<TFirBlockFilter>(*table, static_cast<int>(table->size()) / 2) : nullptr;
}

} // namespace

TOfflineFilterChain::TOfflineFilterChain(TSignal* source)
    : m_source(source), m_current(source), m_notchName(velantor::notchFilter50Hz),
      m_muscleName(velantor::muscleFilter40Hz)
{
    apply(false, false, false);
}

TOfflineFilterChain::~TOfflineFilterChain()
{
    clear();
}

void TOfflineFilterChain::apply(bool notch, bool muscle, bool baseline)
{
    const int rate = m_source->samplingRate();
    if (notch && velantor::notchRecursion(rate) && m_notchName != velantor::notchFilter50Hz)
        throw TError("pendiente - filtro no definido");
    m_notchOn = notch;
    m_muscleOn = muscle;
    m_baselineOn = baseline;
    clear();
    addDetrend();
    add(m_highPass, recursion(velantor::highPassRecursion(rate)));
    if (notch)
        add(m_notch, recursion(velantor::notchRecursion(rate)));
    if (muscle)
        add(m_muscle, convolution(velantor::muscleTable(m_muscleName, rate)));
    if (baseline)
        add(m_baseline, recursion(velantor::baselineRecursion(rate)));
}

/// A view goes before the signal that it looks at.
void TOfflineFilterChain::clear()
{
    for (TStage* const stage : {&m_baseline, &m_muscle, &m_notch, &m_highPass}) {
        stage->output.reset();
        stage->processor.reset();
    }
    m_detrended.reset();
    for (auto& parabola : m_parabolas)
        parabola.reset();
    m_current = m_source;
}

void TOfflineFilterChain::addDetrend()
{
    if (static_cast<qint64>(m_source->blockCount()) * m_source->blockSize() < m_source->sampleCount())
        m_source->trimBlocks(true);
    TBlockProcessor* processors[velantor::maxChannels] = {};
    for (int channel = 0; channel < m_source->channelCount(); ++channel) {
        m_parabolas[channel] = fitParabola(*m_source, channel);
        processors[channel] = m_parabolas[channel].get();
    }
    m_detrended = std::make_unique<TFilteredSignal>(m_source, processors);
    m_current = m_detrended.get();
}

void TOfflineFilterChain::add(TStage& stage, std::unique_ptr<TBlockProcessor> processor)
{
    if (!processor)
        return;
    stage.processor = std::move(processor);
    stage.output = std::make_unique<TFilteredSignal>(m_current, stage.processor.get());
    m_current = stage.output.get();
}
