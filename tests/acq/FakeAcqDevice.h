#pragma once

#include "acq/AcqChannels.h"
#include "acq/TAcqBuffer.h"
#include "acq/TAcqDevice.h"

#include <QtGlobal>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <deque>
#include <functional>
#include <limits>
#include <mutex>
#include <vector>

/// A device without a reader: the test fills its queue and tells it how to fail. Any thread.
class FakeAcqDevice : public TAcqDevice
{
public:
    explicit FakeAcqDevice(int channels = 14, int samplingRate = 500)
        : m_channels(channels), m_samplingRate(samplingRate)
    {
    }

    /// What stands at a place of the endless recording that the device gives.
    static qint16 sampleAt(int channel, int frame)
    {
        return static_cast<qint16>(frame * 31 + channel * 1009);
    }

    std::vector<char> frames(int first, int count) const
    {
        std::vector<char> bytes(static_cast<std::size_t>(count) * frameBytes());
        char* out = bytes.data();
        for (int frame = first; frame < first + count; ++frame) {
            for (int channel = 0; channel < m_channels; ++channel, out += sizeof(qint16)) {
                const qint16 sample = sampleAt(channel, frame);
                std::memcpy(out, &sample, sizeof sample);
            }
        }
        return bytes;
    }

    /// The next frames of the recording.
    void pushFrames(int count)
    {
        const auto bytes = frames(m_pushed, count);
        m_pushed += count;
        m_buffer.push(bytes.data(), static_cast<int>(bytes.size()));
    }

    void pushPulse(int sampleOffset)
    {
        const std::lock_guard lock(m_pulseMutex);
        m_pulses.push_back(sampleOffset);
    }

    int pulsesWaiting()
    {
        const std::lock_guard lock(m_pulseMutex);
        return static_cast<int>(m_pulses.size());
    }

    int frameBytes() const { return m_channels * bytesPerSample(); }

    void start() override
    {
        ++starts;
        if (onStart)
            onStart();
        if (startRevives)
            ok = true;
    }
    bool isOk() const override { return ok; }
    bool isWaiting() const override { return false; }
    int bytesAvailable() const override { return static_cast<int>(m_buffer.size()) + promisedBytes; }
    int read(char* buffer, int size) override
    {
        const int count = m_buffer.pop(buffer, size);
        return readFails ? -1 : count;
    }
    int nextPacemakerPulse() override
    {
        const std::lock_guard lock(m_pulseMutex);
        if (m_pulses.empty())
            return endlessPulse;
        const int pulse = m_pulses.front();
        m_pulses.pop_front();
        return pulse;
    }
    void resetDevice() override { ++resets; }
    bool isChannelSaturated(int channel) const override { return channel == 3; }
    bool isElectrodeOff(const char* name) const override { return std::strcmp(name, "LA") == 0; }
    void stop() override { ++stops; }
    const char* lastError() const override { return "Device read error"; }
    double batteryVoltage() const override { return 2.5; }
    int channelCount() const override { return m_channels; }
    const char* channelName(int index) const override { return acq::channelNames[index]; }
    int samplingRate() const override { return m_samplingRate; }
    int bytesPerSample() const override { return 2; }
    int resolutionBits() const override { return 16; }
    double rangeMin() const override { return -450.0; }
    double rangeMax() const override { return 450.0; }

    std::atomic<int> starts = 0;
    std::atomic<int> stops = 0;
    std::atomic<int> resets = 0;
    std::atomic<bool> ok = true;
    std::atomic<bool> startRevives = false;
    std::atomic<bool> readFails = false;
    /// Told of by bytesAvailable, but not there.
    std::atomic<int> promisedBytes = 0;
    /// If not 0, pulses never end.
    std::atomic<int> endlessPulse = 0;
    /// Set before the start.
    std::function<void()> onStart;

private:
    const int m_channels;
    const int m_samplingRate;
    TAcqBuffer m_buffer;
    int m_pushed = 0;
    std::mutex m_pulseMutex;
    std::deque<int> m_pulses;
};
