#pragma once

#include "analysis/beats/TBeat.h"
#include "analysis/detection/TRrAverager.h"

#include <functional>

/// Decides by the rhythm which candidates are beats. One that comes early and is seen by few channels is held
/// until the next one tells whether it was a premature beat or none at all.
class TRhythmJudge
{
public:
    /// Gets each beat with its number; a rejected one with -1 and not valid.
    using TEmit = std::function<void(const TBeat&)>;

    explicit TRhythmJudge(TEmit emit) : m_emit(std::move(emit)) {}

    void clear();
    /// Takes the next candidate, in the order of time, with its time and `rr` set. `agreement` is the share
    /// of the channels that see it.
    void take(TBeat beat, double agreement);
    /// No more will come: a beat that is still held is rejected.
    void finish();

    /// The last beat that was accepted.
    bool hasPrevious() const { return m_previousValid; }
    const TBeat& previous() const { return m_previousBeat; }
    bool hasPending() const { return m_pendingValid; }
    const TBeat& pending() const { return m_pendingBeat; }
    void forgetPending() { m_pendingValid = false; }

private:
    enum TVerdict
    {
        accepted,
        held,
        dropped
    };

    TVerdict judge(double rr, double agreement) const;
    void resolvePending(TBeat& beat);
    void rejectPending();
    void updateAverage(double rr, bool isAccepted);
    bool fitsAverage(double rr) const;
    void putInAverage(double rr);
    void accept(TBeat& beat);

    TEmit m_emit;
    int m_beatCount = 0;
    TBeat m_previousBeat;
    bool m_previousValid = false;
    TBeat m_pendingBeat;
    bool m_pendingValid = false;
    TRrAverager m_rrAverager;
    /// Number of the beat whose interval last went into the average.
    int m_rrUpdatedAt = 0;
};
