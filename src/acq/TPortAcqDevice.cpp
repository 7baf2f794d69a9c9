#include "acq/TPortAcqDevice.h"

#include "acq/AcqChannels.h"

#include <algorithm>
#include <limits>
#include <utility>

TPortAcqDevice::TPortAcqDevice(int channelMask, double range)
    : m_channels(acq::selectedChannels(channelMask, acq::deviceChannelCount)), m_range(range)
{
}

TPortAcqDevice::~TPortAcqDevice() = default;

void TPortAcqDevice::setThread(std::unique_ptr<TPortAcqThread> thread)
{
    m_thread = std::move(thread);
}

void TPortAcqDevice::setReadTimeout(int ms)
{
    m_thread->setReadTimeout(ms);
}

void TPortAcqDevice::start()
{
    m_thread->startReading();
}

void TPortAcqDevice::stop()
{
    m_thread->stopReading();
}

bool TPortAcqDevice::isOk() const
{
    return !m_thread->hasFailed();
}

const char* TPortAcqDevice::lastError() const
{
    return m_thread->errorText();
}

int TPortAcqDevice::bytesAvailable() const
{
    return static_cast<int>(std::min<qint64>(m_buffer.size(), std::numeric_limits<int>::max()));
}

int TPortAcqDevice::read(char* buffer, int size)
{
    return m_buffer.pop(buffer, size);
}

bool TPortAcqDevice::isElectrodeOff(const char* name) const
{
    return m_thread->isElectrodeOff(name);
}

double TPortAcqDevice::batteryVoltage() const
{
    return m_thread->batteryVoltage();
}

int TPortAcqDevice::channelCount() const
{
    return static_cast<int>(m_channels.size());
}

const char* TPortAcqDevice::channelName(int index) const
{
    if (index < 0 || index >= channelCount())
        return "";
    return acq::channelNames[m_channels[static_cast<std::size_t>(index)]];
}
