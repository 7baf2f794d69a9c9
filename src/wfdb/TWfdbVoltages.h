#pragma once

#include "wfdb/TWfdbRecord.h"

#include <vector>

/// Some signals of a record as an endless stream of millivolts: the first sample for a while before the
/// record begins, the record, and its last sample for ever. Values stay within the range given; where the
/// recording has none, the sample before is held: a step to 0 and back would look like two beats, a straight
/// line looks like the lost contact that it is. A signal that has no sample at all is 0.
class TWfdbVoltages
{
public:
    /// `record` is borrowed. `lead` samples come before its first one; `range` in millivolts.
    TWfdbVoltages(const TWfdbRecord& record, const std::vector<int>& signalPlaces, qint64 lead, double range);

    int signalCount() const { return static_cast<int>(m_signals.size()); }
    /// The next `count` samples, into one array per signal.
    void read(int count, double* const* out);

private:
    struct TSource
    {
        int place;   ///< in the record
        double last; ///< the last value that was there
    };

    void readRecord(qint64 first, int count);
    void findFirstValues();
    double value(const TSource& source, short sample) const;

    const TWfdbRecord& m_record;
    std::vector<TSource> m_signals;
    double m_range;
    /// Of the next sample, in the record; negative before it.
    qint64 m_position;
    std::vector<std::vector<short>> m_samples;
};
