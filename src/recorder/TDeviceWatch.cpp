#include "recorder/TDeviceWatch.h"

#include "acq/AcqChannels.h"
#include "acq/TQtAcqDriver.h"
#include "analysis/signals/TChannel.h"
#include "analysis/signals/TSignal.h"

#include <algorithm>
#include <iterator>

bool TDeviceWatch::isAnyElectrodeOff()
{
    return std::any_of(std::begin(acq::electrodesByWeight), std::end(acq::electrodesByWeight),
                       [this](const char* name) { return m_driver.isElectrodeOff(name); });
}

bool TDeviceWatch::isChannelSaturated(int channel)
{
    const TChannel* const recorded = m_raw.channel(channel);
    // A device that delivers some of its channels counts them all.
    return recorded && m_driver.isChannelSaturated(acq::placeOfChannel(recorded->name().constData()));
}

bool TDeviceWatch::isAnyChannelSaturated()
{
    for (int channel = 0; channel < m_raw.channelCount(); ++channel) {
        if (isChannelSaturated(channel))
            return true;
    }
    return false;
}

bool TDeviceWatch::batteryIsLow()
{
    const double voltage = m_driver.batteryVoltage();
    return voltage > 0.0 && voltage < m_lowBatteryLevel;
}
