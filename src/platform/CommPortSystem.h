#pragma once

#include "platform/CommPort.h"

/// The system's side of a port. Each operating system has a source of its own that defines it.
class CommPort::TSystem
{
public:
    TSystem();
    ~TSystem();

    void open(const std::string& name, const TCommSettings& settings);
    bool isOpen() const;
    void close();

    /// Waits up to `timeoutMs` for bytes and takes those that are there, at most `size`. 0 at the time-out or
    /// an interruption, -1 if the port has failed.
    int read(char* data, int size, int timeoutMs);
    bool write(const char* data, int size, int timeoutMs);
    bool purgeInput();
    bool purgeOutput();
    void interrupt();
    bool isInterrupted() const;
    void resume();

private:
    struct TState;
    std::unique_ptr<TState> m_state;
};
