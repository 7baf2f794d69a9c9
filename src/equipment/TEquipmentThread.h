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
/// that was asked for goes out before the end in either case: someone may be on the device. What is under way
/// when a stop is asked for is cut short, and the stop goes out.
class TEquipmentThread : public QThread
{
public:
    /// The thread has ended before: `endAndWait`.
    ~TEquipmentThread() override = 0;

    // Any thread. What was asked for twice before its turn is done once.
    void requestStart();
    /// What was committed before is void, as far as it has not gone out: a load after the stop would set the
    /// device going again.
    void requestStop();
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
    /// The command goes out even where `isCutShort`: a start goes before a stop.
    virtual void serveStart() = 0;
    /// False if it did not go out or was cut short, so that the stop is still owed.
    virtual bool serveStop() = 0;
    /// Returns soon once `isCutShort`; the stop that follows brings the device to rest.
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
    /// Whether what is under way must give way to the end, or to a stop unless it is one. Reads and writes
    /// do not wait then.
    bool isCutShort() const;
    /// False if it was cut short.
    bool pause(int ms);
    /// False if the thread was told to end meanwhile; a stop has to wait.
    bool pauseUntilEnd(int ms);

    void run() final;

private:
    /// What cuts short that which is under way.
    enum class TPhase
    {
        Working,  ///< a stop and the end
        Stopping, ///< the end
        Leaving   ///< nothing
    };
    enum class TRequest
    {
        None,
        Start,
        Stop,
        Commit
    };

    void turns();
    void turn();
    /// Chooses what this turn serves, and takes it; with a stop, `Stopping` begins.
    TRequest takeRequest(TEquipmentValues& committed);
    void oweStop();
    bool isStopOwed() const;
    void openPort();
    void leaveDevice(bool mayOpen);
    void enter(TPhase phase);
    // m_mutex is held.
    bool mustLeaveOff() const;
    /// Brings the port into step with `mustLeaveOff`.
    void setPhase(TPhase phase);
    /// Reports what is thrown; false then.
    bool guarded(const std::function<void()>& action) noexcept;
    void reportQuietly(const char* text) noexcept;

    const std::string m_portName;
    const TCommSettings m_settings;
    const int m_turnMs;
    const int m_lastWordsMs;
    CommPort m_port;

    std::atomic<bool> m_ending = false;
    std::atomic<bool> m_ended = false;

    /// Guards what follows, and the interruption of the port against its opening and its resumption.
    mutable std::mutex m_mutex;
    std::condition_variable m_wake; ///< of the pauses
    TPhase m_phase = TPhase::Working;
    bool m_startRequested = false;
    bool m_stopRequested = false;
    bool m_commitRequested = false;
    TEquipmentValues m_committed; ///< go out as one set
};
