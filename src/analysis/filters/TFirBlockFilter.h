#pragma once

#include "analysis/signals/FirSum.h"
#include "analysis/signals/TBlockProcessor.h"

/// A FIR filter of a stored signal, truncated and clamped to 16 bits.
class TFirBlockFilter : public TBlockProcessor
{
public:
    /// The output at p is the sum of h[i] * x[p + delay - i]: a symmetric filter with a delay of half its
    /// length stays in step with its source. Without coefficients the output is 0.
    TFirBlockFilter(const std::vector<double>& coefficients, int delay);

    void process(TSignalWindow& window, short* out) override;

private:
    int m_delay;
    std::vector<fir::TTap> m_taps;
    std::vector<double> m_input;
    std::vector<double> m_output;
};
