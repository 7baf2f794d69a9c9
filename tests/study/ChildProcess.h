#pragma once

#include <csignal>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

/// A copy of the test process that runs one function, for what a process suffers only once.
class TChildProcess
{
public:
    /// Exit status when the function threw.
    static constexpr int threw = 99;

    /// The child ends with the function's result.
    template <typename Function> explicit TChildProcess(Function function) : m_id(fork())
    {
        if (m_id == 0)
            _exit(resultOf(function));
    }
    ~TChildProcess() { wait(); }
    TChildProcess(const TChildProcess&) = delete;
    TChildProcess& operator=(const TChildProcess&) = delete;

    bool running()
    {
        if (m_id > 0 && waitpid(m_id, &m_status, WNOHANG) == m_id)
            m_id = 0;
        return m_id > 0;
    }

    void kill() const
    {
        if (m_id > 0)
            ::kill(m_id, SIGKILL);
    }

    /// Waits for the end. The exit status, or -1 if the child was killed.
    int wait()
    {
        if (m_id > 0)
            waitpid(m_id, &m_status, 0);
        m_id = 0;
        return WIFEXITED(m_status) ? WEXITSTATUS(m_status) : -1;
    }

private:
    template <typename Function> static int resultOf(Function& function)
    {
        try {
            return function();
        } catch (...) {
            return threw;
        }
    }

    pid_t m_id;
    int m_status = 0;
};
