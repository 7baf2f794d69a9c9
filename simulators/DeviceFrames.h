#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// What an ECG device sends: the far end's own knowledge of the byte layout, so that driver and simulator can
/// disagree.
namespace sim {

/// One sampling instant at the electrodes' amplifier, and the state of the device.
struct TDeviceState
{
    /// In the order I, II, III, V1 to V6, CM5, CR5, counts.
    std::array<std::int16_t, 11> samples{};
    /// "LA", "LL", "RA", "V1" to "V6".
    std::vector<std::string> electrodesOff;
    int battery = 230; ///< byte of the frame; 13 mV each
};

enum TSampleIndex
{
    I,
    II,
    III,
    V1,
    V2,
    V3,
    V4,
    V5,
    V6,
    CM5,
    CR5
};

inline constexpr int standardFrameBytes = 40;
inline constexpr int highRateFrameBytes = 34;

/// 40 bytes, 500 frames a second.
std::vector<std::uint8_t> standardFrame(const TDeviceState& state);
/// 34 bytes, 1000 frames a second.
std::vector<std::uint8_t> highRateFrame(const TDeviceState& state);

} // namespace sim
