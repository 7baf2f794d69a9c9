#pragma once

#include "simulators/TEcgDeviceSimulator.h"

#include <QString>

#include <atomic>
#include <thread>

/// A simulated ECG device on a thread of its own, for as long as the object lives.
class TRunningDevice
{
public:
    /// `source` as sim::makeSampleSource takes it; `rangeMv` is the device's range for a WFDB record.
    explicit TRunningDevice(const TEcgDeviceOptions& options,
                            const QString& source = QStringLiteral("pattern"), double rangeMv = 450.0)
        : m_simulator(options, sim::makeSampleSource(source, options.isHighRate ? 1000 : 500, rangeMv)),
          m_thread([this] {
              m_simulator.run([this] {
                  m_finished = m_simulator.isFinished();
                  return m_done.load();
              });
          })
    {
    }
    ~TRunningDevice()
    {
        m_done = true;
        m_thread.join();
    }
    TRunningDevice(const TRunningDevice&) = delete;
    TRunningDevice& operator=(const TRunningDevice&) = delete;

    std::string path() const { return m_simulator.path(); }
    /// Whether all frames have gone out.
    bool isFinished() const { return m_finished; }

private:
    std::atomic<bool> m_done = false;
    std::atomic<bool> m_finished = false;
    TEcgDeviceSimulator m_simulator;
    std::thread m_thread;
};
