#include "analysis/filters/TIirBlockFilter.h"

#include "analysis/filters/WindowSamples.h"
#include "analysis/signals/TSignalWindow.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>

namespace {

/// Adds the sum of a[k] y[i - k * step] to `count` values from `y` on, in the direction of `step`. The term
/// of the newest value comes last: it is the one that all the others would have to wait for.
template <int order, int step> void recurse(const double* a, double* y, int count)
{
    double coefficients[order];
    double past[order];
    for (int k = 0; k < order; ++k) {
        coefficients[k] = a[k];
        past[k] = y[-(k + 1) * step];
    }
    for (; count > 0; --count, y += step) {
        double sum = *y;
        for (int k = order - 1; k >= 0; --k)
            sum += coefficients[k] * past[k];
        for (int k = order - 1; k > 0; --k)
            past[k] = past[k - 1];
        *y = past[0] = sum;
    }
}

template <int step> void recurse(const std::vector<double>& a, double* y, int count)
{
    switch (a.size()) {
    case 2:
        return recurse<2, step>(a.data(), y, count);
    case 3:
        return recurse<3, step>(a.data(), y, count);
    case 4:
        return recurse<4, step>(a.data(), y, count);
    }
    const int order = static_cast<int>(a.size());
    for (; count > 0; --count, y += step) {
        for (int k = order; k >= 1; --k)
            *y += a[k - 1] * y[-k * step];
    }
}

} // namespace

TIirBlockFilter::TIirBlockFilter(const TIirCoefficients& coefficients, int margin, bool forwardBackward,
                                 int passes)
    : m_order(static_cast<int>(std::max(coefficients.a.size() + 1, coefficients.b.size())) - 1),
      m_margin(std::max(margin, 0)), m_forwardBackward(forwardBackward), m_passes(std::max(passes, 1)),
      m_recursion(coefficients.a)
{
    for (int k = 0; k < static_cast<int>(coefficients.b.size()); ++k) {
        m_forwardTaps.push_back({coefficients.b[k], m_order - k});
        m_backwardTaps.push_back({coefficients.b[k], k});
    }
}

void TIirBlockFilter::process(TSignalWindow& window, short* out)
{
    const int blockSize = window.blockSize();
    const int pad = m_order + m_margin;
    m_work.assign(static_cast<std::size_t>(blockSize) + 2 * pad + fir::padding, 0.0);
    // The order's samples before the margin as well: the first sums see the true signal.
    velantor::readWindow(window, -pad, blockSize + pad + m_margin, m_work.data());
    for (int pass = 0; pass < m_passes; ++pass) {
        runForward(blockSize);
        if (m_forwardBackward)
            runBackward(blockSize);
    }
    std::transform(m_work.begin() + pad, m_work.begin() + pad + blockSize, out, velantor::truncated<short>);
}

/// Over all of the block and both margins.
void TIirBlockFilter::runForward(int blockSize)
{
    const int count = blockSize + 2 * m_margin;
    m_result.assign(m_work.size(), 0.0);
    fir::sum(m_forwardTaps, m_work.data(), count, m_result.data() + m_order);
    recurse<1>(m_recursion, m_result.data() + m_order, count);
    m_work.swap(m_result);
}

/// From the end of the later margin down to the start of the block.
void TIirBlockFilter::runBackward(int blockSize)
{
    const int start = m_order + m_margin;
    const int count = blockSize + m_margin;
    m_result.assign(m_work.size(), 0.0);
    fir::sum(m_backwardTaps, m_work.data() + start, count, m_result.data() + start);
    recurse<-1>(m_recursion, m_result.data() + start + count - 1, count);
    m_work.swap(m_result);
}
