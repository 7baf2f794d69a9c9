#ifdef _WIN32

#include "platform/CommPortSystem.h"

#include <algorithm>
#include <atomic>
#include <cstdio>

#include <windows.h>

namespace {

/// What a write may take once the port is interrupted: a byte to a device that listens goes out in far less.
constexpr DWORD writeGraceMs = 50;

/// A handle that is closed with its owner.
class THandle
{
public:
    explicit THandle(HANDLE handle = INVALID_HANDLE_VALUE) : m_handle(handle) {}
    ~THandle() { reset(); }
    THandle(const THandle&) = delete;
    THandle& operator=(const THandle&) = delete;

    HANDLE get() const { return m_handle; }
    bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE && m_handle != nullptr; }
    void reset(HANDLE handle = INVALID_HANDLE_VALUE)
    {
        if (isOpen())
            ::CloseHandle(m_handle);
        m_handle = handle;
    }

private:
    HANDLE m_handle;
};

TCommError openError(DWORD error)
{
    using TReason = TCommError::TReason;
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
        return {TReason::PortNotFound, "Port not found"};
    case ERROR_INVALID_NAME:
        return {TReason::InvalidPort, "Invalid port"};
    case ERROR_ACCESS_DENIED:
        return {TReason::PortInUse, "Port already in use"};
    default:
        return {TReason::ConnectFailed, "Connect failed"};
    }
}

void require(BOOL done, const char* text)
{
    if (!done)
        throw TCommError(TCommError::TReason::SetupFailed, text);
}

void setUpState(HANDLE port, const TCommSettings& settings)
{
    DCB state{};
    state.DCBlength = sizeof state;
    require(::GetCommState(port, &state), "GetCommState failed");
    state.BaudRate = static_cast<DWORD>(settings.baud);
    state.ByteSize = static_cast<BYTE>(settings.dataBits);
    state.StopBits = settings.stopBits == 2 ? TWOSTOPBITS : ONESTOPBIT;
    state.fOutX = FALSE;
    state.fInX = FALSE;
    if (settings.flowControl == TCommSettings::TFlowControl::None) {
        state.fOutxCtsFlow = FALSE;
        state.fOutxDsrFlow = FALSE;
        state.fDsrSensitivity = FALSE;
        state.fDtrControl = DTR_CONTROL_DISABLE;
        state.fRtsControl = RTS_CONTROL_DISABLE;
    }
    require(::SetCommState(port, &state), "SetCommState failed");
}

void setUpTimeouts(HANDLE port, const TCommSettings& settings)
{
    COMMTIMEOUTS timeouts{};
    require(::GetCommTimeouts(port, &timeouts), "GetCommTimeouts failed");
    timeouts.ReadTotalTimeoutMultiplier = 0;
    timeouts.ReadTotalTimeoutConstant = static_cast<DWORD>(settings.readTimeoutMs);
    timeouts.WriteTotalTimeoutMultiplier = 0;
    timeouts.WriteTotalTimeoutConstant = static_cast<DWORD>(settings.writeTimeoutMs);
    require(::SetCommTimeouts(port, &timeouts), "SetCommTimeouts failed");
}

void setUp(HANDLE port, const TCommSettings& settings)
{
    require(::SetupComm(port, static_cast<DWORD>(settings.inputQueueBytes),
                        static_cast<DWORD>(settings.outputQueueBytes)),
            "SetupComm failed");
    setUpState(port, settings);
    setUpTimeouts(port, settings);
    require(::PurgeComm(port, PURGE_RXCLEAR | PURGE_TXCLEAR), "PurgeComm failed");
}

} // namespace

struct CommPort::TSystem::TState
{
    THandle port;
    /// Signalled once the port is interrupted.
    THandle wake{::CreateEventA(nullptr, TRUE, FALSE, nullptr)};
    THandle done{::CreateEventA(nullptr, TRUE, FALSE, nullptr)};
    std::atomic<bool> interrupted = false;
    /// Keeps flag and event in step. Not std::mutex, which not every form of this compiler has.
    SRWLOCK interruption = SRWLOCK_INIT;

    void interrupt();
    void clearInterruption();
    /// Waits for an operation that was begun, and takes it back if it is not over in time. The bytes
    /// transferred, -1 if the port has failed. An interruption leaves it `graceMs` of the time.
    int finish(OVERLAPPED& operation, BOOL begunAndDone, DWORD timeoutMs, DWORD graceMs);
};

void CommPort::TSystem::TState::interrupt()
{
    ::AcquireSRWLockExclusive(&interruption);
    interrupted = true;
    ::SetEvent(wake.get());
    ::ReleaseSRWLockExclusive(&interruption);
}

void CommPort::TSystem::TState::clearInterruption()
{
    ::AcquireSRWLockExclusive(&interruption);
    ::ResetEvent(wake.get());
    interrupted = false;
    ::ReleaseSRWLockExclusive(&interruption);
}

int CommPort::TSystem::TState::finish(OVERLAPPED& operation, BOOL begunAndDone, DWORD timeoutMs,
                                      DWORD graceMs)
{
    if (!begunAndDone && ::GetLastError() != ERROR_IO_PENDING)
        return -1;
    const HANDLE events[] = {operation.hEvent, wake.get()};
    DWORD result = ::WaitForMultipleObjects(2, events, FALSE, timeoutMs);
    if (result == WAIT_OBJECT_0 + 1)
        result = ::WaitForSingleObject(operation.hEvent, std::min(timeoutMs, graceMs));
    if (result != WAIT_OBJECT_0)
        ::CancelIoEx(port.get(), &operation);
    DWORD transferred = 0;
    if (!::GetOverlappedResult(port.get(), &operation, &transferred, TRUE) &&
        ::GetLastError() != ERROR_OPERATION_ABORTED)
        return -1;
    return static_cast<int>(transferred);
}

CommPort::TSystem::TSystem() : m_state(std::make_unique<TState>()) {}

CommPort::TSystem::~TSystem() = default;

void CommPort::TSystem::open(const std::string& name, const TCommSettings& settings)
{
    if (!m_state->wake.isOpen() || !m_state->done.isOpen()) // Nothing could be waited for.
        throw TCommError(TCommError::TReason::ConnectFailed, "Connect failed");
    m_state->clearInterruption();
    char path[16];
    std::snprintf(path, sizeof path, "\\\\.\\%.8s", name.c_str());
    m_state->port.reset(::CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_OVERLAPPED, nullptr));
    if (!m_state->port.isOpen())
        throw openError(::GetLastError());
    try {
        setUp(m_state->port.get(), settings);
    } catch (const TCommError&) {
        close();
        throw;
    }
}

bool CommPort::TSystem::isOpen() const
{
    return m_state->port.isOpen();
}

void CommPort::TSystem::close()
{
    m_state->port.reset();
}

int CommPort::TSystem::read(char* data, int size, int timeoutMs)
{
    DWORD errors = 0;
    COMSTAT status{};
    if (!isOpen() || !::ClearCommError(m_state->port.get(), &errors, &status))
        return -1;
    // What is there, or else the next byte: the driver would wait for all that it is asked for.
    const int wanted = std::clamp(static_cast<int>(status.cbInQue), 1, size);
    OVERLAPPED operation{};
    operation.hEvent = m_state->done.get();
    const BOOL done = ::ReadFile(m_state->port.get(), data, static_cast<DWORD>(wanted), nullptr, &operation);
    return m_state->finish(operation, done, static_cast<DWORD>(timeoutMs), 0);
}

bool CommPort::TSystem::write(const char* data, int size, int timeoutMs)
{
    if (!isOpen())
        return false;
    OVERLAPPED operation{};
    operation.hEvent = m_state->done.get();
    const BOOL done = ::WriteFile(m_state->port.get(), data, static_cast<DWORD>(size), nullptr, &operation);
    return m_state->finish(operation, done, static_cast<DWORD>(timeoutMs), writeGraceMs) == size;
}

bool CommPort::TSystem::purgeInput()
{
    return isOpen() && ::PurgeComm(m_state->port.get(), PURGE_RXCLEAR);
}

bool CommPort::TSystem::purgeOutput()
{
    return isOpen() && ::PurgeComm(m_state->port.get(), PURGE_TXCLEAR);
}

void CommPort::TSystem::interrupt()
{
    m_state->interrupt();
}

bool CommPort::TSystem::isInterrupted() const
{
    return m_state->interrupted;
}

void CommPort::TSystem::resume()
{
    m_state->clearInterruption();
}

#endif // _WIN32
