#pragma once

#include <array>

/// What our ECG devices speak on their serial line, and what the program takes out of it.
namespace acq {

// Line rates.
inline constexpr int standardBaud = 230400;
inline constexpr int highRateBaud = 570000;

// Commands to a device, one byte each, never acknowledged.
inline constexpr char startCommand = 1;
inline constexpr char stopCommand = 2;
inline constexpr char keepAliveCommand = 9;
inline constexpr char identifyCommand = 11;
/// An answer to the identify command is this long at most.
inline constexpr int identityBytes = 7;
/// Start and stop are sent twice, this far apart.
inline constexpr int commandPauseMs = 100;
/// Also the keep alive command within a stream.
inline constexpr int keepAlivePauseMs = 5;
/// Frames between two keep alive commands, which is a minute.
inline constexpr int standardKeepAliveFrames = 30000;
inline constexpr int highRateKeepAliveFrames = 60000;

enum class TElectrode
{
    LA,
    LL,
    RA,
    V1,
    V2,
    V3,
    V4,
    V5,
    V6,
    count
};

inline constexpr std::array<const char*, static_cast<std::size_t>(TElectrode::count)> electrodeNames = {
    "LA", "LL", "RA", "V1", "V2", "V3", "V4", "V5", "V6"};

/// A byte that must stand at that place of a frame.
struct TSyncByte
{
    int offset;
    unsigned char value;
};

/// Where things stand in a frame: offsets in bytes from its start. Samples are 16-bit two's complement, high
/// byte first. Bytes that nothing names are not used.
struct TFrameLayout
{
    static constexpr int maxSize = 40;

    int size;
    /// In the order of their offsets; bytes behind `syncCount` of them are none.
    std::array<TSyncByte, 6> sync;
    int syncCount;
    int statusA;
    int statusB;
    int statusC;
    int statusD;
    /// V5, I, II, III in a row.
    int limbSamples;
    /// V1, V2, V3, V4 in a row.
    int chestSamples;
    /// V6, CM5, CR5 in a row.
    int lastSamples;
    /// Unsigned, in steps of `batteryStepVolts`.
    int battery;
};

/// 500 frames per second.
inline constexpr TFrameLayout standardFrame = {
    40, {{{0, 0x01}, {1, 0xC0}, {12, 0x02}, {13, 0xC0}, {24, 0x03}, {25, 0xC0}}}, 6, 2, 3, 14, 26, 4, 16, 28,
    36};

/// 1000 frames per second.
inline constexpr TFrameLayout highRateFrame = {
    34, {{{0, 0xC0}, {11, 0xC0}, {22, 0xC0}}}, 3, 1, 2, 12, 23, 3, 14, 25, 33};

// Bits of the status bytes; any one of them that is set tells that the electrode is off.
inline constexpr unsigned statusALA = 0x20;
inline constexpr unsigned statusALL = 0xC0;
inline constexpr unsigned statusAV5 = 0x10;
inline constexpr unsigned statusBRA = 0x60;
inline constexpr unsigned statusCV1 = 0x10;
inline constexpr unsigned statusCV2 = 0x20;
inline constexpr unsigned statusCV3 = 0x40;
inline constexpr unsigned statusCV4 = 0x80;
inline constexpr unsigned statusDV6 = 0x10;

inline constexpr double batteryStepVolts = 0.013;

// A sample out of this range is one of a saturated amplifier, and a channel is saturated after half a second
// of them.
inline constexpr int saturationLow = -32000;
inline constexpr int saturationHigh = 32000;
inline constexpr int saturationFrames = 250;

// Physical values of the ends of the 16-bit span, in millivolts.
inline constexpr double standardRange = 450.0;
inline constexpr double highRateRange = 300.0;

} // namespace acq
