#pragma once

#include "acq/TAcqDevice.h"

#include <memory>

/// The device that the user's settings ask for: the replay of "ecg500.dat" in the working directory, or a
/// device of the chosen family at a Bluetooth or a USB port. `reducedChannels` asks for II, V2 and V5 alone,
/// which the high-rate family has no way to do. Throws TError with "Device not found" or "Cannot open file".
/// Main thread.
std::unique_ptr<TAcqDevice> createAcqDevice(bool reducedChannels);
