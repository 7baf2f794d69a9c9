#pragma once

#include "display/TBeatSource.h"

class TBeatStore;

/// The beats of a store; ids are their indices. Rejected beats are neither marked nor selected. Times are
/// those of the beats themselves, not of their windows.
class TStoredBeats : public TBeatSource
{
public:
    /// The store is borrowed and outlives this.
    explicit TStoredBeats(const TBeatStore* store) : m_store(store) {}

    /// Those that the store still has.
    int count() const override;
    std::optional<TBeatMark> beat(int id) const override;
    std::optional<TBeatMark> beatAfter(int id) const override;
    std::optional<TBeatMark> nearestBeat(double seconds) const override;
    std::optional<TBeatMark> firstBeatAfter(double seconds) const override;
    std::optional<TBeatMark> lastBeatBefore(double seconds) const override;
    std::optional<TBeatMark> firstBeat() const override;
    std::optional<TBeatMark> lastBeat() const override;
    std::optional<TBeatMark> selectableAfter(int id) const override;
    std::optional<TBeatMark> selectableBefore(int id) const override;

private:
    int firstIndexAfter(double seconds) const;

    const TBeatStore* m_store;
};
