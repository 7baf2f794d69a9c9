#include "simulators/DeviceFrames.h"

#include <algorithm>

namespace {

using namespace sim;

/// The four status bytes, A to D.
struct TStatus
{
    std::uint8_t a = 0;
    std::uint8_t b = 0;
    std::uint8_t c = 0;
    std::uint8_t d = 0;
};

TStatus statusOf(const TDeviceState& state)
{
    const auto bit = [&state](const char* electrode, int value) {
        const auto& off = state.electrodesOff;
        return static_cast<std::uint8_t>(std::find(off.begin(), off.end(), electrode) != off.end() ? value
                                                                                                   : 0);
    };
    TStatus status;
    status.a = bit("V5", 0x10) | bit("LA", 0x20) | bit("LL", 0x40);
    status.b = bit("RA", 0x20);
    status.c = bit("V1", 0x10) | bit("V2", 0x20) | bit("V3", 0x40) | bit("V4", 0x80);
    status.d = bit("V6", 0x10);
    return status;
}

class TFrameWriter
{
public:
    void byte(int value) { m_bytes.push_back(static_cast<std::uint8_t>(value)); }
    void sample(int value)
    {
        byte(value >> 8 & 0xff);
        byte(value & 0xff);
    }
    const std::vector<std::uint8_t>& bytes() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
};

constexpr int sync = 0xc0;
constexpr int unused = 0x5a;

/// Both families send the same three groups; the standard one numbers them and has a longer tail.
std::vector<std::uint8_t> makeFrame(const TDeviceState& state, bool isStandard)
{
    const TStatus status = statusOf(state);
    const auto& samples = state.samples;
    TFrameWriter frame;
    const auto beginGroup = [&](int number) {
        if (isStandard)
            frame.byte(number);
        frame.byte(sync);
    };
    beginGroup(1);
    frame.byte(status.a);
    frame.byte(status.b);
    for (const int index : {V5, I, II, III})
        frame.sample(samples[static_cast<std::size_t>(index)]);
    beginGroup(2);
    frame.byte(status.c);
    frame.byte(unused);
    for (const int index : {V1, V2, V3, V4})
        frame.sample(samples[static_cast<std::size_t>(index)]);
    beginGroup(3);
    frame.byte(status.d);
    frame.byte(unused);
    for (const int index : {V6, CM5, CR5})
        frame.sample(samples[static_cast<std::size_t>(index)]);
    frame.sample(unused);
    frame.byte(state.battery);
    for (int i = 0; isStandard && i < 3; ++i)
        frame.byte(unused);
    return frame.bytes();
}

} // namespace

std::vector<std::uint8_t> sim::standardFrame(const TDeviceState& state)
{
    return makeFrame(state, true);
}

std::vector<std::uint8_t> sim::highRateFrame(const TDeviceState& state)
{
    return makeFrame(state, false);
}
