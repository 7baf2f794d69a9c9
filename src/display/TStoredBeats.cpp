#include "display/TStoredBeats.h"

#include "analysis/beats/TBeatStore.h"

#include <algorithm>
#include <cmath>

namespace {

TBeatMark markOf(const TBeat& beat)
{
    return {beat.index(), beat.value(TBeat::beatTime), beat.value(TBeat::rr), beat.valid()};
}

} // namespace

int TStoredBeats::count() const
{
    return std::max(m_store->count() - m_store->firstIndex(), 0);
}

std::optional<TBeatMark> TStoredBeats::beat(int id) const
{
    TBeat found;
    if (id < 0 || !m_store->beat(id, found))
        return std::nullopt;
    return markOf(found);
}

std::optional<TBeatMark> TStoredBeats::beatAfter(int id) const
{
    return id < m_store->count() ? beat(std::max(id + 1, m_store->firstIndex())) : std::nullopt;
}

/// The store searches by the windows, which begin before their beats and, where beats come fast, may lie in
/// another order than those: the beats around the place it finds are looked at one by one.
int TStoredBeats::firstIndexAfter(double seconds) const
{
    TBeat after;
    int index = m_store->firstBeatAfter(seconds, after) ? after.index() : m_store->count();
    for (auto before = beat(index - 1); before && before->time > seconds; before = beat(index - 1))
        --index;
    for (auto at = beat(index); at && at->time <= seconds; at = beat(index))
        ++index;
    return index;
}

std::optional<TBeatMark> TStoredBeats::nearestBeat(double seconds) const
{
    const auto after = firstBeatAfter(seconds);
    const auto before = beat(firstIndexAfter(seconds) - 1);
    if (!after || !before)
        return after ? after : before;
    return seconds - before->time <= after->time - seconds ? before : after;
}

std::optional<TBeatMark> TStoredBeats::firstBeatAfter(double seconds) const
{
    return beat(firstIndexAfter(seconds));
}

std::optional<TBeatMark> TStoredBeats::lastBeatBefore(double seconds) const
{
    auto before = beat(firstIndexAfter(seconds) - 1);
    while (before && before->time >= seconds)
        before = beat(before->id - 1);
    return before;
}

std::optional<TBeatMark> TStoredBeats::firstBeat() const
{
    return beat(m_store->firstIndex());
}

std::optional<TBeatMark> TStoredBeats::lastBeat() const
{
    return beat(m_store->count() - 1);
}

std::optional<TBeatMark> TStoredBeats::selectableAfter(int id) const
{
    auto next = beatAfter(id);
    while (next && !next->marked)
        next = beatAfter(next->id);
    return next;
}

std::optional<TBeatMark> TStoredBeats::selectableBefore(int id) const
{
    auto previous = beat(std::min(id, m_store->count()) - 1);
    while (previous && !previous->marked)
        previous = beat(previous->id - 1);
    return previous;
}
