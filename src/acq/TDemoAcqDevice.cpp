#include "acq/TDemoAcqDevice.h"

#include "acq/AcqChannels.h"
#include "base/Error.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

std::unique_ptr<QFile> openFile(const char* path)
{
    auto file = std::make_unique<QFile>(QFile::decodeName(path));
    if (!file->open(QIODevice::ReadOnly))
        throw TError("Cannot open file");
    return file;
}

TDemoFileLayout layoutOf(int channels, int samplingRate, int bytesPerSample, int fileOffset, int channelMask)
{
    return {std::clamp<int>(channels, 0, std::size(acq::channelNames)), std::max(samplingRate, 1),
            std::max(bytesPerSample, 1), std::max(fileOffset, 0), channelMask};
}

} // namespace

TDemoAcqDevice::TDemoAcqDevice(const char* path, int channels, int samplingRate, int bytesPerSample,
                               int resolutionBits, double range, int fileOffset, int channelMask)
    : TDemoAcqDevice(openFile(path),
                     layoutOf(channels, samplingRate, bytesPerSample, fileOffset, channelMask),
                     resolutionBits, range)
{
}

TDemoAcqDevice::TDemoAcqDevice(std::unique_ptr<QFile> file, const TDemoFileLayout& layout, int resolutionBits,
                               double range)
    : m_layout(layout), m_resolutionBits(resolutionBits), m_range(range),
      m_thread(std::move(file), layout, m_buffer)
{
    for (const int channel : acq::selectedChannels(layout.channelMask, layout.channels))
        m_channelNames.push_back(acq::channelNames[channel]);
}

TDemoAcqDevice::~TDemoAcqDevice()
{
    TDemoAcqDevice::stop();
}

void TDemoAcqDevice::start()
{
    m_thread.start(QThread::InheritPriority);
}

void TDemoAcqDevice::stop()
{
    m_thread.stopAndWait();
}

int TDemoAcqDevice::bytesAvailable() const
{
    return static_cast<int>(std::min<qint64>(m_buffer.size(), std::numeric_limits<int>::max()));
}

const char* TDemoAcqDevice::channelName(int index) const
{
    return index >= 0 && index < channelCount() ? m_channelNames[index] : "";
}
