#pragma once

#include "analysis/delineation/TAverageBeatDelineator.h"
#include "analysis/detection/TBeatChain.h"

#include <vector>

/// The beats of a recording that has ended, searched to its very end, with the average beat of its last
/// seconds and the waves of that, channel by channel.
class TStoredAnalysis
{
public:
    /// Frames that a step takes, as a recording does at a time.
    static constexpr int defaultStep = 4096;
    static constexpr int maxStep = 40960;

    /// `signal` is borrowed and only read. `listener`, borrowed, is told of every beat as it is found, in the
    /// order of the store, rejected ones too; null for none.
    TStoredAnalysis(TSignal& signal, const TBeatChainSettings& settings, TBeatListener* listener = nullptr);

    /// Is told of the views of each channel, before they are merged. To be set before `run`.
    void setCandidateObserver(TWaveletBeatDetector::TCandidateObserver observer);
    /// Feeds the signal in steps of `stepFrames`, kept within 1 to `maxStep`. Once only.
    void run(int stepFrames = defaultStep);

    /// What was searched: 250 samples per second; candidates are in its samples.
    const TSignal& analysisSignal() { return m_chain.analysisSignal(); }
    TAverageBeat& averageBeat() { return m_chain.averageBeat(); }
    /// The waves of the channel's average complex, in samples of the signal from its start; nothing is found
    /// where there was no beat.
    TAverageBeatDelineator delineate(int channel);

private:
    void feed(int start, int frames);
    int lastFrame() const;

    TSignal& m_signal;
    double m_endTime;
    TInt16Signal m_raw;
    TBeatChain m_chain;
    std::vector<std::vector<double>> m_rows;
};
