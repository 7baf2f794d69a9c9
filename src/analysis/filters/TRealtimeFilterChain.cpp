#include "analysis/filters/TRealtimeFilterChain.h"

#include "analysis/filters/FirTables.h"
#include "analysis/filters/TFftBaselineStream.h"
#include "analysis/signals/TFirStreamDouble.h"
#include "analysis/signals/TInt16Signal.h"

#include <algorithm>

namespace {

constexpr char baselineFilterFft[] = "fft";
constexpr int ringBlocks = 100;

} // namespace

TRealtimeFilterChain::TRealtimeFilterChain(TSignal* input)
    : m_input(input), m_current(input), m_notchName(velantor::notchFilter50Hz),
      m_muscleName(velantor::muscleFilter40Hz), m_baselineMode(velantor::baselineFilterFir)
{
    apply(false, false, false);
}

TRealtimeFilterChain::~TRealtimeFilterChain() = default;

void TRealtimeFilterChain::apply(bool notch, bool muscle, bool baseline)
{
    m_notchOn = notch;
    m_muscleOn = muscle;
    m_baselineOn = baseline;
    clear();
    const int rate = m_input->samplingRate();
    addFir(m_highPass, velantor::highPassTable(rate));
    if (notch)
        addFir(m_notch, velantor::notchTable(m_notchName, rate));
    if (muscle)
        addFir(m_muscle, velantor::muscleTable(m_muscleName, rate));
    if (baseline)
        addBaseline();
}

void TRealtimeFilterChain::clear()
{
    for (TStage* const stage : {&m_baseline, &m_muscle, &m_notch, &m_highPass})
        *stage = {};
    m_current = m_input;
    m_startPosition = m_input->oldestSample();
    m_taken = m_startPosition;
}

void TRealtimeFilterChain::addBaseline()
{
    if (m_baselineMode == velantor::baselineFilterFir)
        addFir(m_baseline, velantor::baselineTable(m_input->samplingRate()));
    else if (m_baselineMode == baselineFilterFft)
        add(m_baseline, std::make_unique<TFftBaselineStream>());
}

void TRealtimeFilterChain::addFir(TStage& stage, const std::vector<double>* table)
{
    if (table)
        add(stage, std::make_unique<TFirStreamDouble>(*table, static_cast<int>(table->size()) / 2));
}

void TRealtimeFilterChain::add(TStage& stage, std::unique_ptr<TStreamProcessor> stream)
{
    stage.stream = std::move(stream);
    stage.output = makeRing();
    stage.stream->attach(m_current, m_current == m_input ? m_startPosition : 0);
    stage.stream->setSink(stage.output.get());
    m_current = stage.output.get();
}

std::unique_ptr<TSignal> TRealtimeFilterChain::makeRing() const
{
    const int blockSize = m_input->blockSize();
    auto ring = std::make_unique<TInt16Signal>(blockSize, ringBlocks * blockSize, m_input->channelCount(),
                                               m_input->samplingRate());
    ring->takeFormOf(*m_input);
    return ring;
}

void TRealtimeFilterChain::update()
{
    // In turns: what a stage gives at once must not push out of its ring what the next one has yet to read.
    while (m_taken < m_input->sampleCount()) {
        m_taken += std::min(m_input->blockSize(), m_input->sampleCount() - m_taken);
        for (const TStage* const stage : {&m_highPass, &m_notch, &m_muscle, &m_baseline}) {
            if (stage->stream)
                stage->stream->runTo(m_taken);
        }
    }
}
