#pragma once

#include "analysis/filters/TIirBlockFilter.h"
#include "analysis/signals/TSignalWindow.h"

#include <map>

/// The recursive block filter by its definition: every value under its offset, 0 where there is none.
class TNaiveIir
{
public:
    TNaiveIir(const TIirCoefficients& coefficients, int margin) : m_table(coefficients), m_margin(margin) {}

    /// The filtered block, not yet truncated.
    std::vector<double> block(const TSignalWindow& window, bool backward, int passes) const
    {
        const int n = window.blockSize();
        const int order = static_cast<int>(m_table.a.size());
        TValues values;
        for (int k = -m_margin - order; k < n + m_margin; ++k)
            values[k] = window.sample(k);
        for (int pass = 0; pass < passes; ++pass) {
            values = run(values, -m_margin, n + m_margin - 1, 1);
            if (backward)
                values = run(values, n + m_margin - 1, 0, -1);
        }
        std::vector<double> result;
        for (int k = 0; k < n; ++k)
            result.push_back(values[k]);
        return result;
    }

private:
    using TValues = std::map<int, double>;

    static double at(const TValues& values, int k)
    {
        const auto found = values.find(k);
        return found == values.end() ? 0.0 : found->second;
    }

    TValues run(const TValues& x, int from, int to, int step) const
    {
        TValues y;
        for (int i = from; i != to + step; i += step) {
            double sum = 0.0;
            for (int k = 0; k < static_cast<int>(m_table.b.size()); ++k)
                sum += m_table.b[k] * at(x, i - k * step);
            for (int k = 1; k <= static_cast<int>(m_table.a.size()); ++k)
                sum += m_table.a[k - 1] * at(y, i - k * step);
            y[i] = sum;
        }
        return y;
    }

    TIirCoefficients m_table;
    int m_margin;
};

/// Whether `sample` is the truncated, clamped form of a value that is known but for rounding: with poles as
/// near to 1 as those of the baseline filter, the order of summation alone moves it by 0.0005.
inline bool isTruncated(int sample, double value)
{
    const auto clamped = [](double v) { return static_cast<int>(std::clamp(v, -32768.0, 32767.0)); };
    return sample == clamped(value - 2e-3) || sample == clamped(value + 2e-3);
}
