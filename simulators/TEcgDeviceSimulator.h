#pragma once

#include "simulators/SampleSource.h"
#include "simulators/TByteFaults.h"
#include "simulators/TSimulatedPort.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// How a simulated ECG device behaves.
struct TEcgDeviceOptions
{
    /// Something that happens to the line once, counted from the first start command.
    struct TOutage
    {
        double start = -1.0; ///< seconds; below 0 never
        double length = 0.0; ///< seconds
    };

    bool isHighRate = false;
    std::string link;   ///< name under which the port is found again after a hang-up; empty for none
    double speed = 1.0; ///< times real time; 0 is as fast as the program reads
    std::int64_t frameLimit = -1; ///< frames sent after the first start; below 0 no end
    std::vector<std::string> electrodesOff;
    int saturatedSample = -1; ///< index among I, II, III, V1 to V6, CM5, CR5; below 0 none
    double batteryVolts = 3.0;
    double garbledBytes = 0.0; ///< probability of each byte
    double lostBytes = 0.0;    ///< probability of each byte
    unsigned seed = 1;
    TOutage stall;  ///< the device is silent, the line stays
    TOutage hangUp; ///< the cable is pulled
    std::string identifyText = "ECG";
};

/// An ECG device at the far end of a pseudo-terminal: takes the commands start (1), stop (2), keep alive (9)
/// and identify (11) and sends frames of its family. One thread.
class TEcgDeviceSimulator
{
public:
    TEcgDeviceSimulator(const TEcgDeviceOptions& options, std::unique_ptr<sim::TSampleSource> source);

    /// Where the program finds the device.
    std::string path() const { return m_port.path(); }
    /// Is told of each command byte as it arrives.
    std::function<void(int command)> onCommand;

    /// Serves the line until `isDone` says so; it is asked about every 5 ms.
    void run(const std::function<bool()>& isDone);

    int framesPerSecond() const { return m_options.isHighRate ? 1000 : 500; }
    std::int64_t framesSent() const { return m_framesSent; }
    bool isFinished() const { return m_options.frameLimit >= 0 && m_framesSent >= m_options.frameLimit; }

private:
    double now() const;
    void takeCommands();
    void obey(int command);
    void applyOutages();
    bool isWithin(const TEcgDeviceOptions::TOutage& outage) const;
    /// Frames that should have gone out by now.
    std::int64_t framesDue() const;
    void makeFrames();
    void send();

    TEcgDeviceOptions m_options;
    std::unique_ptr<sim::TSampleSource> m_source;
    TSimulatedPort m_port;
    TByteFaults m_faults;
    sim::TDeviceState m_state;
    bool m_streaming = false;
    double m_firstStart = -1.0; ///< seconds; below 0 before the first start command
    double m_streamStart = 0.0; ///< seconds of `now` at frame `m_streamFrame`
    std::int64_t m_streamFrame = 0;
    std::int64_t m_framesSent = 0;
    std::vector<char> m_pending; ///< bytes that found no room yet
};
