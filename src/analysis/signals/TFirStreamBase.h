#pragma once

#include "analysis/signals/FirSum.h"
#include "analysis/signals/TFrameBuffer.h"
#include "analysis/signals/TStreamProcessor.h"

/// Convolution of every channel with the same coefficients. Subclasses say in which form the sink gets it.
class TFirStreamBase : public TStreamProcessor
{
public:
    void run() override;

    /// Samples by which the output runs ahead of a causal filter: the output for a position needs the source
    /// up to `position` + `delay()`.
    int delay() const { return m_delay; }

protected:
    /// `delay` in samples, not below 0. The output at p is the sum of h[n - 1 - i] * x[p + 1 + delay - n + i]
    /// over 0 <= i < n: a symmetric filter of n taps with a delay of n / 2 stays in step with its source.
    TFirStreamBase(const std::vector<double>& coefficients, int delay);

    virtual void give(TFrameBuffer& frames) = 0;

private:
    void convolve(int channel, int frames, double* out);

    std::vector<fir::TTap> m_taps;
    int m_delay;
    std::vector<double> m_input;
    TFrameBuffer m_output;
};
