#pragma once

#include "acq/AcqChannels.h"
#include "acq/EcgDeviceFrame.h"

#include <array>
#include <cstdint>

/// One sampling instant of a device: all channels in the fixed order, in counts.
struct TEcgSample
{
    using TChannels = std::array<std::int16_t, acq::deviceChannelCount>;

    /// The devices do not send aVR, aVL and aVF; they are 0 until they are computed.
    TChannels channels{};
    /// Bit n for electrode n of TElectrode.
    unsigned electrodesOff = 0;
    double batteryVolts = 0.0;

    bool isOff(acq::TElectrode electrode) const
    {
        return (electrodesOff >> static_cast<unsigned>(electrode) & 1U) != 0;
    }
};
