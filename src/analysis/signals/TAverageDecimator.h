#pragma once

#include "analysis/signals/TFrameBuffer.h"
#include "analysis/signals/TStreamProcessor.h"

/// Lowers the rate by a whole factor: each output sample is the truncated mean of `factor` samples in a row.
class TAverageDecimator : public TStreamProcessor
{
public:
    /// `factor` is kept within 1 to 4096.
    explicit TAverageDecimator(int factor);

    void run() override;

private:
    void average(int channel, int frames, double* out);

    int m_factor;
    std::vector<double> m_input;
    TFrameBuffer m_output;
};
