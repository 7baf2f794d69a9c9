#pragma once

#include "equipment/TEquipmentValues.h"
#include "platform/CommPort.h"

#include <QThread>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>

/// The one that talks to a device at a serial port, in turns: opens the port if need be, does one of the
/// things that were asked for, and rests. It ends when it is told to, or with the first exception. A stop
/// that was asked for goes out before the end in either case: someone may be on the device.
class TEquipmentThread : public QThread
{
public:
    /// The thread has ended before: `endAndWait`.
    ~TEquipmentThread() override = 0;

    // Any thread. What was asked for twice before its turn is done once.
    void requestStart() { m_startRequested = true; }
    void requestStop() { m_stopRequested = true; }
    void requestCommit(const TEquipmentValues& values);

    /// Cuts short what the thread waits for and waits for its end.
    void endAndWait();

protected:
    /// `lastWordsMs` is the time-out of a read or a write on the way out.
    TEquipmentThread(std::string port, const TCommSettings& settings, int turnMs, int lastWordsMs);

    // What a device needs. All run in the thread and may throw, which ends it.
    virtual void begin() {}
    /// Once the port is open, at each turn.
    virtual void prepare() {}
    virtual void serveStart() = 0;
    /// False if it was cut short, so that the stop is still owed.
    virtual bool serveStop() = 0;
    virtual void serveCommit(const TEquipmentValues& values) = 0;
    /// The port is open. `stopOwed` tells that a stop was asked for and is not out.
    virtual void sayLastWords(bool stopOwed) = 0;
    /// An error's text.
    virtual void report(const char* text) = 0;
    /// The port is closed.
    virtual void end() {}

    CommPort& port() { return m_port; }
    const std::string& portName() const { return m_portName; }
    bool isEnding() const { return m_ending; }
    /// False if the thread was told to end meanwhile.
    bool pause(int ms);

    void run() final;

private:
    void turns();
    void turn();
    void openPort();
    void resumePort();
    void leaveDevice(bool mayOpen);
    TEquipmentValues takeCommitted();
    /// Reports what is thrown; false then.
    bool guarded(const std::function<void()>& action) noexcept;
    void reportQuietly(const char* text) noexcept;

    const std::string m_portName;
    const TCommSettings m_settings;
    const int m_turnMs;
    const int m_lastWordsMs;
    CommPort m_port;

    std::atomic<bool> m_startRequested = false;
    std::atomic<bool> m_stopRequested = false;
    std::atomic<bool> m_commitRequested = false;
    std::atomic<bool> m_ending = false;
    std::atomic<bool> m_ended = false;

    /// Guards the committed values, which go out as one set, the sleep of `pause`, and the interruption of
    /// the port against its opening and its resumption.
    std::mutex m_mutex;
    std::condition_variable m_wake;
    TEquipmentValues m_committed;
};
