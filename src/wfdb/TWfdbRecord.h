#pragma once

#include "wfdb/TWfdbHeader.h"

#include <vector>

/// A WFDB record in memory: its header and the samples of every signal, in ADC units.
class TWfdbRecord
{
public:
    /// Reads RECORD.hea and the signal files beside it; `path` with or without ".hea". Throws TError "Cannot
    /// read WFDB header" or "Cannot read WFDB signal file".
    explicit TWfdbRecord(const QString& path);

    const TWfdbHeader& header() const { return m_header; }
    int signalCount() const { return static_cast<int>(m_samples.size()); }
    /// Samples of each signal.
    qint64 sampleCount() const { return static_cast<qint64>(m_samples.front().size()); }
    /// Millivolts; 0 out of range and where the recording has none.
    double millivolts(int signal, qint64 index) const;

private:
    void readGroup(const QString& folder, const std::vector<int>& group);

    TWfdbHeader m_header;
    std::vector<std::vector<short>> m_samples;
};
