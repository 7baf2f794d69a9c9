#pragma once

#include "acq/TEcgSample.h"

#include <array>
#include <atomic>

/// How long each channel of a device has been out of its amplifier's range. One thread adds, any one asks.
class TSaturationCounters
{
public:
    void clear();
    void add(const TEcgSample& sample);
    /// Whether the channel of the fixed order has been out of range for half a second without a break; false
    /// out of range.
    bool isSaturated(int channel) const;

private:
    std::array<std::atomic<int>, acq::deviceChannelCount> m_counts{};
};
