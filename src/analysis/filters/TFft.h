#pragma once

#include <vector>

/// Fast Fourier transform of complex numbers, radix 2, in place, unscaled in both directions: forward and
/// back multiplies by the size. (J. W. Cooley, J. W. Tukey, Mathematics of Computation 19, 1965, 297-301.)
class TFft
{
public:
    /// `size` is rounded up to a power of two.
    explicit TFft(int size);

    int size() const { return m_size; }

    /// Arrays of `size` numbers. Bin k holds the frequency k / size of the sampling rate.
    void forward(double* real, double* imaginary) const;
    void inverse(double* real, double* imaginary) const;

private:
    void reorder(double* real, double* imaginary) const;

    int m_size;
    std::vector<int> m_reversed;
    /// e^(-2 pi i k / length) of each stage, one stage behind the other: of 2, 4, 8, ...
    std::vector<double> m_cosines;
    std::vector<double> m_sines;
};
