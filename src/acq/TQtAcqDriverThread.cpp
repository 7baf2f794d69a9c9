#include "acq/TQtAcqDriverThread.h"

#include "acq/TAcqDevice.h"
#include "base/Error.h"

#include <algorithm>

namespace {

constexpr int idleMs = 10;
constexpr int blocksPerSecond = 10;
constexpr int maxBlockSeconds = 5;

} // namespace

TQtAcqDriverThread::TQtAcqDriverThread(TAcqDevice* device, const TMuteFlags& channelMuted)
    : m_device(device), m_channelMuted(channelMuted)
{
}

QString TQtAcqDriverThread::errorText() const
{
    const std::lock_guard lock(m_errorMutex);
    return m_errorText;
}

bool TQtAcqDriverThread::waitForEnd(int milliseconds)
{
    if (!wait(static_cast<unsigned long>(milliseconds)))
        return false;
    static_cast<void>(m_ended.load(std::memory_order_acquire));
    return true;
}

void TQtAcqDriverThread::run()
{
    try {
        pump();
    } catch (const TError& error) {
        fail(QStringLiteral("Error: ") + error.text());
        stopDeviceQuietly();
    } catch (...) {
        fail(QStringLiteral("Unspecified application error"));
        stopDeviceQuietly();
    }
    m_ended.store(true, std::memory_order_release);
}

void TQtAcqDriverThread::pump()
{
    startDevice();
    const bool failed = !pumpBlocks();
    if (failed || !m_device->isOk())
        fail(QString::fromUtf8(m_device->lastError()));
    m_device->stop();
}

void TQtAcqDriverThread::startDevice()
{
    m_bytesPerSample = m_device->bytesPerSample();
    m_channelCount = m_device->channelCount();
    m_frameBytes = m_bytesPerSample * m_channelCount;
    m_minFrames = m_device->samplingRate() / blocksPerSecond;
    m_maxFrames = m_device->samplingRate() * maxBlockSeconds;
    if (m_largestBlock > 0)
        m_maxFrames = std::clamp(m_largestBlock, m_minFrames + 1, std::max(m_maxFrames, m_minFrames + 1));
    m_buffer.resize(static_cast<std::size_t>(m_maxFrames) * m_frameBytes);
    m_resetRequested.store(false);
    m_device->start();
}

bool TQtAcqDriverThread::pumpBlocks()
{
    while (!isInterruptionRequested()) {
        restartIfDead();
        const int frames = std::min(framesWaiting(), m_maxFrames);
        if (frames <= m_minFrames) {
            msleep(idleMs);
            continue;
        }
        if (!readBlock(frames))
            return false;
        muteChannels(frames);
        resetIfRequested();
        emitPulses();
        emitBlock(frames * m_frameBytes);
    }
    return true;
}

void TQtAcqDriverThread::restartIfDead()
{
    if (m_device->isOk())
        return;
    m_device->stop();
    m_device->start();
}

/// None while the receiver has enough to do, and from a device without channels.
int TQtAcqDriverThread::framesWaiting() const
{
    const bool enough =
        m_pendingBlockLimit > 0 && m_pendingBlocks.load(std::memory_order_relaxed) >= m_pendingBlockLimit;
    return enough || m_frameBytes <= 0 ? 0 : m_device->bytesAvailable() / m_frameBytes;
}

bool TQtAcqDriverThread::readBlock(int frames)
{
    const int size = frames * m_frameBytes;
    std::fill_n(m_buffer.begin(), size, char(0));
    return m_device->read(m_buffer.data(), size) == size;
}

void TQtAcqDriverThread::muteChannels(int frames)
{
    const int channels = std::min(m_channelCount, static_cast<int>(m_channelMuted.size()));
    for (int channel = 0; channel < channels; ++channel) {
        if (m_channelMuted[channel].load(std::memory_order_relaxed) == 0)
            continue;
        char* sample = m_buffer.data() + channel * m_bytesPerSample;
        for (int frame = 0; frame < frames; ++frame, sample += m_frameBytes)
            std::fill_n(sample, m_bytesPerSample, char(0));
    }
}

void TQtAcqDriverThread::resetIfRequested()
{
    // Cleared first, so that a request that comes during the reset is not lost.
    if (m_resetRequested.exchange(false))
        m_device->resetDevice();
}

void TQtAcqDriverThread::emitPulses()
{
    while (!isInterruptionRequested()) {
        const int pulse = m_device->nextPacemakerPulse();
        if (pulse == 0)
            return;
        m_lastPulse.store(pulse, std::memory_order_release);
        postPulse(pulse);
    }
}

void TQtAcqDriverThread::emitBlock(int size)
{
    QVector<char> block(size);
    std::copy_n(m_buffer.begin(), size, block.begin());
    m_pendingBlocks.fetch_add(1, std::memory_order_acq_rel);
    postBlock(block);
}

void TQtAcqDriverThread::fail(const QString& text)
{
    {
        const std::lock_guard lock(m_errorMutex);
        m_errorText = text;
    }
    postError();
}

/// The reader would fill the queue for ever, with nobody left to empty it.
void TQtAcqDriverThread::stopDeviceQuietly()
{
    try {
        m_device->stop();
    } catch (...) {
        // The first failure is the one that was told.
    }
}
