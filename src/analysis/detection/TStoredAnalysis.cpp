#include "analysis/detection/TStoredAnalysis.h"

#include "analysis/signals/Truncation.h"

#include <algorithm>

namespace {

constexpr int blockSize = 4096;
/// As in a live recording: two minutes and more.
constexpr int rawCapacity = 81920;
/// Seconds.
constexpr double knownAfter = 10.0;

} // namespace

TStoredAnalysis::TStoredAnalysis(TSignal& signal, const TBeatChainSettings& settings, TBeatListener* listener)
    : m_signal(signal), m_endTime(settings.endTime),
      m_raw(blockSize, rawCapacity, signal.channelCount(), signal.samplingRate()),
      m_chain(m_raw, settings, listener), m_rows(signal.channelCount())
{
    m_raw.takeFormOf(signal);
    m_chain.analysisSignal().takeFormOf(signal);
    m_chain.averageSignal().takeFormOf(signal);
}

void TStoredAnalysis::setCandidateObserver(TWaveletBeatDetector::TCandidateObserver observer)
{
    m_chain.detector().setCandidateObserver(std::move(observer));
}

void TStoredAnalysis::run(int stepFrames)
{
    const int step = std::clamp(stepFrames, 1, maxStep);
    const int end = lastFrame();
    for (int start = 0; start < end;) {
        const int frames = std::min(step, end - start);
        feed(start, frames);
        m_chain.run();
        start += frames;
    }
    m_chain.finish();
}

/// Where to stop feeding: behind an end by as much as the last beat needs to be known.
int TStoredAnalysis::lastFrame() const
{
    if (m_endTime <= 0.0)
        return m_signal.sampleCount();
    return std::min(m_signal.indexOf(m_endTime + knownAfter), m_signal.sampleCount());
}

void TStoredAnalysis::feed(int start, int frames)
{
    std::vector<const double*> rows;
    for (int channel = 0; channel < m_signal.channelCount(); ++channel) {
        m_rows[channel].resize(frames);
        m_signal.readDoubles(channel, start, frames, m_rows[channel].data());
        rows.push_back(m_rows[channel].data());
    }
    m_raw.addPerChannelDouble(rows.data(), frames);
}

TAverageBeatDelineator TStoredAnalysis::delineate(int channel)
{
    TAverageBeatDelineator delineator;
    TAverageBeat& average = m_chain.averageBeat();
    const int rate = m_signal.samplingRate();
    delineator.analyse(average.complex(channel), rate, average.rOffset(),
                       velantor::truncated<int>(average.meanRR() * rate));
    return delineator;
}
