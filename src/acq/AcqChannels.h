#pragma once

#include <QByteArray>

#include <vector>

/// The channels of our devices, in the order in which they are stored and shown everywhere.
namespace acq {

enum TChannelIndex
{
    I,
    II,
    III,
    aVR,
    aVL,
    aVF,
    V1,
    V2,
    V3,
    V4,
    V5,
    V6,
    CM5,
    CR5,
    deviceChannelCount
};

/// The fixed order; the last two are for files of up to 16 channels.
inline constexpr const char* channelNames[] = {"I",  "II", "III", "aVR", "aVL", "aVF", "V1",  "V2",
                                               "V3", "V4", "V5",  "V6",  "CM5", "CR5", "XX1", "XX2"};

// Channel masks: bit n selects channel n of the fixed order.
inline constexpr int allChannels = -1;
/// II, V2 and V5.
inline constexpr int reducedChannels = 1 << II | 1 << V2 | 1 << V5;

/// In the order of their weight for the leads.
inline constexpr const char* electrodesByWeight[] = {"LL", "LA", "RA", "V1", "V2", "V3", "V4", "V5", "V6"};

/// Indices of the selected channels among the first `channels` of the fixed order.
std::vector<int> selectedChannels(int mask, int channels);

/// The place of a channel in the fixed order, or -1 if there is none of that name.
int placeOfChannel(const char* name);

} // namespace acq
