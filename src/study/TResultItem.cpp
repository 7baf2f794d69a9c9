#include "study/TResultItem.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

double atOrZero(const std::vector<double>& values, int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < values.size()
               ? values[static_cast<std::size_t>(index)]
               : 0.0;
}

} // namespace

double TResultList::value(int index) const
{
    return atOrZero(m_values, index);
}

void TResultList::setValue(int index, double value)
{
    if (index < 0 || index >= maxCount)
        return;
    if (index >= count())
        m_values.resize(static_cast<std::size_t>(index) + 1, 0.0);
    m_values[static_cast<std::size_t>(index)] = value;
}

void TResultList::setValues(std::vector<double> values)
{
    m_values = std::move(values);
    if (count() > maxCount)
        m_values.resize(maxCount);
}

double TResultList::maxValue() const
{
    return m_values.empty() ? 0.0 : *std::max_element(m_values.begin(), m_values.end());
}

void TResultTrend::add(double time, double value)
{
    if (!std::isfinite(time) || !std::isfinite(value))
        return;
    const auto place = std::upper_bound(m_times.begin(), m_times.end(), time);
    m_values.insert(m_values.begin() + (place - m_times.begin()), value);
    m_times.insert(place, time);
}

void TResultTrend::setPoints(std::vector<double> times, std::vector<double> values)
{
    const std::size_t count = std::min(times.size(), values.size());
    times.resize(count);
    values.resize(count);
    if (!std::is_sorted(times.begin(), times.end())) {
        std::vector<std::size_t> order(count);
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_sort(order.begin(), order.end(),
                         [&times](std::size_t a, std::size_t b) { return times[a] < times[b]; });
        std::vector<double> sortedTimes(count);
        std::vector<double> sortedValues(count);
        for (std::size_t i = 0; i < count; ++i) {
            sortedTimes[i] = times[order[i]];
            sortedValues[i] = values[order[i]];
        }
        times.swap(sortedTimes);
        values.swap(sortedValues);
    }
    m_times = std::move(times);
    m_values = std::move(values);
}

void TResultTrend::clear()
{
    m_times.clear();
    m_values.clear();
}

double TResultTrend::maxValue() const
{
    return m_values.empty() ? 0.0 : std::max(0.0, *std::max_element(m_values.begin(), m_values.end()));
}

double TResultTrend::valueAt(double time) const
{
    if (m_times.empty())
        return 0.0;
    const auto after = std::upper_bound(m_times.begin(), m_times.end(), time);
    if (after == m_times.begin())
        return m_values.front();
    const auto before = after - 1;
    const bool laterIsNearer = after != m_times.end() && *after - time < time - *before;
    return m_values[static_cast<std::size_t>((laterIsNearer ? after : before) - m_times.begin())];
}

double TResultTrend::timeAt(int index) const
{
    return atOrZero(m_times, index);
}

double TResultTrend::valueAtIndex(int index) const
{
    return atOrZero(m_values, index);
}
