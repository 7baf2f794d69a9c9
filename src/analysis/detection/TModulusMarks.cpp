#include "analysis/detection/TModulusMarks.h"

#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int coarsest = 4;
constexpr int middle = 3;
constexpr int finest = 2;

int signOf(double x)
{
    return (x > 0.0) - (x < 0.0);
}

bool isBefore(const TModulusMarks::TMark& mark, int position)
{
    return mark.position < position;
}

} // namespace

void TModulusMarks::enter(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds, int from, int to)
{
    for (int i = from; i < to; ++i) {
        if (std::abs(wavelet.value(coarsest, i)) >= thresholds[coarsest] && wavelet.isExtreme(coarsest, i, 2))
            followToFiner(wavelet, thresholds, i);
    }
}

void TModulusMarks::followToFiner(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds, int i)
{
    const int reach = velantor::truncated<int>(searchWindow * m_rate);
    const int sign = signOf(wavelet.value(coarsest, i));
    for (int j = i - reach; j <= i + reach; ++j) {
        const double value = wavelet.value(middle, j);
        if (signOf(value) == sign && std::abs(value) >= thresholds[middle] &&
            (wavelet.isExtreme(middle, j, 2) || wavelet.isExtreme(middle, j, 3)))
            followToFinest(wavelet, thresholds, j, sign);
    }
}

void TModulusMarks::followToFinest(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds, int j,
                                   int sign)
{
    const int reach = velantor::truncated<int>(searchWindow * m_rate);
    for (int k = j - reach; k <= j + reach; ++k) {
        const double value = wavelet.value(finest, k);
        if (sign != 0 && signOf(value) == sign && std::abs(value) >= thresholds[finest] &&
            (wavelet.isExtreme(finest, k, 2) || wavelet.isExtreme(finest, k, 3) ||
             wavelet.isExtreme(finest, k, 4)))
            insert({k, sign, std::abs(value)});
    }
}

void TModulusMarks::insert(TMark mark)
{
    const auto place = std::lower_bound(m_marks.begin(), m_marks.end(), mark.position, isBefore);
    if (place == m_marks.end() || place->position != mark.position)
        m_marks.insert(place, mark);
}

void TModulusMarks::judge(int limit)
{
    clearIsolated(limit);
    clearRedundant(limit);
}

bool TModulusMarks::hasPartner(std::size_t index) const
{
    const TMark& mark = m_marks[index];
    const double reach = pairWindow * m_rate;
    for (std::size_t i = index; i-- > 0 && mark.position - m_marks[i].position <= reach;) {
        if (m_marks[i].sign != mark.sign)
            return true;
    }
    for (std::size_t i = index + 1; i < m_marks.size() && m_marks[i].position - mark.position <= reach; ++i) {
        if (m_marks[i].sign != mark.sign)
            return true;
    }
    return false;
}

void TModulusMarks::clearIsolated(int limit)
{
    // Only marks with a partner can be partners, so the order of clearing does not matter.
    std::vector<TMark> kept;
    for (std::size_t i = 0; i < m_marks.size(); ++i) {
        if (m_marks[i].position >= limit || hasPartner(i))
            kept.push_back(m_marks[i]);
    }
    m_marks.swap(kept);
}

void TModulusMarks::clearRedundant(int limit)
{
    const double reach = redundancyWindow * m_rate;
    for (std::size_t i = 0; i < m_marks.size() && m_marks[i].position < limit;) {
        const TMark mark = m_marks[i];
        const auto isNear = [&](const TMark& other) {
            return other.sign == mark.sign && other.position != mark.position &&
                   std::abs(other.position - mark.position) <= reach;
        };
        const bool isSmaller = std::any_of(m_marks.begin(), m_marks.end(), [&](const TMark& other) {
            return isNear(other) && other.size > mark.size;
        });
        if (isSmaller) {
            m_marks.erase(m_marks.begin() + static_cast<std::ptrdiff_t>(i));
            continue;
        }
        std::erase_if(m_marks, [&](const TMark& other) { return other.position < limit && isNear(other); });
        const auto place =
            std::upper_bound(m_marks.begin(), m_marks.end(), mark.position,
                             [](int position, const TMark& m) { return position < m.position; });
        i = static_cast<std::size_t>(place - m_marks.begin());
    }
}

void TModulusMarks::forgetBefore(int position)
{
    m_marks.erase(m_marks.begin(), std::lower_bound(m_marks.begin(), m_marks.end(), position, isBefore));
}

const TModulusMarks::TMark* TModulusMarks::firstAfter(int position, int limit) const
{
    const auto mark = std::lower_bound(m_marks.begin(), m_marks.end(), position + 1, isBefore);
    return mark != m_marks.end() && mark->position < limit ? &*mark : nullptr;
}

void TModulusMarks::remove(int position)
{
    const auto mark = std::lower_bound(m_marks.begin(), m_marks.end(), position, isBefore);
    if (mark != m_marks.end() && mark->position == position)
        m_marks.erase(mark);
}
