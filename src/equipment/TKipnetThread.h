#pragma once

#include "equipment/TEquipmentThread.h"
#include "equipment/TKipnetLog.h"

#include <QString>

/// Milliseconds that the treadmill's driver waits.
struct TKipnetTimes
{
    int retryPauseMs = 500; ///< after an attempt that failed
    int turnMs = 200;
    int timeoutMs = 3000;  ///< of a read or a write
    int lastWordsMs = 400; ///< the same on the way out
};

/// Talks to a Kipnet treadmill and writes what it sends into a log.
class TKipnetThread : public TEquipmentThread
{
public:
    TKipnetThread(const std::string& port, const TKipnetTimes& times, const QString& logPath);

protected:
    void begin() override;
    void end() override;
    /// The device has no need of it: it is set going by the first value.
    void serveStart() override {}
    bool serveStop() override;
    void serveCommit(const TEquipmentValues& values) override;
    void sayLastWords(bool stopOwed) override;
    void report(const char* text) override;

private:
    /// Throws TError if the device does not answer; nothing once cut short.
    void command(const std::string& message, const char* failure);
    /// True once the device has answered; false also when cut short.
    bool send(const std::string& message);
    void beginMessage(const std::string& message);
    bool attempt(const std::string& message);

    const TKipnetTimes m_times;
    const QString m_logPath;
    TKipnetLog m_log;
    bool m_running = false; ///< the belt; a stop has it stand
};
