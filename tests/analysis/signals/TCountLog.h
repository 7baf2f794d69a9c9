#pragma once

#include "analysis/signals/TSignal.h"

#include <tuple>
#include <vector>

/// What a listener of a signal sees of it each time it is told: its own name and the signal's counts of
/// samples and blocks. Several listeners may share one log.
class TCountLog : public TSignalListener
{
public:
    using TCalls = std::vector<std::tuple<int, int, int>>;

    TCountLog(TSignal& signal, int name, TCalls& calls) : m_signal(signal), m_name(name), m_calls(calls)
    {
        signal.addListener(this);
    }
    ~TCountLog() override { m_signal.removeListener(this); }
    TCountLog(const TCountLog&) = delete;
    TCountLog& operator=(const TCountLog&) = delete;

    void signalChanged() override
    {
        m_calls.emplace_back(m_name, m_signal.sampleCount(), m_signal.blockCount());
    }

private:
    TSignal& m_signal;
    int m_name;
    TCalls& m_calls;
};
