#include "analysis/signals/TDoubleVector.h"

#include <algorithm>
#include <numeric>

TDoubleVector::TDoubleVector(int size) : m_values(std::max(size, 0)) {}

TDoubleVector::TDoubleVector(const double* values, int size) : m_values(values, values + std::max(size, 0)) {}

TDoubleVector TDoubleVector::scaled(double factor) const
{
    TDoubleVector result(*this);
    for (double& value : result.m_values)
        value *= factor;
    return result;
}

TDoubleVector TDoubleVector::sum(const TDoubleVector& other) const
{
    TDoubleVector result(std::max(size(), other.size()));
    std::copy(m_values.begin(), m_values.end(), result.m_values.begin());
    for (int i = 0; i < other.size(); ++i)
        result[i] += other[i];
    return result;
}

TDoubleVector TDoubleVector::convolved(const TDoubleVector& other) const
{
    if (size() == 0 || other.size() == 0)
        return TDoubleVector();
    TDoubleVector result(size() + other.size() - 1);
    for (int i = 0; i < size(); ++i) {
        for (int j = 0; j < other.size(); ++j)
            result[i + j] += m_values[i] * other[j];
    }
    return result;
}

TDoubleVector TDoubleVector::shifted(int k) const
{
    TDoubleVector result(size());
    const int distance = std::clamp(k, -size(), size());
    const int from = std::max(-distance, 0);
    const int to = std::min(size() - distance, size());
    std::copy(m_values.begin() + from, m_values.begin() + to, result.m_values.begin() + from + distance);
    return result;
}

TDoubleVector TDoubleVector::stretched() const
{
    TDoubleVector result(2 * size() - 1);
    for (int i = 0; i < size(); ++i)
        result[2 * i] = m_values[i];
    return result;
}

double TDoubleVector::mean() const
{
    return m_values.empty() ? 0.0 : std::accumulate(m_values.begin(), m_values.end(), 0.0) / size();
}

TDoubleVector TDoubleVector::decimatedMean(int k) const
{
    const int step = std::max(k, 1);
    TDoubleVector result(size() / step);
    for (int i = 0; i < result.size(); ++i) {
        const auto from = m_values.begin() + i * step;
        result[i] = std::accumulate(from, from + step, 0.0) / step;
    }
    return result;
}
