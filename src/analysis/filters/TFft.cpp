#include "analysis/filters/TFft.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <utility>

TFft::TFft(int size)
    : m_size(static_cast<int>(std::bit_ceil(static_cast<unsigned>(std::max(size, 1))))), m_reversed(m_size)
{
    for (int i = 1; i < m_size; ++i)
        m_reversed[i] = m_reversed[i / 2] / 2 + (i % 2 != 0 ? m_size / 2 : 0);
    for (int half = 1; half < m_size; half *= 2) {
        for (int k = 0; k < half; ++k) {
            const double angle = std::numbers::pi * k / half;
            m_cosines.push_back(std::cos(angle));
            m_sines.push_back(-std::sin(angle));
        }
    }
}

void TFft::reorder(double* real, double* imaginary) const
{
    for (int i = 0; i < m_size; ++i) {
        if (i < m_reversed[i]) {
            std::swap(real[i], real[m_reversed[i]]);
            std::swap(imaginary[i], imaginary[m_reversed[i]]);
        }
    }
}

void TFft::forward(double* real, double* imaginary) const
{
    reorder(real, imaginary);
    const double* cosines = m_cosines.data();
    const double* sines = m_sines.data();
    for (int half = 1; half < m_size; cosines += half, sines += half, half *= 2) {
        for (int start = 0; start < m_size; start += 2 * half) {
            double* const lowReal = real + start;
            double* const lowImaginary = imaginary + start;
            double* const highReal = lowReal + half;
            double* const highImaginary = lowImaginary + half;
            for (int k = 0; k < half; ++k) {
                const double turnedReal = highReal[k] * cosines[k] - highImaginary[k] * sines[k];
                const double turnedImaginary = highReal[k] * sines[k] + highImaginary[k] * cosines[k];
                highReal[k] = lowReal[k] - turnedReal;
                highImaginary[k] = lowImaginary[k] - turnedImaginary;
                lowReal[k] += turnedReal;
                lowImaginary[k] += turnedImaginary;
            }
        }
    }
}

void TFft::inverse(double* real, double* imaginary) const
{
    // Real and imaginary parts change places before and after.
    forward(imaginary, real);
}
