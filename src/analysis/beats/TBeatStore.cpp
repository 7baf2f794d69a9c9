#include "analysis/beats/TBeatStore.h"

#include <algorithm>

namespace {

/// Beats that can start within the window of one beat, itself included: a window is a second or two long, and
/// no heart beats faster than that. Where no window covers a time, no more beats than these are read.
constexpr int maxOverlap = 8;

/// Index of the first beat whose window start does not fulfil `before`, or the store's count.
template <typename Before> int partitionPoint(const TBeatStore& store, Before before)
{
    TBeat probe;
    int low = store.firstIndex();
    int high = store.count();
    while (low < high) {
        const int middle = low + (high - low) / 2;
        if (store.beat(middle, probe) && before(probe.windowStart()))
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

} // namespace

bool TBeatStore::nextBeat(const TBeat& current, TBeat& out) const
{
    if (current.index() >= count())
        return false;
    return beat(std::max(current.index() + 1, firstIndex()), out);
}

bool TBeatStore::previousBeat(const TBeat& current, TBeat& out) const
{
    return current.index() > 0 && beat(current.index() - 1, out);
}

bool TBeatStore::nextValidBeat(const TBeat& current, TBeat& out) const
{
    TBeat candidate = current;
    do {
        if (!nextBeat(candidate, candidate))
            return false;
    } while (!candidate.valid());
    out = candidate;
    return true;
}

bool TBeatStore::previousValidBeat(const TBeat& current, TBeat& out) const
{
    TBeat candidate = current;
    do {
        if (!previousBeat(candidate, candidate))
            return false;
    } while (!candidate.valid());
    out = candidate;
    return true;
}

bool TBeatStore::beatAt(double t, TBeat& out) const
{
    const int after = partitionPoint(*this, [t](double start) { return start <= t; });
    // Windows of premature beats can lie whole within that of a beat before them.
    TBeat candidate;
    for (int index = after - 1; index >= std::max(firstIndex(), after - maxOverlap); --index) {
        if (beat(index, candidate) && candidate.covers(t)) {
            out = candidate;
            return true;
        }
    }
    return false;
}

bool TBeatStore::firstBeatAfter(double t, TBeat& out) const
{
    return beat(partitionPoint(*this, [t](double start) { return !(start > t); }), out);
}

bool TBeatStore::lastBeatBefore(double t, TBeat& out) const
{
    return beat(partitionPoint(*this, [t](double start) { return start < t; }) - 1, out);
}
