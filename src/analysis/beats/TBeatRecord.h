#pragma once

#include "analysis/beats/TBeat.h"

/// The compact form of a beat, little-endian, as it stands in memory rings and in beats files: a head of 56
/// bytes and a block of 80 bytes for each channel. It keeps everything but the flags of what is set: on
/// reading a time or duration counts as set only above 0, a value unless it is -1.0, slot and types always,
/// and a beat is valid if its number is not negative.
class TBeatRecord
{
public:
    /// `channelCount` is kept within 0 and 16.
    explicit TBeatRecord(int channelCount);

    int channelCount() const { return m_channelCount; }
    /// Bytes of a record.
    int size() const { return headSize + m_channelCount * channelSize; }

    /// Writes `size()` bytes. Channels that the beat lacks are written as not taking part, further ones are
    /// left out. Whole numbers are truncated and kept in their range; what is not finite is written as
    /// absent, and an invalid beat with a number of -1 unless its number tells it already.
    void pack(const TBeat& beat, char* out) const;
    /// Reads `size()` bytes into a beat with that index. Doubles that are not finite are taken as absent.
    TBeat unpack(const char* data, int index) const;

private:
    static constexpr int headSize = 56;
    static constexpr int channelSize = 80;

    int m_channelCount;
};
