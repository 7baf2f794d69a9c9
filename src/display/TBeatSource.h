#pragma once

#include <optional>

/// A beat as the browse display shows it.
struct TBeatMark
{
    int id = -1;
    /// Seconds from the start of the recording.
    double time = 0.0;
    /// Seconds since the beat before, 0 if unknown.
    double rr = 0.0;
    /// Whether it gets a tick. One without is passed over.
    bool marked = false;
};

/// The beats of a recording in the order of their times. Ids are 0 or above and grow with time. Whoever
/// installs a source owns it.
class TBeatSource
{
public:
    virtual ~TBeatSource() = default;

    virtual int count() const = 0;

    // Each of these gives nothing if there is no such beat.
    virtual std::optional<TBeatMark> beat(int id) const = 0;
    /// The one that follows by id.
    virtual std::optional<TBeatMark> beatAfter(int id) const = 0;
    virtual std::optional<TBeatMark> nearestBeat(double seconds) const = 0;
    virtual std::optional<TBeatMark> firstBeatAfter(double seconds) const = 0;
    virtual std::optional<TBeatMark> lastBeatBefore(double seconds) const = 0;
    virtual std::optional<TBeatMark> firstBeat() const = 0;
    virtual std::optional<TBeatMark> lastBeat() const = 0;
    /// The nearest beat of a higher id that keys may select.
    virtual std::optional<TBeatMark> selectableAfter(int id) const = 0;
    virtual std::optional<TBeatMark> selectableBefore(int id) const = 0;
};
