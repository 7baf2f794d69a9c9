#pragma once

#include "acq/TEcgSample.h"

#include <array>

/// Finds the frames of a device in its bytes. There is no checksum: a wrong sync byte sends it back to the
/// search of a frame's start, with the bytes of the frame so far and the wrong byte itself lost. Knows
/// neither port nor thread.
class TFrameParser
{
public:
    explicit TFrameParser(const acq::TFrameLayout& layout) : m_layout(&layout) {}

    /// Takes the next byte. Whether it ended a frame, which is in `out` then; `out` stays untouched
    /// otherwise.
    bool add(unsigned char byte, TEcgSample& out);
    /// Forgets a frame begun.
    void reset();

private:
    bool isWrongSync(unsigned char byte);
    void unpack(TEcgSample& out) const;
    /// `count` samples from that offset on.
    void unpackChannels(int offset, const acq::TChannelIndex* channels, int count, TEcgSample& out) const;
    unsigned electrodesOff() const;
    unsigned byteAt(int offset) const { return m_bytes[static_cast<std::size_t>(offset)]; }

    const acq::TFrameLayout* m_layout;
    std::array<unsigned char, acq::TFrameLayout::maxSize> m_bytes{};
    int m_size = 0;
    /// The sync byte that comes next.
    int m_sync = 0;
};

/// For the standard device.
class TStdFrameParser : public TFrameParser
{
public:
    TStdFrameParser() : TFrameParser(acq::standardFrame) {}
};

/// For the high-rate device.
class THRFrameParser : public TFrameParser
{
public:
    THRFrameParser() : TFrameParser(acq::highRateFrame) {}
};
