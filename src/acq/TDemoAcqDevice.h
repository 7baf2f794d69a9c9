#pragma once

#include "acq/TAcqBuffer.h"
#include "acq/TAcqDevice.h"
#include "acq/TDemoAcqThread.h"

/// Replays a recorded ECG in real time and in a loop, for work without hardware.
class TDemoAcqDevice : public TAcqDevice
{
public:
    /// The file holds frames of `channels` (up to 16) little-endian samples in the fixed order, from
    /// `fileOffset` bytes on. `range` is the physical value in millivolts of the upper end of the 16-bit
    /// span. Throws TError with "Cannot open file".
    TDemoAcqDevice(const char* path, int channels, int samplingRate, int bytesPerSample, int resolutionBits,
                   double range, int fileOffset, int channelMask);
    /// Stops.
    ~TDemoAcqDevice() override;

    /// Without pacing it delivers as fast as the samples are taken, five seconds ahead at most. Before the
    /// start.
    void setPaced(bool paced) { m_thread.setPaced(paced); }
    /// What the reader thread calls to sleep; in place of the real thing where time is simulated. Before the
    /// start.
    void setSleep(TDemoAcqThread::TSleep sleep) { m_thread.setSleep(std::move(sleep)); }

    void start() override;
    bool isOk() const override { return true; }
    bool isWaiting() const override { return false; }
    int bytesAvailable() const override;
    int read(char* buffer, int size) override { return m_buffer.pop(buffer, size); }
    int nextPacemakerPulse() override { return 0; }
    void resetDevice() override {}
    bool isChannelSaturated(int) const override { return false; }
    bool isElectrodeOff(const char*) const override { return false; }
    void stop() override;
    const char* lastError() const override { return ""; }
    double batteryVoltage() const override { return 0.0; }
    int channelCount() const override { return static_cast<int>(m_channelNames.size()); }
    const char* channelName(int index) const override;
    int samplingRate() const override { return m_layout.samplingRate; }
    int bytesPerSample() const override { return m_layout.bytesPerSample; }
    int resolutionBits() const override { return m_resolutionBits; }
    double rangeMin() const override { return -m_range; }
    double rangeMax() const override { return m_range; }

private:
    TDemoAcqDevice(std::unique_ptr<QFile> file, const TDemoFileLayout& layout, int resolutionBits,
                   double range);

    const TDemoFileLayout m_layout;
    const int m_resolutionBits;
    const double m_range;
    std::vector<const char*> m_channelNames;
    TAcqBuffer m_buffer;
    TDemoAcqThread m_thread;
};
