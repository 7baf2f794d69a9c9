#pragma once

#include "platform/CommPort.h"

#include <string>

/// The serial line to an ECG device, with the commands that it takes. One thread uses it; only `interrupt`
/// may be called from another one.
class TAcqPort
{
public:
    /// Total, for one read.
    static constexpr int defaultReadTimeoutMs = 10000;

    /// Opens the port. Throws TError with "No se pudo abrir el puerto (CreateFile)" if it cannot be opened,
    /// else with the text of the step of the set-up that failed.
    TAcqPort(const std::string& name, int baud, int readTimeoutMs = defaultReadTimeoutMs);

    /// Drops what waits in both directions and lets the device stream.
    void sendStart();
    void sendStop();
    void sendKeepAlive();
    /// False if the command did not go out.
    bool sendIdentify();

    /// The next byte, or -1 at a failure, the time-out or an interruption.
    int readByte() { return m_port.readByte(); }
    /// Waits for `size` bytes; returns those that came, -1 at a failure.
    int read(char* data, int size) { return m_port.read(data, size); }

    /// Ends a waiting read at once, and every later one. Any thread.
    void interrupt() { m_port.interrupt(); }

private:
    bool send(char command) { return m_port.write(&command, 1); }

    CommPort m_port;
};

/// What the device at the port says it is, up to 7 bytes as they came; empty if it says nothing within the
/// read time-out.
std::string identify(TAcqPort& port);
