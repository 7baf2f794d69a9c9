#pragma once

#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TFirDecimator.h"
#include "analysis/signals/TInt16Signal.h"

/// The live signal as the screen shows it: at 500 samples per second, through the filters that the user
/// chose. The analysis never reads it.
class TMonitorChain
{
public:
    static constexpr int samplingRate = 500;

    /// `raw` is borrowed. All switches are off.
    explicit TMonitorChain(TSignal& raw);

    /// Builds the filters anew; the signal shown before is gone.
    void setFilters(bool notch, bool muscle, bool baseline);
    /// The signal to show, valid until the next `setFilters`.
    TSignal* signal() const { return m_filters.current(); }
    /// Sample of the raw signal at the instant of a sample of `signal`.
    int rawIndexOf(int sample) const { return (sample + m_filters.startPosition()) * m_decimation; }

    void reduce() { m_decimator.run(); }
    void filter() { m_filters.update(); }

private:
    const int m_decimation;
    TInt16Signal m_monitorSignal;
    TFirDecimator m_decimator;
    TRealtimeFilterChain m_filters;
};
