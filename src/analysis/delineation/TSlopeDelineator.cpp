#include "analysis/delineation/TSlopeDelineator.h"

#include "analysis/filters/SmoothingTables.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <array>
#include <cmath>

using velantor::truncated;

namespace {

constexpr int workingRate = 250;
/// Counts.
constexpr double leastSpan = 10.0;

// All distances are samples at the working rate.
constexpr int qrsReach = 60;
constexpr int halfQrs = 25;
/// Shares of the QRS span below which four samples are flat, the strictest first.
constexpr std::array flatShares = {0.01, 0.02, 0.05};
/// How far the strictest border may lie outside of the next one. Farther out it has run through the ST
/// segment or the P wave to the next flat stretch.
constexpr int stricterReach = 6;

constexpr int pReach = 50;
constexpr double pReachOfRR = 0.45;
constexpr double flankShare = 0.8;
/// Share of the QRS span that P has to rise.
constexpr double leastWave = 0.006;

constexpr int tDistance = 20;
constexpr int tPeakDistance = 10;
/// Where T has ended in a fast rhythm; a slower one, if known, extends the search.
constexpr int tReach = 50;
constexpr double tReachOfRR = 0.6;
constexpr int differencesBehind = 9;
constexpr int differencesAhead = 15;
/// Counts; keeps a perfectly flat stretch from winning by itself.
constexpr double flatness = 10.0;

double spanOf(const double* from, const double* to)
{
    const auto [least, greatest] = std::minmax_element(from, to);
    return from < to ? *greatest - *least : 0.0;
}

/// The first `count` samples smoothed; beyond them their first and last value count on.
TDoubleVector smoothed(const TDoubleVector& complex, int count, const std::vector<double>& taps)
{
    const int half = static_cast<int>(taps.size()) / 2;
    TDoubleVector result(count);
    for (int i = 0; i < count; ++i)
        for (int k = -half; k <= half; ++k)
            result[i] += taps[k + half] * complex[std::clamp(i + k, 0, count - 1)];
    return result;
}

/// slope[i] leads from i to i + 1.
TDoubleVector slopeOf(const TDoubleVector& complex)
{
    TDoubleVector slope(complex.size() - 1);
    for (int i = 0; i < slope.size(); ++i)
        slope[i] = complex[i + 1] - complex[i];
    return slope;
}

/// From `place` on the first sample whose slope is below the flank's share of that at `place`.
int endOfFlank(const TDoubleVector& slope, int place, int step)
{
    const double limit = flankShare * std::abs(slope[place]);
    int i = place;
    while (i > 0 && i < slope.size() - 1 && std::abs(slope[i]) >= limit)
        i += step;
    return i;
}

double sumOfMagnitudes(const TDoubleVector& slope, int from, int count)
{
    double sum = 0.0;
    for (int i = std::max(from, 0); i < std::min(from + count, slope.size()); ++i)
        sum += std::abs(slope[i]);
    return sum;
}

/// How much the complex has just moved, against how much it is about to.
double settling(const TDoubleVector& slope, int i)
{
    return sumOfMagnitudes(slope, i - differencesBehind, differencesBehind) /
           (flatness + sumOfMagnitudes(slope, i, differencesAhead));
}

/// `complex` at points `step` samples apart, between its samples where need be.
TDoubleVector resampled(const TDoubleVector& complex, double step)
{
    TDoubleVector result(complex.size() > 0 ? truncated<int>((complex.size() - 1) / step) + 1 : 0);
    for (int i = 0; i < result.size(); ++i) {
        const double place = std::min(i * step, complex.size() - 1.0);
        const int before = truncated<int>(place);
        const int after = std::min(before + 1, complex.size() - 1);
        result[i] = complex[before] + (place - before) * (complex[after] - complex[before]);
    }
    return result;
}

} // namespace

void TSlopeDelineator::analyse(const TDoubleVector& complex, int rate, int rSample, int rrSamples)
{
    m_places = TPlaces();
    if (rate <= 0 || !(spanOf(complex.data(), complex.data() + complex.size()) >= leastSpan))
        return;
    reduce(complex, rate, rSample, rrSamples);
    if (m_r < 0 || m_r >= size())
        return;
    findQrs();
    findPWave();
    findTOffset();
    scaleBack(rate, complex.size());
}

void TSlopeDelineator::reduce(const TDoubleVector& complex, int rate, int rSample, int rrSamples)
{
    const int factor = std::max(rate / workingRate, 1);
    m_complex = factor > 1 ? complex.decimatedMean(factor) : complex;
    const double step = static_cast<double>(rate) / factor / workingRate;
    if (step != 1.0)
        m_complex = resampled(m_complex, step);
    const double scale = static_cast<double>(workingRate) / rate;
    m_r = truncated<int>(rSample * scale);
    m_rrSamples = rrSamples * scale;
}

void TSlopeDelineator::findQrs()
{
    m_places.qrsOnset = qrsBorder(-1).value_or(notFound);
    m_places.qrsOffset = qrsBorder(1).value_or(notFound);
}

/// The first flat place, by the strictest share for which there is one. The strictest of all gives way to the
/// next one if it lies far outside of that.
std::optional<int> TSlopeDelineator::qrsBorder(int direction) const
{
    const double span = qrsSpan();
    std::optional<int> border = firstFlat(direction, flatShares[0] * span);
    const std::optional<int> next = firstFlat(direction, flatShares[1] * span);
    if (!border || (next && std::abs(*border - *next) > stricterReach))
        border = next;
    return border ? border : firstFlat(direction, flatShares[2] * span);
}

std::optional<int> TSlopeDelineator::firstFlat(int direction, double limit) const
{
    for (int distance = 1; distance <= qrsReach; ++distance) {
        const int border = m_r + direction * distance;
        const int outermost = border + direction * 3;
        if (std::min(border, outermost) < 0 || std::max(border, outermost) >= size())
            return std::nullopt;
        if (spanOfFour(border, direction) < limit)
            return border;
    }
    return std::nullopt;
}

/// Of the border and the three samples outside of it.
double TSlopeDelineator::spanOfFour(int border, int direction) const
{
    const double* const first = m_complex.data() + (direction < 0 ? border - 3 : border);
    return spanOf(first, first + 4);
}

double TSlopeDelineator::qrsSpan() const
{
    const int from = std::max(m_r - halfQrs, 0);
    const int to = std::min(m_r + halfQrs, size());
    return spanOf(m_complex.data() + from, m_complex.data() + to);
}

void TSlopeDelineator::findPWave()
{
    const int end = m_places.qrsOnset;
    const double rrReach = m_rrSamples > 0.0 ? pReachOfRR * m_rrSamples : size();
    const int from = std::max({end - pReach, truncated<int>(m_r - rrReach), 0});
    if (end == notFound || from >= end)
        return;
    // Cut off at the QRS, which would reach into P by the width of the filter.
    const TDoubleVector wave = smoothed(m_complex, end + 1, velantor::smoothing25());
    const TDoubleVector slope = slopeOf(wave);
    const auto [fall, rise] = std::minmax_element(slope.data() + from, slope.data() + end);
    if (!(*fall < 0.0 && *rise > 0.0))
        return;
    const int first = static_cast<int>(std::min(fall, rise) - slope.data());
    const int second = static_cast<int>(std::max(fall, rise) - slope.data());
    if (spanOf(wave.data() + first, wave.data() + second + 1) < leastWave * qrsSpan())
        return;
    m_places.pOnset = endOfFlank(slope, first, -1);
    m_places.pOffset = endOfFlank(slope, second, 1);
}

void TSlopeDelineator::findTOffset()
{
    if (m_places.qrsOffset == notFound)
        return;
    const double reach = std::max<double>(tReach, tReachOfRR * m_rrSamples);
    const int to = std::min(truncated<int>(m_r + reach), size() - 1 - differencesAhead);
    const auto peak = peakOfT(m_places.qrsOffset + tPeakDistance, to);
    if (!peak)
        return;
    const TDoubleVector slope = slopeOf(smoothed(m_complex, size(), velantor::smoothing25()));
    // Even a flat stretch gets a mark, for the user to drag: the first place.
    double greatest = -1.0;
    for (int i = std::max(m_places.qrsOffset + tDistance, *peak); i <= to; ++i) {
        const double ratio = settling(slope, i);
        if (ratio > greatest) {
            greatest = ratio;
            m_places.tOffset = i;
        }
    }
}

/// Where the smoothed complex lies farthest from the straight line between the two places.
std::optional<int> TSlopeDelineator::peakOfT(int from, int to) const
{
    if (to <= from)
        return std::nullopt;
    const TDoubleVector wave = smoothed(m_complex, size(), velantor::smoothing51());
    const double incline = (wave[to] - wave[from]) / (to - from);
    double greatest = 0.0;
    int peak = from;
    for (int i = from; i <= to; ++i) {
        const double distance = std::abs(wave[i] - wave[from] - incline * (i - from));
        if (distance > greatest) {
            greatest = distance;
            peak = i;
        }
    }
    return peak;
}

void TSlopeDelineator::scaleBack(int rate, int size)
{
    for (int* const place :
         {&m_places.pOnset, &m_places.pOffset, &m_places.qrsOnset, &m_places.qrsOffset, &m_places.tOffset})
        *place = std::min(truncated<int>(*place * (static_cast<double>(rate) / workingRate)), size - 1);
}
