#include "analysis/beats/TBeatRing.h"

#include <algorithm>

TBeatRing::TBeatRing(int channelCount, int capacity)
    : m_record(channelCount), m_capacity(std::max(capacity, 1)),
      m_data(std::make_unique_for_overwrite<char[]>(size_t(m_capacity) * m_record.size()))
{
}

int TBeatRing::firstIndex() const
{
    return std::max(0, m_count - m_capacity);
}

bool TBeatRing::beat(int index, TBeat& out) const
{
    if (index < firstIndex() || index >= m_count)
        return false;
    out = m_record.unpack(place(index), index);
    return true;
}

int TBeatRing::add(const TBeat& beat)
{
    m_record.pack(beat, place(m_count));
    return m_count++;
}

char* TBeatRing::place(int index) const
{
    return m_data.get() + size_t(index % m_capacity) * m_record.size();
}
