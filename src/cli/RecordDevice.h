#pragma once

#include "acq/TAcqDevice.h"

#include <memory>

struct TRecordOptions;

/// The device that the options name, not started. Throws TError "Device not found" or "Cannot open file".
std::unique_ptr<TAcqDevice> makeRecordDevice(const TRecordOptions& options);
