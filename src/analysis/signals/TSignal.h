#pragma once

#include "analysis/signals/TChannel.h"
#include "analysis/signals/TSignalListener.h"
#include "base/Constants.h"

#include <array>
#include <list>
#include <memory>
#include <utility>
#include <vector>

/// A multichannel signal of integer counts: a live ring, a file-backed recording or a filtered view, all read
/// through this interface. Positions are absolute sample indices per channel; a read out of range gives 0.
/// Main thread only: nothing locks a signal. Signals derived from another one die before it.
class TSignal
{
public:
    /// Samples per second.
    static constexpr int maxSamplingRate = 1000000;

    TSignal(const TSignal&) = delete;
    TSignal& operator=(const TSignal&) = delete;

    /// One sample in counts, 0 out of range.
    virtual int sample(int channel, int index) = 0;
    /// `count` samples from `start` on, in counts; what lies outside the signal reads 0.0.
    virtual void readDoubles(int channel, int start, int count, double* out) = 0;
    /// A new buffer of `blockSize()` 16-bit samples, or null if there is no such block. Given back through
    /// `freeBlock`; callers outside the signal classes use `lockBlock`.
    virtual short* loadBlock(int channel, int block) = 0;
    virtual void freeBlock(void* buffer) = 0;
    virtual ~TSignal();

    // Appends. Here they only tell the listeners; signals that take samples override them.
    /// Interleaved frames in the signal's storage form; bytes after the last whole frame are ignored.
    virtual void addInterleaved(const char* data, int size);
    /// `n` samples from one array per channel.
    virtual void addPerChannel(const short* const* data, int n);
    virtual void addPerChannelDouble(const double* const* data, int n);

    /// Whether readers should lock blocks rather than ask for single samples: the samples of a block are
    /// those that `sample` gives. A ring says no, for its blocks leave it while the cache would keep them.
    virtual bool readsByBlock() const { return true; }

    /// Index of the oldest sample that can still be read: above 0 once a ring has turned.
    virtual int oldestSample() const { return 0; }

    int channelCount() const { return m_channelCount; }
    /// Null out of range.
    TChannel* channel(int index) const;
    /// The first channel of that name, or null.
    TChannel* channelByName(const char* name) const;

    int blockSize() const { return m_blockSize; }
    int blockCount() const { return m_blockCount; }
    /// Samples per channel so far, including those that have left a ring.
    int sampleCount() const { return m_sampleCount; }
    int samplingRate() const { return m_samplingRate; }
    /// Size of a stored sample: 16 or 64.
    int storageBits() const { return m_storageBits; }
    int resolutionBits() const { return m_resolutionBits; }
    /// Significant bits of a sample, kept within 1 to 64.
    void setResolutionBits(int bits);
    double rangeMin() const { return m_rangeMin; }
    double rangeMax() const { return m_rangeMax; }
    /// Physical range in millivolts.
    void setRange(double min, double max);
    /// Millivolts per count: (rangeMax - rangeMin) / 2^resolutionBits.
    double countValue() const { return m_countValue; }

    /// Takes the channel names, the resolution and the range of another signal.
    void takeFormOf(const TSignal& other);

    /// Seconds of a sample index.
    double timeOf(int index) const;
    /// Sample index of a time in seconds: rate * t + 0.5, truncated towards zero and kept in the range of
    /// int.
    int indexOf(double t) const;
    /// Seconds held so far.
    double duration() const { return timeOf(m_sampleCount); }

    /// Listeners are borrowed and told in the order of their coming; one that is there already stays where it
    /// is. One that is added while listeners are told is told from the next append on.
    void addListener(TSignalListener* listener);
    void removeListener(TSignalListener* listener);

    /// The block's 16-bit samples, valid until the matching `unlockBlock`; null if channel or block is out of
    /// range. Blocks are kept after use, about 1024 per signal.
    const short* lockBlock(int channel, int block);
    void unlockBlock(int channel, int block);
    /// Recomputes `blockCount` and frees every block that is not locked.
    void trimBlocks(bool roundUp);

protected:
    /// Arguments out of a sane range are clamped: 1 to 2^24 samples per block, 0 to 16 channels, 1 to
    /// `maxSamplingRate` samples per second.
    TSignal(int blockSize, int channelCount, int samplingRate);

    /// How many of `frames` more frames the count of samples can take.
    int roomFor(int frames) const;
    /// Sets `blockCount` to the whole blocks, too.
    void setSampleCount(int count);
    void setBlockCount(int count) { m_blockCount = count; }
    void setStorageBits(int bits) { m_storageBits = bits; }
    void notifyListeners();
    /// Gives every block back, locked or not. Destructors of classes that override `freeBlock` call it, while
    /// their override still stands.
    void freeAllBlocks();

private:
    struct TBlockEntry
    {
        short* buffer = nullptr;
        int useCount = 0;
        /// The block was incomplete when it was loaded; it goes with its last lock.
        bool stale = false;
    };

    bool isBlock(int channel, int block) const;
    TBlockEntry& entryOf(int channel, int block);
    void evictOneBlock();
    void freeEntry(TBlockEntry& entry);
    void forgetBlock(int block);
    void updateCountValue();

    int m_channelCount;
    std::array<std::unique_ptr<TChannel>, velantor::maxChannels> m_channels;
    int m_blockSize;
    int m_blockCount = 0;
    /// Per channel one entry for each block; grows with the recording.
    std::vector<std::vector<TBlockEntry>> m_blockTables;
    /// (channel, block) of every entry that holds a buffer, oldest first.
    std::list<std::pair<int, int>> m_loadedBlocks;
    /// Null where a listener went while listeners were told.
    std::vector<TSignalListener*> m_listeners;
    int m_notificationDepth = 0;
    int m_sampleCount = 0;
    int m_samplingRate;
    int m_storageBits = 16;
    int m_resolutionBits = 16;
    double m_countValue = 0.0;
    double m_rangeMin = -1.0;
    double m_rangeMax = 1.0;
};
