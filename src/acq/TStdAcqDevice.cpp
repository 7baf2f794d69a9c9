#include "acq/TStdAcqDevice.h"

#include "acq/DeviceDiscovery.h"
#include "acq/TStdAcqThread.h"

TStdAcqDevice::TStdAcqDevice(int channelMask)
    : TStdAcqDevice(findUsbPort().c_str(), acq::standardBaud, channelMask)
{
}

TStdAcqDevice::TStdAcqDevice(const char* port, int baud, int channelMask)
    : TPortAcqDevice(channelMask, acq::standardRange)
{
    setThread(std::make_unique<TStdAcqThread>(buffer(), port, baud, channelMask));
}

bool TStdAcqDevice::isChannelSaturated(int channel) const
{
    return thread().isSaturated(channel);
}
