#include "cli/TStartedDevice.h"

#include <utility>

TStartedDevice::TStartedDevice(std::unique_ptr<TAcqDevice> device) : m_device(std::move(device))
{
    m_device->start();
}

TStartedDevice::~TStartedDevice()
{
    m_device->stop();
}

void TStartedDevice::start()
{
    if (std::exchange(m_startsAgain, true))
        m_device->start();
}

void TStartedDevice::stop()
{
    if (!m_device->isOk())
        ++m_failures;
    m_device->stop();
}
