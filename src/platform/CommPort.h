#pragma once

#include "base/Error.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

/// How a serial port is to be set up. Parity stays as the port has it. Flow control by characters is always
/// off: samples are any bytes, and a stray 0x13 from a device would hold back the stop of a treadmill.
struct TCommSettings
{
    enum class TFlowControl
    {
        Keep, ///< by the control lines if the port has it so
        None  ///< none, and the control lines of our side at rest
    };

    int baud = 9600; ///< any rate that the hardware can make
    int dataBits = 8;
    int stopBits = 1;
    TFlowControl flowControl = TFlowControl::None;
    int inputQueueBytes = 32768;
    int outputQueueBytes = 32768;
    int readTimeoutMs = 10000; ///< total, for one call of `read`
    int writeTimeoutMs = 3000; ///< total, for one call of `write`
};

/// Why a port could not be opened. The text is that of the step; drivers with words of their own for a failed
/// open go by `reason`.
class TCommError : public TError
{
public:
    enum class TReason
    {
        PortNotFound,
        InvalidPort,
        PortInUse,
        ConnectFailed,
        SetupFailed ///< opened, but it could not be set up
    };

    TCommError(TReason reason, const char* text) : TError(text), m_reason(reason) {}

    TReason reason() const { return m_reason; }

private:
    TReason m_reason;
};

/// A serial port of the operating system, opened for this process alone. Free of Qt, so that the form for the
/// other operating system can be built where Qt is not to be had for it. One thread uses it; only `interrupt`
/// may be called from another one.
class CommPort
{
public:
    CommPort();
    /// Closes.
    ~CommPort();
    CommPort(const CommPort&) = delete;
    CommPort& operator=(const CommPort&) = delete;

    /// Opens a port by its system name ("COM3", "ttyUSB0") or, where ports have paths, an absolute path, sets
    /// it up and purges both directions. Throws TCommError with "Port not found", "Invalid port", "Port
    /// already in use", "Connect failed", "SetupComm failed", "GetCommState failed", "SetCommState failed",
    /// "GetCommTimeouts failed", "SetCommTimeouts failed" or "PurgeComm failed"; the port is closed then.
    void open(const std::string& name, const TCommSettings& settings);
    bool isOpen() const;
    void close();

    /// Waits until `size` bytes have come, the read time-out is over or the port is interrupted. Returns the
    /// bytes stored in `data`, or -1 if the port has failed and none were left.
    int read(char* data, int size);
    /// The next byte, or -1. Cheap: bytes are fetched from the system in bulk.
    int readByte() { return m_next < m_end || fill() ? static_cast<unsigned char>(m_input[m_next++]) : -1; }
    /// The same with a time-out of its own; below 0 counts as 0.
    int readByteWithin(int timeoutMs)
    {
        return m_next < m_end || fillWithin(timeoutMs) ? static_cast<unsigned char>(m_input[m_next++]) : -1;
    }
    /// False unless all bytes went out within the write time-out.
    bool write(const char* data, int size);

    bool purgeInput();
    bool purgeOutput();

    /// Ends a waiting read or write at once, and every later one that would wait, until the port is opened
    /// again; bytes already fetched and a write that fits at once still go. Any thread.
    void interrupt();
    bool isInterrupted() const;
    /// Ends an interruption, for last words to the device: what follows may wait again, within these times.
    /// For the thread that uses the port.
    void resume(int readTimeoutMs, int writeTimeoutMs);

private:
    class TSystem;

    /// Waits for at least one byte; false at the time-out, an interruption or a failure.
    bool fill();
    bool fillWithin(int timeoutMs);

    std::unique_ptr<TSystem> m_system;
    TCommSettings m_settings;
    // Bytes fetched and not yet taken: [m_next, m_end) of m_input.
    std::vector<char> m_input;
    std::size_t m_next = 0;
    std::size_t m_end = 0;
    bool m_failed = false;
};
