#pragma once

#include "analysis/signals/TSignal.h"
#include "study/TRecordFile.h"

#include <array>
#include <vector>

/// The samples file of a study: a header, then frames of one signed 16-bit sample per channel, little-endian.
/// It is appended to while recording, never rewritten, and read through the signal interface at any time, in
/// blocks of 4096 samples per channel. `blockCount` counts whole blocks; `trimBlocks(true)` makes the rest at
/// the end of a finished recording a block too, filled up with zeros. Main thread only.
class TEcgFile : public TSignal
{
public:
    static constexpr int defaultHeaderSize = 4096;
    static constexpr int samplesPerBlock = 4096;

    /// Opens a recording or, with `create`, starts a new one. `samplingRate` in samples per second.
    /// Throws TError "Cannot create file" or "Cannot open file", also for a channel count outside 1 to 16, a
    /// rate outside 1 to `maxSamplingRate` or a negative header size.
    TEcgFile(const QString& path, int channelCount, int samplingRate, int headerSize = defaultHeaderSize,
             bool create = false);
    ~TEcgFile() override;

    /// The header's bytes, trailing zeros included.
    QByteArray header() { return m_file.header(); }
    /// Puts `bytes` at the head of the file, cut or padded with zeros to the header size.
    void writeHeader(const QByteArray& bytes) { m_file.writeHeader(bytes); }

    int sample(int channel, int index) override;
    void readDoubles(int channel, int start, int count, double* out) override;
    short* loadBlock(int channel, int block) override;
    void freeBlock(void* buffer) override;

    // Appends: only to a recording opened with `create`. Frames that cannot be written are dropped as a
    // whole, no listener hears of them and `writeFailed` turns true; later appends try again.
    void addInterleaved(const char* data, int size) override;
    void addPerChannel(const short* const* data, int n) override;
    /// Truncated, kept within 16 bits; what is not a number becomes 0.
    void addPerChannelDouble(const double* const* data, int n) override;

    /// Whether samples or header ever failed to reach the file. Stays true.
    bool writeFailed() const { return m_file.writeFailed(); }
    /// Whether what was written may not last. Stays true.
    bool isLost() const { return m_file.isLost(); }
    /// Brings the recording to the disk. False if that fails.
    bool sync() { return m_file.sync(); }

private:
    /// Frames of one block as they stand in the file, so that the channels of a block share one read.
    struct TFrames
    {
        int block = -1;
        int count = 0;
        std::vector<qint16> samples;
    };

    int framesToTake(int n) const;
    qint16* frameBuffer(int frames);
    template <typename SampleOf> void interleave(int frames, SampleOf sampleOf);
    void appendFrames(int n);
    void updateSampleCount();
    int framesIn(int block) const;
    const TFrames& framesOf(int block);
    void fillBlock(int channel, int block, short* out);

    static constexpr int cachedBlocks = 16;

    bool m_create;
    TRecordFile m_file;
    std::vector<qint16> m_interleaved;
    /// Block `b` lies at `b` modulo the size: a stretch of blocks is read once, whatever the order of its
    /// channels.
    std::array<TFrames, cachedBlocks> m_frames;
};
