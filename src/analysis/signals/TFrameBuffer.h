#pragma once

#include "base/Constants.h"

#include <vector>

class TSignal;

/// The frames that a stream has computed and not yet given to its sink, one row of doubles per channel. Keeps
/// its memory from piece to piece.
class TFrameBuffer
{
public:
    /// Frames in one piece: bounds the work buffers, and keeps those of one channel within the nearest cache.
    static constexpr int maxFrames = 1024;

    /// Rows of at most `maxFrames` frames, to be written in full by the caller.
    void prepare(int channelCount, int frames);
    double* row(int channel) { return m_samples.data() + m_frames * channel; }

    /// Appends the frames to `sink`, truncated and clamped to 16 bits.
    void giveTruncated(TSignal* sink);
    void giveDoubles(TSignal* sink);

private:
    int m_channelCount = 0;
    int m_frames = 0;
    /// One row more than there are channels: zeros for the channels that only the sink has.
    std::vector<double> m_samples;
    std::vector<short> m_truncated;
};
