#pragma once

#include "analysis/signals/FirSum.h"
#include "analysis/signals/TBlockProcessor.h"

/// A recursion y[i] = sum of b[k] x[i - k] + sum of a[k] y[i - k].
struct TIirCoefficients
{
    std::vector<double> b; ///< from b[0] on
    std::vector<double> a; ///< from a[1] on; as many as the order of the filter
};

/// A recursive filter of a stored signal, truncated and clamped to 16 bits. Each block is computed for
/// itself: the recursion starts from rest `margin` samples before the block, which has to be long enough for
/// it to settle. Run forward and backward it has no phase, and its gain is squared.
class TIirBlockFilter : public TBlockProcessor
{
public:
    /// `margin` in samples; `passes` of at least 1, each forward and, if asked for, backward.
    TIirBlockFilter(const TIirCoefficients& coefficients, int margin, bool forwardBackward, int passes = 1);

    void process(TSignalWindow& window, short* out) override;

    int order() const { return m_order; }
    int margin() const { return m_margin; }

private:
    void runForward(int blockSize);
    void runBackward(int blockSize);

    int m_order;
    int m_margin;
    bool m_forwardBackward;
    int m_passes;
    std::vector<fir::TTap> m_forwardTaps;
    std::vector<fir::TTap> m_backwardTaps;
    std::vector<double> m_recursion;
    // Offset k from the start of the block lies at index order + margin + k.
    std::vector<double> m_work;
    std::vector<double> m_result;
};
