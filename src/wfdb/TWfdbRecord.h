#pragma once

#include "wfdb/TWfdbHeader.h"
#include "wfdb/TWfdbSignalFile.h"

#include <memory>
#include <vector>

/// A WFDB record that is open for reading. Samples are read from the files piece by piece, so that a record
/// may be of any length. One thread at a time.
class TWfdbRecord
{
public:
    /// Opens RECORD.hea and the signal files beside it; `path` with or without ".hea". Throws TError "Cannot
    /// read WFDB header" or "Cannot read WFDB signal file".
    explicit TWfdbRecord(const QString& path);

    const TWfdbHeader& header() const { return m_header; }
    int signalCount() const { return static_cast<int>(m_header.channels.size()); }
    /// Samples of each signal: those that the header tells, or fewer if a file is shorter.
    qint64 sampleCount() const { return m_sampleCount; }
    /// Samples in ADC units of all signals, `count` from `first` on into one array per signal.
    /// `TWfdbSignalFile::missing` out of range and where the recording has none.
    void read(qint64 first, int count, short* const* out) const;
    /// Millivolts; 0 out of range and where the recording has none.
    double millivolts(int signal, qint64 index) const;

private:
    /// Neighbouring lines of the header that name one file: their samples take turns in it.
    struct TGroup
    {
        int firstSignal;
        std::unique_ptr<TWfdbSignalFile> file;
    };

    void openGroups(const QString& folder);
    int groupEnd(int firstSignal) const;
    const std::vector<short>& cachedFrames(qint64 block) const;

    static constexpr int cachedFrameCount = 4096;

    TWfdbHeader m_header;
    std::vector<TGroup> m_groups;
    qint64 m_sampleCount = 0;
    /// What `millivolts` read last, one signal behind the other.
    mutable std::vector<short> m_cache;
    mutable qint64 m_cachedBlock = -1;
};
