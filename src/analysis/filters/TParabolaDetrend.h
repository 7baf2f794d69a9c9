#pragma once

#include "analysis/signals/TBlockProcessor.h"

/// Subtracts a parabola over the sample index from a channel: the slow drift of a whole recording.
class TParabolaDetrend : public TBlockProcessor
{
public:
    struct TPoint
    {
        double x; ///< absolute sample index
        double y; ///< counts
    };

    /// The parabola goes through the points. If two of them have the same index, it is the constant
    /// `first.y`.
    TParabolaDetrend(TPoint first, TPoint second, TPoint third);

    /// Truncated and clamped to 16 bits; samples past the end of the signal are 0.
    void process(TSignalWindow& window, short* out) override;

    double valueAt(double x) const { return (m_a * x + m_b) * x + m_c; }

private:
    double m_a = 0.0;
    double m_b = 0.0;
    double m_c = 0.0;
};
