#pragma once

/// A source of ECG samples: frames of one 16-bit sample per channel, in the processor's byte order, delivered
/// by a reader thread of its own into a queue. Started and stopped by the pump alone, again and again if its
/// link fails. The queries may come from any thread and answer with the latest known value.
class TAcqDevice
{
public:
    TAcqDevice() = default;
    virtual ~TAcqDevice() = default;
    TAcqDevice(const TAcqDevice&) = delete;
    TAcqDevice& operator=(const TAcqDevice&) = delete;

    /// Starts the reader thread.
    virtual void start() = 0;
    /// False once the reader thread has failed; `start` begins anew.
    virtual bool isOk() const = 0;
    /// A further state of the reader; always false for the present devices.
    virtual bool isWaiting() const = 0;
    virtual int bytesAvailable() const = 0;
    /// Takes up to `size` bytes; returns their number.
    virtual int read(char* buffer, int size) = 0;
    /// Absolute sample index of the next reported pacemaker pulse, 0 when none is pending.
    virtual int nextPacemakerPulse() = 0;
    virtual void resetDevice() = 0;
    /// Whether the channel of the fixed order has been out of range for half a second.
    virtual bool isChannelSaturated(int channel) const = 0;
    /// Electrodes are "LA", "LL", "RA", "V1" to "V6"; any other name is not off.
    virtual bool isElectrodeOff(const char* name) const = 0;
    /// Ends the reader thread and waits for it.
    virtual void stop() = 0;
    /// Why `isOk` is false; empty if nothing failed. Valid until the next start.
    virtual const char* lastError() const = 0;
    /// Volts; 0 if unknown.
    virtual double batteryVoltage() const = 0;
    virtual int channelCount() const = 0;
    /// Empty out of range.
    virtual const char* channelName(int index) const = 0;
    /// Frames per second.
    virtual int samplingRate() const = 0;
    virtual int bytesPerSample() const = 0;
    virtual int resolutionBits() const = 0;
    /// Physical values of the two ends of the 16-bit span, in millivolts.
    virtual double rangeMin() const = 0;
    virtual double rangeMax() const = 0;
};
