#include "analysis/detection/TRrAverager.h"

#include <algorithm>
#include <numeric>

int TRrAverager::filledCount() const
{
    return static_cast<int>(
        std::count_if(m_slots.begin(), m_slots.end(), [](double rr) { return rr > 0.0; }));
}

void TRrAverager::put(double rr)
{
    const int filled = filledCount();
    const double sum = std::accumulate(m_slots.begin(), m_slots.end(), 0.0,
                                       [](double s, double slot) { return s + std::max(slot, 0.0); });
    m_value = filled > 0 ? sum / filled : 0.0;
    m_slots[m_next] = rr;
    m_next = (m_next + 1) % slotCount;
}

void TRrAverager::clear()
{
    *this = TRrAverager();
}
