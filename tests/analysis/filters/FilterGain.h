#pragma once

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

/// Gain of a FIR table at a frequency in Hz.
inline double gainOf(const std::vector<double>& table, int rate, double frequency)
{
    std::complex<double> sum;
    for (std::size_t i = 0; i < table.size(); ++i)
        sum +=
            table[i] * std::polar(1.0, -2.0 * std::numbers::pi * frequency / rate * static_cast<double>(i));
    return std::abs(sum);
}
