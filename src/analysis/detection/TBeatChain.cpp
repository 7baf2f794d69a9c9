#include "analysis/detection/TBeatChain.h"

#include "analysis/delineation/BeatRefinement.h"
#include "analysis/filters/SmoothingTables.h"

#include <algorithm>

namespace {

constexpr int blockSize = 4096;
constexpr int analysisCapacity = 81920;
constexpr int averageCapacity = 100 * blockSize;

/// The largest factor that leaves 250 samples per second or more and a whole number of them: times are told
/// by the rate, so it must be the true one.
int reductionOf(const TSignal& raw)
{
    int factor = std::max(raw.samplingRate() / TBeatChain::analysisRate, 1);
    while (raw.samplingRate() % factor != 0)
        --factor;
    return factor;
}

} // namespace

TBeatChain::TBeatChain(TSignal& raw, const TBeatChainSettings& settings, TBeatListener* listener)
    : m_raw(raw), m_refine(settings.refine), m_listener(listener),
      m_analysisSignal(blockSize, analysisCapacity, raw.channelCount(),
                       raw.samplingRate() / reductionOf(raw)),
      m_analysisReducer(reductionOf(raw)), m_detector(settings.delineateWaves),
      m_beatRing(raw.channelCount()),
      m_averageSignal(blockSize, averageCapacity, raw.channelCount(), raw.samplingRate()),
      m_averageFilter(velantor::averagingLowPass(raw.samplingRate()),
                      static_cast<int>(velantor::averagingLowPass(raw.samplingRate()).size()) / 2),
      m_averageBeat(&m_averageSignal, settings.holdTime)
{
    m_analysisSignal.takeFormOf(raw);
    m_averageSignal.takeFormOf(raw);
    m_analysisReducer.attach(&raw, 0);
    m_analysisReducer.setSink(&m_analysisSignal);
    m_averageFilter.attach(&raw, 0);
    m_averageFilter.setSink(&m_averageSignal);
    m_detector.setBeatStore(&m_beatRing);
    m_detector.addListener(this);
    m_detector.reset(&m_analysisSignal, settings.startTime, settings.endTime);
}

TBeatChain::~TBeatChain() = default;

void TBeatChain::run()
{
    m_analysisReducer.run();
    m_averageFilter.run();
    m_detector.update();
}

void TBeatChain::finish()
{
    run();
    m_detector.finish();
}

void TBeatChain::beatFound(const TBeat& beat)
{
    TBeat refined = beat;
    if (m_refine)
        velantor::refineBeat(refined, m_raw);
    m_averageBeat.addBeat(refined);
    if (m_listener)
        m_listener->beatFound(refined);
}
