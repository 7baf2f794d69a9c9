#pragma once

#include <csignal>

#include <sys/resource.h>

/// A disk that takes no more than `bytes` in one file, for the length of a scope.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};
