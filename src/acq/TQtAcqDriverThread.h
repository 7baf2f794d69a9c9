#pragma once

#include <QString>
#include <QThread>
#include <QVector>

#include <atomic>
#include <mutex>
#include <vector>

class TAcqDevice;

/// The pump: starts the device, takes its samples in blocks of a tenth of a second to five seconds, restarts
/// it when its reader fails, and stops it in the end. Signals are emitted on the pump's own thread.
class TQtAcqDriverThread : public QThread
{
    Q_OBJECT

public:
    /// One entry per channel in the order of the device, not zero for channels that are written as zeros.
    using TMuteFlags = std::vector<std::atomic<char>>;

    /// Both are borrowed and outlive the thread.
    TQtAcqDriverThread(TAcqDevice* device, const TMuteFlags& channelMuted);

    /// The device is reset with the next block. Any thread; a request from before the start is dropped.
    void requestReset() { m_resetRequested.store(true); }
    /// Why the acquisition ended, from the emission of `error` on.
    QString errorText() const;
    /// Sample index of the latest pulse, that of the present emission of `pacemaker`.
    int lastPulse() const { return m_lastPulse.load(std::memory_order_acquire); }

    /// How many blocks may be under way before the pump leaves the rest with the device; 0, the default, for
    /// any number. For devices that are faster than the receiver of the blocks. Before the start.
    void setPendingBlockLimit(int blocks) { m_pendingBlockLimit = blocks; }
    /// How many frames a block has at most, in place of five seconds of them; the least of a block if that is
    /// more. Before the start.
    void setLargestBlock(int frames) { m_largestBlock = frames; }
    /// To be called by the receiver of `data` for each block, before it looks at the samples.
    void blockArrived() { m_pendingBlocks.fetch_sub(1, std::memory_order_acq_rel); }
    /// Whether the thread has ended, after waiting for that for so long.
    bool waitForEnd(int milliseconds);

Q_SIGNALS:
    /// Whole interleaved frames of 16-bit samples in the processor's byte order.
    void data(QVector<char> dataBlock);
    void pacemaker(int sampleOffset);
    void error();

protected:
    void run() override;

private:
    void pump();
    void startDevice();
    void restartIfDead();
    /// False if the device gave less than it had promised.
    bool pumpBlocks();
    int framesWaiting() const;
    bool readBlock(int frames);
    void muteChannels(int frames);
    void resetIfRequested();
    void emitPulses();
    void emitBlock(int size);
    // The emissions alone: the sanitizer's suppressions know the event queue by these names.
    void postPulse(int sampleOffset) { Q_EMIT pacemaker(sampleOffset); }
    void postBlock(const QVector<char>& block) { Q_EMIT data(block); }
    void postError() { Q_EMIT error(); }
    void fail(const QString& text);
    void stopDeviceQuietly();

    TAcqDevice* const m_device;
    const TMuteFlags& m_channelMuted;
    std::vector<char> m_buffer;
    int m_bytesPerSample = 0;
    int m_channelCount = 0;
    int m_frameBytes = 0;
    int m_minFrames = 0;
    int m_maxFrames = 0;

    /// The receiver of `error` reads it while we wait for its return; the lock makes that plain to everybody.
    mutable std::mutex m_errorMutex;
    QString m_errorText;
    std::atomic<int> m_lastPulse = 0;
    std::atomic<bool> m_resetRequested = false;

    /// Blocks emitted and not yet received: its increment and decrement hand the samples over in the sight of
    /// the thread sanitizer, too, which does not see into the event queue.
    std::atomic<int> m_pendingBlocks = 0;
    int m_pendingBlockLimit = 0;
    /// 0 for no limit of the user's.
    int m_largestBlock = 0;
    /// Hands over what the thread has done to whoever waited for its end.
    std::atomic<bool> m_ended = false;
};
