#pragma once

#include "analysis/filters/TFft.h"
#include "analysis/signals/TFrameBuffer.h"
#include "analysis/signals/TStreamProcessor.h"

/// Takes the wandering of the baseline out of a live signal: of each stretch of 1024 samples the spectrum
/// loses its lowest frequencies, and 64 samples of its middle go to the sink, truncated and clamped to 16
/// bits. The output is in step with the source; the sample for a position needs the source up to 544 samples
/// further.
class TFftBaselineStream : public TStreamProcessor
{
public:
    TFftBaselineStream();

    /// What lies before `position` reads 0 for the first 64 samples of the output.
    void attach(TSignal* source, int position) override;
    void run() override;

private:
    void filter(int channel, double* out);

    TFft m_fft;
    /// Where the next stretch is filled from: its middle at the start, its beginning from then on.
    int m_fillFrom;
    std::vector<double> m_real;
    std::vector<double> m_imaginary;
    TFrameBuffer m_output;
};
