#include "acq/TSaturationCounters.h"

#include <limits>

// Each count stands for itself, so no order between them is asked for.
constexpr auto relaxed = std::memory_order_relaxed;

void TSaturationCounters::clear()
{
    for (std::atomic<int>& count : m_counts)
        count.store(0, relaxed);
}

void TSaturationCounters::add(const TEcgSample& sample)
{
    for (std::size_t i = 0; i < m_counts.size(); ++i) {
        const int value = sample.channels[i];
        const bool outside = value < acq::saturationLow || value > acq::saturationHigh;
        const int count = m_counts[i].load(relaxed);
        // A cable may lie on the floor for weeks.
        const bool full = count == std::numeric_limits<int>::max();
        m_counts[i].store(outside ? count + (full ? 0 : 1) : 0, relaxed);
    }
}

bool TSaturationCounters::isSaturated(int channel) const
{
    return channel >= 0 && channel < acq::deviceChannelCount &&
           m_counts[static_cast<std::size_t>(channel)].load(relaxed) >= acq::saturationFrames;
}
