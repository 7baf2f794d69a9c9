#pragma once

#include "acq/TAcqBuffer.h"
#include "acq/TAcqPort.h"
#include "acq/TFrameParser.h"
#include "acq/TSaturationCounters.h"

#include <QThread>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>

/// The reader of a device at a serial port: opens the port, lets the device stream and puts what it sends
/// into the queue, until it is told to stop or the line fails. It then only notes the error; whoever started
/// it starts it anew, and the port is opened again. Its queries may come from any thread.
class TPortAcqThread : public QThread
{
public:
    /// The thread has ended before: derived classes call `stopReading` in their destructors, as it runs their
    /// code.
    ~TPortAcqThread() override = 0;

    /// For a line with a time-out of its own; before the start.
    void setReadTimeout(int ms) { m_readTimeoutMs = ms; }

    /// Clears the error and starts to read. Not while it reads.
    void startReading();
    /// Ends a waiting read at once, has the device stop and waits for the end of the thread: 100 ms and a
    /// little.
    void stopReading();

    bool hasFailed() const { return m_failed.load(std::memory_order_acquire); }
    /// "Device read error", the text of a port that could not be opened, or "Unexpected error"; empty if
    /// nothing failed. The text stays valid.
    const char* errorText() const { return m_errorText.load(std::memory_order_acquire); }
    /// False for a name that is none of an electrode, and before the first frame.
    bool isElectrodeOff(const char* name) const;
    /// Of the last frame; 0 before the first one.
    double batteryVoltage() const { return m_batteryVolts.load(std::memory_order_relaxed); }
    bool isSaturated(int channel) const { return m_saturation.isSaturated(channel); }

protected:
    /// A keep alive command goes out each `keepAliveFrames`. `buffer` outlives the thread.
    TPortAcqThread(TAcqBuffer& buffer, std::string port, int baud, int keepAliveFrames);

    /// Reads frames until `nextFrame` says false. In the thread.
    virtual void stream() = 0;

    // For `stream`.
    /// Waits for the next frame; false when the reading is to end.
    bool nextFrame(TFrameParser& parser, TEcgSample& sample);
    void publishBattery(const TEcgSample& sample);
    void publishElectrodes(const TEcgSample& sample);
    void countSaturation(const TEcgSample& sample) { m_saturation.add(sample); }
    void push(const char* data, int size) { m_buffer.push(data, size); }
    /// Each frame calls it in the end: keeps the device alive.
    void frameDone();

    void run() final;

private:
    /// Why the thread ends when the line fails.
    struct TReadFailure
    {
    };

    void readPort();
    void startDevice(TAcqPort& port);
    void stopDevice(TAcqPort& port);
    /// What `stopReading` may interrupt; null for none.
    void setPort(TAcqPort* port);
    /// False if the reading was to end meanwhile.
    bool pause(int ms);
    void fail(const std::string& text);

    TAcqBuffer& m_buffer;
    const std::string m_portName;
    const int m_baud;
    const int m_keepAliveFrames;
    int m_readTimeoutMs = TAcqPort::defaultReadTimeoutMs;

    // The thread's own.
    int m_sinceKeepAlive = 0;

    /// Guards what `m_port` points at against its end, and the sleep of `pause`.
    std::mutex m_mutex;
    std::condition_variable m_stop;
    TAcqPort* m_port = nullptr;

    std::atomic<bool> m_stopping = false;
    std::atomic<bool> m_failed = false;
    std::atomic<const char*> m_errorText = "";
    std::atomic<unsigned> m_electrodesOff = 0;
    std::atomic<double> m_batteryVolts = 0.0;
    TSaturationCounters m_saturation;
};
