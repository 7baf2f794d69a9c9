#pragma once

#include "acq/TAcqBuffer.h"
#include "acq/TAcqDevice.h"
#include "acq/TPortAcqThread.h"

#include <memory>
#include <vector>

/// What both families of devices at a serial port have in common.
class TPortAcqDevice : public TAcqDevice
{
public:
    ~TPortAcqDevice() override = 0;

    /// Physical values of the ends of the 16-bit span become minus and plus `range`, in millivolts;
    /// before the start.
    void setRange(double range) { m_range = range; }
    /// Total time of one read in place of 10 s; before the start.
    void setReadTimeout(int ms);

    void start() override;
    bool isOk() const override;
    bool isWaiting() const override { return false; }
    int bytesAvailable() const override;
    int read(char* buffer, int size) override;
    int nextPacemakerPulse() override { return 0; }
    void resetDevice() override {}
    bool isChannelSaturated(int) const override { return false; }
    bool isElectrodeOff(const char* name) const override;
    void stop() override;
    const char* lastError() const override;
    double batteryVoltage() const override;
    int channelCount() const override;
    const char* channelName(int index) const override;
    int samplingRate() const override { return 500; }
    int bytesPerSample() const override { return 2; }
    int resolutionBits() const override { return 16; }
    double rangeMin() const override { return -m_range; }
    double rangeMax() const override { return m_range; }

protected:
    TPortAcqDevice(int channelMask, double range);

    TAcqBuffer& buffer() { return m_buffer; }
    /// Derived classes set it in their constructor.
    void setThread(std::unique_ptr<TPortAcqThread> thread);
    const TPortAcqThread& thread() const { return *m_thread; }

private:
    // The thread goes first: it fills the buffer.
    std::vector<int> m_channels;
    TAcqBuffer m_buffer;
    std::unique_ptr<TPortAcqThread> m_thread;
    double m_range;
};
