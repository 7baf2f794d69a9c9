#include "acq/TDemoAcqThread.h"

#include "acq/AcqChannels.h"
#include "acq/TAcqBuffer.h"

#include <QtEndian>

#include <algorithm>

namespace {

constexpr int sampleBytes = 2;
/// The signal that may be handed over before the thread sleeps.
constexpr double burstSeconds = 0.025;
constexpr int emptyFileMs = 25;
/// Without pacing: what may wait in the queue, and how often to look whether it still does.
constexpr int maxQueuedSeconds = 5;
constexpr int roomPeriodMs = 1;

} // namespace

TDemoAcqThread::TDemoAcqThread(std::unique_ptr<QFile> file, const TDemoFileLayout& layout, TAcqBuffer& buffer)
    : m_file(std::move(file)), m_layout(layout), m_buffer(buffer),
      m_selected(acq::selectedChannels(layout.channelMask, layout.channels)),
      m_frame(static_cast<std::size_t>(layout.channels) * layout.bytesPerSample),
      m_selectedSamples(m_selected.size() * sampleBytes),
      m_sleep([](int milliseconds) { msleep(static_cast<unsigned long>(milliseconds)); })
{
}

void TDemoAcqThread::stopAndWait()
{
    requestInterruption();
    wait();
    static_cast<void>(m_ended.load(std::memory_order_acquire));
}

void TDemoAcqThread::run()
{
    m_file->seek(m_layout.fileOffset);
    std::fill(m_frame.begin(), m_frame.end(), char(0));
    m_bytesRead = 0;
    m_secondsPaced = 0.0;
    while (!isInterruptionRequested()) {
        const int count = readFrame();
        if (count == 0) { // Nothing to replay: look again now and then, without taking a processor.
            m_sleep(emptyFileMs);
            continue;
        }
        const bool pushed = pushSelected();
        m_bytesRead += count;
        if (m_paced)
            pace();
        else if (pushed)
            waitForRoom();
        else // Nobody waits for frames of which nothing is wanted.
            m_sleep(emptyFileMs);
    }
    m_ended.store(true, std::memory_order_release);
}

int TDemoAcqThread::readFrame()
{
    const int count = readBytes();
    if (count == static_cast<int>(m_frame.size()))
        return count;
    m_file->seek(m_layout.fileOffset);
    return readBytes();
}

/// A failed read is the end of the file.
int TDemoAcqThread::readBytes()
{
    return static_cast<int>(
        std::max<qint64>(m_file->read(m_frame.data(), static_cast<qint64>(m_frame.size())), 0));
}

bool TDemoAcqThread::pushSelected()
{
    if (m_layout.bytesPerSample != sampleBytes || m_selected.empty())
        return false;
    char* out = m_selectedSamples.data();
    for (const int channel : m_selected) {
        const qint16 sample = qFromLittleEndian<qint16>(m_frame.data() + channel * sampleBytes);
        out = std::copy_n(reinterpret_cast<const char*>(&sample), sampleBytes, out);
    }
    m_buffer.push(m_selectedSamples.data(), static_cast<int>(m_selectedSamples.size()));
    return true;
}

void TDemoAcqThread::pace()
{
    const double bytesPerSecond =
        static_cast<double>(m_layout.samplingRate) * static_cast<double>(m_frame.size());
    const double ahead = static_cast<double>(m_bytesRead) / bytesPerSecond - m_secondsPaced;
    if (ahead <= burstSeconds)
        return;
    m_sleep(static_cast<int>(ahead * 1000));
    m_secondsPaced += ahead;
}

void TDemoAcqThread::waitForRoom()
{
    const qint64 limit =
        qint64(maxQueuedSeconds) * m_layout.samplingRate * static_cast<qint64>(m_selectedSamples.size());
    while (m_buffer.size() > limit && !isInterruptionRequested())
        m_sleep(roomPeriodMs);
}
