#pragma once

#include "acq/TPortAcqDevice.h"

/// The standard device at a USB or Bluetooth serial port: up to 14 channels at 500 frames per second, of
/// which a mask selects those that are delivered (bit n for channel n of the fixed order).
class TStdAcqDevice : public TPortAcqDevice
{
public:
    /// Finds the port by itself. Throws TError("Device not found").
    explicit TStdAcqDevice(int channelMask);
    /// The port is opened by `start`.
    TStdAcqDevice(const char* port, int baud, int channelMask);

    bool isChannelSaturated(int channel) const override;
};
