#pragma once

#include "equipment/OlmoCommands.h"
#include "equipment/TEquipmentThread.h"

/// Milliseconds that the ergometer's driver waits.
struct TOlmoTimes
{
    int startUpPauseMs = 500; ///< `startUpPauses` of them after the reset
    int startUpPauses = 14;
    int stepPauseMs = 200; ///< between the steps of a change of load
    int turnMs = 200;
    int timeoutMs = 2000;  ///< of a byte or a write; a line has twice as long
    int lastWordsMs = 400; ///< the same on the way out
};

/// Talks to an OLMO ergometer.
class TOlmoThread : public TEquipmentThread
{
public:
    TOlmoThread(const std::string& port, const TOlmoTimes& times);

protected:
    /// Resets the device on the first turn and asks for its data.
    void prepare() override;
    void serveStart() override;
    bool serveStop() override;
    void serveCommit(const TEquipmentValues& values) override;
    /// Resets the device, whether a stop is owed or not.
    void sayLastWords(bool stopOwed) override;
    void report(const char* text) override;

private:
    void wakeDevice();
    bool send(const olmo::TStep& step);
    /// Nothing once the thread is to end; when a stop is owed, without the waits.
    void take(const olmo::TStep& step);
    void skipLine();

    const TOlmoTimes m_times;
    bool m_firstTurn = true;
    int m_target = 0;  ///< watts
    int m_current = 0; ///< watts; a stop takes the load away
};
