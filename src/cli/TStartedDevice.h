#pragma once

#include "acq/TAcqDevice.h"

#include <atomic>
#include <memory>

/// A device that is started before its pump, to see that it is there; nothing that it sends meanwhile is
/// lost. It also counts how often its reader failed, which the pump mends without a word.
class TStartedDevice : public TAcqDevice
{
public:
    /// Starts the device.
    explicit TStartedDevice(std::unique_ptr<TAcqDevice> device);
    ~TStartedDevice() override;

    /// How often the reader has failed and was stopped. Any thread.
    int failures() const { return m_failures; }

    /// The first call finds it started.
    void start() override;
    void stop() override;

    bool isOk() const override { return m_device->isOk(); }
    bool isWaiting() const override { return m_device->isWaiting(); }
    int bytesAvailable() const override { return m_device->bytesAvailable(); }
    int read(char* buffer, int size) override { return m_device->read(buffer, size); }
    int nextPacemakerPulse() override { return m_device->nextPacemakerPulse(); }
    void resetDevice() override { m_device->resetDevice(); }
    bool isChannelSaturated(int channel) const override { return m_device->isChannelSaturated(channel); }
    bool isElectrodeOff(const char* name) const override { return m_device->isElectrodeOff(name); }
    const char* lastError() const override { return m_device->lastError(); }
    double batteryVoltage() const override { return m_device->batteryVoltage(); }
    int channelCount() const override { return m_device->channelCount(); }
    const char* channelName(int index) const override { return m_device->channelName(index); }
    int samplingRate() const override { return m_device->samplingRate(); }
    int bytesPerSample() const override { return m_device->bytesPerSample(); }
    int resolutionBits() const override { return m_device->resolutionBits(); }
    double rangeMin() const override { return m_device->rangeMin(); }
    double rangeMax() const override { return m_device->rangeMax(); }

private:
    std::unique_ptr<TAcqDevice> m_device;
    bool m_startsAgain = false;
    std::atomic<int> m_failures = 0;
};
