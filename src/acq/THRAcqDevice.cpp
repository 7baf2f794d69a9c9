#include "acq/THRAcqDevice.h"

#include "acq/DeviceDiscovery.h"
#include "acq/THRAcqThread.h"

THRAcqDevice::THRAcqDevice() : THRAcqDevice(findUsbPort().c_str(), acq::highRateBaud) {}

THRAcqDevice::THRAcqDevice(const char* port, int baud) : TPortAcqDevice(acq::allChannels, acq::highRateRange)
{
    setThread(std::make_unique<THRAcqThread>(buffer(), port, baud));
}
