#pragma once

#include <initializer_list>
#include <vector>

/// A small vector of doubles for building filters and averaging complexes. Copies are deep.
class TDoubleVector
{
public:
    /// `size` zeros; a negative size counts as 0.
    explicit TDoubleVector(int size = 0);
    TDoubleVector(const double* values, int size);
    TDoubleVector(std::initializer_list<double> values) : m_values(values) {}

    int size() const { return static_cast<int>(m_values.size()); }
    double* data() { return m_values.data(); }
    const double* data() const { return m_values.data(); }
    /// Only for an index in range.
    double& operator[](int index) { return m_values[index]; }
    double operator[](int index) const { return m_values[index]; }
    const std::vector<double>& values() const { return m_values; }

    TDoubleVector scaled(double factor) const;
    /// As long as the longer of the two; the shorter one counts as 0 beyond its end.
    TDoubleVector sum(const TDoubleVector& other) const;
    /// Full linear convolution, of length n + m - 1; empty if either is.
    TDoubleVector convolved(const TDoubleVector& other) const;
    /// Moved by `k` places toward higher indices, or toward lower ones if negative; zeros move in.
    TDoubleVector shifted(int k) const;
    /// A zero between each two samples: length 2n - 1.
    TDoubleVector stretched() const;
    /// 0 for an empty vector.
    double mean() const;
    /// Means of `k` in a row, n / k of them; `k` below 1 counts as 1.
    TDoubleVector decimatedMean(int k) const;

private:
    std::vector<double> m_values;
};
