#include "analysis/detection/TModulusMarks.h"

#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <cmath>
#include <span>

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

/// Positions in [`from`, `to`) where a scale reaches its threshold and is a local extreme at one of the lags.
std::vector<int> maximaOf(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds, int scale,
                          std::initializer_list<int> lags, int from, int to)
{
    std::vector<int> positions;
    const int end = std::min(to, wavelet.end());
    for (int i = std::max(from, wavelet.begin()); i < end; ++i) {
        const double value = wavelet.value(scale, i);
        if (value == 0.0 || std::abs(value) < thresholds[scale])
            continue;
        if (std::any_of(lags.begin(), lags.end(), [&](int lag) { return wavelet.isExtreme(scale, i, lag); }))
            positions.push_back(i);
    }
    return positions;
}

/// Those of the positions that lie no more than `reach` from `center`.
std::span<const int> within(const std::vector<int>& positions, int center, int reach)
{
    const auto first = std::lower_bound(positions.begin(), positions.end(), center - reach);
    const auto last = std::upper_bound(first, positions.end(), center + reach);
    return {first, last};
}

} // namespace

void TModulusMarks::enter(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds, int from, int to)
{
    const int reach = velantor::truncated<int>(searchWindow * m_rate);
    const std::vector<int> coarse = maximaOf(wavelet, thresholds, coarsest, {2}, from, to);
    if (coarse.empty())
        return;
    const std::vector<int> between = maximaOf(wavelet, thresholds, middle, {2, 3}, from - reach, to + reach);
    const std::vector<int> fine =
        maximaOf(wavelet, thresholds, finest, {2, 3, 4}, from - 2 * reach, to + 2 * reach);
    for (const int i : coarse) {
        const int sign = signOf(wavelet.value(coarsest, i));
        for (const int j : within(between, i, reach)) {
            if (signOf(wavelet.value(middle, j)) != sign)
                continue;
            for (const int k : within(fine, j, reach)) {
                const double value = wavelet.value(finest, k);
                if (signOf(value) == sign)
                    insert({k, sign, std::abs(value)});
            }
        }
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

/// Calls `visit` for each other mark of the same sign within `reach` that is not gone.
template <typename Visit> void TModulusMarks::visitRivals(std::size_t index, double reach, Visit visit)
{
    const auto visitIfRival = [&](TMark& other) {
        if (other.sign == m_marks[index].sign && other.size > 0.0)
            visit(other);
    };
    const int position = m_marks[index].position;
    for (std::size_t i = index; i-- > 0 && position - m_marks[i].position <= reach;)
        visitIfRival(m_marks[i]);
    for (std::size_t i = index + 1; i < m_marks.size() && m_marks[i].position - position <= reach; ++i)
        visitIfRival(m_marks[i]);
}

void TModulusMarks::clearRedundant(int limit)
{
    // In the order of position, each against those that are still there; a size of 0 says that a mark is
    // gone.
    const double reach = redundancyWindow * m_rate;
    for (std::size_t i = 0; i < m_marks.size() && m_marks[i].position < limit; ++i) {
        TMark& mark = m_marks[i];
        if (mark.size == 0.0)
            continue;
        bool isSmaller = false;
        visitRivals(i, reach, [&](const TMark& other) { isSmaller |= other.size > mark.size; });
        if (isSmaller) {
            mark.size = 0.0;
            continue;
        }
        visitRivals(i, reach, [limit](TMark& other) {
            if (other.position < limit)
                other.size = 0.0;
        });
    }
    std::erase_if(m_marks, [](const TMark& mark) { return mark.size == 0.0; });
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
