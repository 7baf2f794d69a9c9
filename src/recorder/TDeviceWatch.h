#pragma once

class TQtAcqDriver;
class TSignal;

/// What a device says about its electrodes, its amplifiers and its battery while it is read.
class TDeviceWatch
{
public:
    /// Both are borrowed; `raw` has the channels of the recording.
    TDeviceWatch(TQtAcqDriver& driver, const TSignal& raw) : m_driver(driver), m_raw(raw) {}

    /// Whether an electrode is off; electrodes are asked in the order of their weight for the leads.
    bool isAnyElectrodeOff();
    /// A channel of the recording, whichever of the device's it is.
    bool isChannelSaturated(int channel);
    bool isAnyChannelSaturated();
    /// A voltage that is known and below the level.
    bool batteryIsLow();
    /// Volts.
    void setLowBatteryLevel(double volts) { m_lowBatteryLevel = volts; }

private:
    TQtAcqDriver& m_driver;
    const TSignal& m_raw;
    double m_lowBatteryLevel = 2.3;
};
