#pragma once

#include "analysis/beats/TBeat.h"

/// The beats of a recording in the order of their windows, in memory or in a file. A beat has an absolute
/// `index`: that of the first one added is 0, and each keeps its own however many follow. A store may forget
/// its oldest beats; those it still has are [`firstIndex()`, `count()`). Every look-up fills `out` and
/// returns true, or returns false and leaves `out` alone; `out` may be the very beat that is asked from.
class TBeatStore
{
public:
    virtual ~TBeatStore() = default;

    /// Beats added so far, forgotten ones included: the index that the next one gets.
    virtual int count() const = 0;
    /// Beats that the store can hold at a time.
    virtual int maxCount() const = 0;
    /// The beat of that index; false if there is none or it is forgotten.
    virtual bool beat(int index, TBeat& out) const = 0;
    /// The beat that follows `current` by index. A beat of no store (-1) or one that is forgotten is
    /// followed by the oldest that is left, so that a walk can start with an empty beat.
    virtual bool nextBeat(const TBeat& current, TBeat& out) const;
    virtual bool previousBeat(const TBeat& current, TBeat& out) const;
    /// The same, passing over rejected beats.
    virtual bool nextValidBeat(const TBeat& current, TBeat& out) const;
    virtual bool previousValidBeat(const TBeat& current, TBeat& out) const;
    /// Stores a copy behind the last beat. Returns its index, or -1 if it could not be stored.
    virtual int add(const TBeat& beat) = 0;
    /// Index of the oldest beat that is left.
    virtual int firstIndex() const { return 0; }

    // Look-ups by time, in seconds. They search by halving and thus count on the order of the windows.
    /// The beat whose window covers `t`; of several the last one. Only the last 8 beats that start up to `t`
    /// are looked at.
    bool beatAt(double t, TBeat& out) const;
    /// The first beat with a window start above `t`.
    bool firstBeatAfter(double t, TBeat& out) const;
    /// The last beat with a window start below `t`.
    bool lastBeatBefore(double t, TBeat& out) const;

protected:
    TBeatStore() = default;
    TBeatStore(const TBeatStore&) = default;
    TBeatStore& operator=(const TBeatStore&) = default;
};
