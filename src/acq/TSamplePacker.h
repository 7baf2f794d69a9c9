#pragma once

#include "acq/TEcgSample.h"

#include <array>
#include <vector>

/// Brings the selected channels of a sample together into the bytes that go into the queue.
class TSamplePacker
{
public:
    /// `mask`: bit n selects channel n of the fixed order.
    explicit TSamplePacker(int mask);

    /// Bytes of a packed sample.
    int size() const { return static_cast<int>(2 * m_channels.size()); }
    /// The selected channels in their order, 16 bits each, low byte first. `size()` bytes, valid until the
    /// next call.
    const char* pack(const TEcgSample& sample);

private:
    std::vector<int> m_channels;
    std::array<char, 2 * acq::deviceChannelCount> m_bytes{};
};
