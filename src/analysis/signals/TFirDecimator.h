#pragma once

#include "analysis/signals/FirSum.h"
#include "analysis/signals/TFrameBuffer.h"
#include "analysis/signals/TStreamProcessor.h"

/// Low-pass and decimation in one: only the samples that stay are computed. The output is in step with the
/// source, at the same instant; what lies before the start reads 0.
class TFirDecimator : public TStreamProcessor
{
public:
    /// The output for a position is the sum of h[i] * x[position + n / 2 - i], truncated and clamped to 16
    /// bits. `decimation` is kept within 1 to 4096; with 1 the samples pass as they are.
    TFirDecimator(const std::vector<double>& coefficients, int decimation);

    void run() override;

    /// Half the filter's length, in samples of the source.
    int delay() const { return m_delay; }

private:
    int framesToCome() const;
    void filter(int channel, int frames, double* out);

    int m_length;
    int m_delay;
    int m_decimation;
    int m_maxFrames;
    /// Samples of one phase: every `decimation`-th of the input, side by side so that sums run over
    /// neighbours.
    int m_phaseLength;
    std::vector<fir::TTap> m_taps;
    std::vector<double> m_input;
    std::vector<double> m_phases;
    TFrameBuffer m_output;
};
