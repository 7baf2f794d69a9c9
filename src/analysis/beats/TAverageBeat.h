#pragma once

#include "analysis/beats/TBeat.h"
#include "analysis/signals/TDoubleVector.h"

#include <deque>
#include <vector>

class TSignal;

/// One representative complex of a second per channel, the mean of the normal beats of the last seconds.
/// Beats are taken or left by their rhythm and by their QRS type on the dominant channel; morphologies are
/// not told apart. The mean is formed on the first read after a beat. Main thread only.
class TAverageBeat
{
public:
    /// The signal is borrowed and outlives the average. `holdTime` in seconds: older beats are let go.
    TAverageBeat(TSignal* signal, double holdTime);

    /// The signal of the beats, borrowed.
    const TSignal* signal() const { return m_signal; }

    /// A beat of the signal, in its time. Its surroundings, 0.45 s before R to 0.55 s after it, are read
    /// later, with the first read of a result; what the signal lacks by then counts as 0.
    void addBeat(const TBeat& beat);
    /// Shows this single beat instead of an average, until a beat is added. Without an R on any channel it
    /// lies around the time of the beat; without that, too, there is no complex.
    void complexFromBeat(const TBeat& beat);

    /// `sampleCount()` samples in counts with a mean of 0, R at `rOffset()`; zeros if there is no beat or no
    /// such channel. Valid until the next beat is added.
    const TDoubleVector& complex(int channel);
    /// Beats that went into the average.
    int count();
    /// Their R on the dominant channel, in seconds.
    const std::vector<double>& averagedTimes();
    /// Mean `rr` of those beats in seconds, 0.0 if there are none.
    double meanRR();
    /// The channel on which most beats are normal, 0 if there are no beats. Its R aligns all channels.
    int dominantChannel();

    /// Samples before R.
    int rOffset() const { return m_rOffset; }
    /// Samples of a complex: a second of them.
    int sampleCount() const { return m_sampleCount; }
    double holdTime() const { return m_holdTime; }

    /// Keeps the present complexes as the reference, that of the first stage of an exercise test.
    void keepReference();
    bool hasReference() const { return m_hasReference; }
    /// Zeros if there is no reference or no such channel.
    TDoubleVector reference(int channel) const;

private:
    void update();
    bool recompute();
    void clearResults();
    int findDominantChannel() const;
    bool isNormal(const TBeat& beat) const;
    std::vector<double> selectBeats();
    void average(int channel);
    void addSnippet(int channel, double t, TDoubleVector& sum);
    bool isChannel(int channel) const;

    TSignal* m_signal;
    double m_holdTime;
    int m_sampleCount;
    int m_rOffset;
    int m_dominantChannel = 0;
    double m_meanRR = 0.0;
    std::vector<double> m_averagedTimes;
    std::vector<TDoubleVector> m_complexes;
    std::vector<TDoubleVector> m_stage1Complexes;
    /// What a channel that does not exist reads.
    TDoubleVector m_silence;
    /// The beats of the last `m_holdTime` seconds, oldest first.
    std::deque<TBeat> m_pendingBeats;
    bool m_dirty = false;
    bool m_hasReference = false;
    /// The snippet last read; kept for its memory.
    std::vector<double> m_snippet;
};
