#pragma once

#include "analysis/beats/TChannelBeat.h"
#include "analysis/detection/TBeatListener.h"
#include "analysis/detection/TRhythmJudge.h"

#include <QtGlobal>

#include <deque>
#include <vector>

class TBeatStore;
class TSignal;

/// Finds beats in a multichannel signal: each channel by a method of the subclass, then all of them merged
/// into one stream of beats. Works on a signal that grows, about one second and one beat behind it, or over
/// one that is there already. Main thread only.
class TBeatDetector
{
public:
    TBeatDetector(const TBeatDetector&) = delete;
    TBeatDetector& operator=(const TBeatDetector&) = delete;

    /// Appends the candidates of a channel that the signal over [`from`, `to`) completes to `out` and returns
    /// how many. Positions are sample indices; each call follows the one before.
    virtual int detectChannel(int channel, int from, int to, std::vector<TChannelBeat>& out) = 0;
    virtual ~TBeatDetector() = default;
    /// Starts afresh on `signal`, which is borrowed: beats from `startTime` on and, if `endTime` is above 0,
    /// up to it, in seconds of the signal.
    virtual void reset(TSignal* signal, double startTime, double endTime);
    /// Forgets the signal and everything that was found.
    virtual void clear();

    /// Takes what the signal has gained; called after each block.
    void update();
    /// For a recording that has ended: takes the rest of it, up to the last beat. No `update` may follow.
    void finish();

    /// Borrowed; gets a copy of each beat. Null for none.
    void setBeatStore(TBeatStore* store) { m_beatStore = store; }
    /// Listeners are borrowed and told in the order of their coming. One that comes while they are told is
    /// told from the next beat on, one that goes is not told any more.
    void addListener(TBeatListener* listener);
    void removeListener(TBeatListener* listener);

    TSignal* signal() const { return m_signal; }
    /// Sample index up to which detection has run.
    int position() const { return m_position; }
    /// Samples kept back from the end of a growing signal.
    int lag() const { return m_lag; }

protected:
    TBeatDetector();

    /// Does for `detectChannel` what all channels share, before it is called: on the samples before `end`, as
    /// far as the signal has them.
    virtual void prepare(int end) { Q_UNUSED(end) }
    /// Last position up to which a recording that has ended can be searched.
    virtual int lastPosition() const;
    virtual int finishChannel(int channel, int from, int to, std::vector<TChannelBeat>& out);

private:
    using TQueue = std::deque<TChannelBeat>;

    bool hasListener(const TBeatListener* listener) const;
    void advance(int end);
    void detectStep(int to);
    void queueCandidates(int channel, const std::vector<TChannelBeat>& candidates);
    void merge(std::size_t needed);
    void dropPassed();
    bool hasQueued(std::size_t count) const;
    int earliestHead() const;
    bool isWorthWaiting() const;
    void mergeHeads();
    void acceptBeat(int position, std::vector<TChannelBeat>& records);
    bool isInTime(double t);
    std::vector<bool> dropUnusable(double t, std::vector<TChannelBeat>& records);
    void emitBeat(const TBeat& beat);

    TBeatStore* m_beatStore = nullptr;
    TSignal* m_signal = nullptr;
    int m_position = 0;
    int m_lag = 0;
    int m_waitCount = 0;
    double m_startTime = 0.0;
    double m_endTime = 0.0;
    std::vector<TQueue> m_queues;
    std::vector<TChannelBeat> m_candidates;
    TRhythmJudge m_rhythm;
    std::vector<TBeatListener*> m_listeners;
};
