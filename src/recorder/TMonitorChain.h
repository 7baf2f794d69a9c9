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

    void reduce() { m_decimator.run(); }
    void filter() { m_filters.update(); }

private:
    TInt16Signal m_monitorSignal;
    TFirDecimator m_decimator;
    TRealtimeFilterChain m_filters;
};
