#pragma once

#include "acq/TPortAcqDevice.h"

/// The high-rate device at a USB or Bluetooth serial port: all 14 channels, sampled at 1000 frames per second
/// and delivered at 500.
class THRAcqDevice : public TPortAcqDevice
{
public:
    /// Finds the port by itself. Throws TError("Device not found").
    THRAcqDevice();
    /// The port is opened by `start`.
    THRAcqDevice(const char* port, int baud);
};
