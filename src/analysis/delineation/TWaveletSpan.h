#pragma once

#include <array>
#include <vector>

/// The wavelet transform of one channel over [`begin()`, `end()`), at four scales. Scales are numbered from
/// 1, positions are sample indices of the analysis signal; a value outside the span is 0.
class TWaveletSpan
{
public:
    static constexpr int scaleCount = 4;

    TWaveletSpan() = default;
    /// Zeros over [`begin`, `end`).
    TWaveletSpan(int begin, int end) { reset(begin, end); }

    void reset(int begin, int end);
    int begin() const { return m_begin; }
    int end() const { return m_begin + m_length; }
    int size() const { return m_length; }
    /// `size()` values of a scale, to be written by who fills the span.
    double* data(int scale) { return m_values[scale - 1].data(); }
    const double* data(int scale) const { return m_values[scale - 1].data(); }

    double value(int scale, int i) const
    {
        const unsigned place = static_cast<unsigned>(i - m_begin);
        return place < static_cast<unsigned>(m_length) ? m_values[scale - 1][place] : 0.0;
    }
    /// Greater, or smaller, than both values at a distance of `lag`; never where one of them is outside.
    bool isExtreme(int scale, int i, int lag) const
    {
        if (i - lag < m_begin || i + lag >= end())
            return false;
        const double* const values = data(scale) + (i - m_begin);
        const double x = values[0], before = values[-lag], after = values[lag];
        return (x > before && x > after) || (x < before && x < after);
    }

private:
    int m_begin = 0;
    int m_length = 0;
    std::array<std::vector<double>, scaleCount> m_values;
};

/// The detection thresholds of the four scales, in counts of the wavelet transform.
struct TWaveletThresholds
{
    std::array<double, TWaveletSpan::scaleCount> values{};

    double operator[](int scale) const { return values[scale - 1]; }
    TWaveletThresholds scaled(double factor) const
    {
        TWaveletThresholds result = *this;
        for (double& value : result.values)
            value *= factor;
        return result;
    }
};
