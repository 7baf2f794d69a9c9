#pragma once

#include "analysis/beats/TBeatRecord.h"
#include "analysis/beats/TBeatStore.h"

#include <memory>

/// The last beats of a live recording, in memory, as compact records. Once it is full each new beat takes the
/// place of the oldest; the indices of the beats go on, so that a beat read earlier still finds its
/// neighbours.
class TBeatRing : public TBeatStore
{
public:
    static constexpr int defaultCapacity = 10000;

    /// `channelCount` within 1 and 16; a capacity below 1 counts as 1.
    explicit TBeatRing(int channelCount, int capacity = defaultCapacity);

    int count() const override { return m_count; }
    int maxCount() const override { return m_capacity; }
    int firstIndex() const override;
    bool beat(int index, TBeat& out) const override;
    int add(const TBeat& beat) override;

private:
    char* place(int index) const;

    TBeatRecord m_record;
    int m_capacity;
    /// `m_capacity` records; left untouched until used, so that a short recording costs little memory.
    std::unique_ptr<char[]> m_data;
    int m_count = 0;
};
