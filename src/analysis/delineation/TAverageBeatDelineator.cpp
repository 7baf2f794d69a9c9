#include "analysis/delineation/TAverageBeatDelineator.h"

#include "analysis/delineation/CurveTurns.h"
#include "analysis/delineation/TExtremePair.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <cmath>

using curve::crossingOnTheWay;
using curve::isExtreme;
using curve::nearerToZero;
using curve::rootMeanSquare;
using velantor::truncated;

namespace {

/// Samples per second that the wavelet scales are made for.
constexpr int workingRate = 250;

// Distances in seconds.
constexpr double mainPairReach = 0.1;
constexpr double qrsMargin = 0.02;
constexpr double outerWaveReach = 0.05;
constexpr double outerWaveMargin = 0.01;
constexpr double pMargin = 0.02;
constexpr double tMargin = 0.04;
constexpr double tStart = 0.1;
constexpr double tReach = 0.4;
/// From this RR on the T wave has all of its reach.
constexpr double slowRR = 0.7;

// Shares of a threshold.
constexpr double outerWaveShare = 0.1;
constexpr double furtherWaveShare = 0.5;
constexpr double pShare = 0.15;
constexpr double tShare = 0.2;

} // namespace

TAverageBeatDelineator::TAverageBeatDelineator()
{
    for (int scale = 1; scale <= velantor::waveletScales; ++scale)
        m_filters[scale - 1] = velantor::waveletFilter(scale);
}

void TAverageBeatDelineator::analyse(const TDoubleVector& complex, int rate, int rSample, int rrSamples)
{
    m_places = TPlaces();
    if (rate <= 0)
        return;
    reduce(complex, rate, rSample, rrSamples);
    transform();
    findQrs();
    findPWave();
    findTWave();
    scaleBack();
}

void TAverageBeatDelineator::reduce(const TDoubleVector& complex, int rate, int rSample, int rrSamples)
{
    m_factor = std::max(rate / workingRate, 1);
    m_complex = m_factor > 1 ? complex.decimatedMean(m_factor) : complex;
    m_rate = static_cast<double>(rate) / m_factor;
    const int reducedR = rSample / m_factor;
    const int reducedRr = rrSamples / m_factor;
    m_rSample = reducedR;
    m_rrSamples = reducedRr;
}

void TAverageBeatDelineator::transform()
{
    const auto atScale = [this](int scale) {
        const TDoubleVector& filter = m_filters[scale - 1];
        const TDoubleVector moved = m_complex.convolved(filter).shifted(-filter.size() / 2);
        return TDoubleVector(moved.data(), std::min(size(), moved.size()));
    };
    m_w1 = atScale(1);
    m_w2 = atScale(2);
    m_w4 = atScale(4);
    m_qrsThreshold = 1.25 * rootMeanSquare(m_w2);
    m_waveThreshold = 0.5 * rootMeanSquare(m_w4);
}

void TAverageBeatDelineator::findQrs()
{
    const auto main = mainPair();
    if (!main)
        return;
    m_places.rPosition = turnOfR(*main);
    m_places.rPeak = m_places.rPosition;
    findWavesBeforeQrs(*main);
    findWavesAfterQrs(*main);
}

std::optional<TAverageBeatDelineator::TPair> TAverageBeatDelineator::mainPair() const
{
    TExtremePair extremes;
    const TPair span = within(m_rSample - mainPairReach * m_rate, m_rSample + mainPairReach * m_rate);
    for (int i = span.first; i <= span.second; ++i)
        if (isQrsExtreme(i))
            extremes.take(i, m_w2[i]);
    if (!extremes.isComplete())
        return std::nullopt;
    return TPair{extremes.first(), extremes.second()};
}

bool TAverageBeatDelineator::isQrsExtreme(int i) const
{
    return isExtreme(m_w2, i, 2) || isExtreme(m_w1, i, 1);
}

/// Where W1 crosses zero the way W2 does between the pair. Of several crossings, in a notched complex, the
/// one where the complex is farthest out.
int TAverageBeatDelineator::turnOfR(TPair main) const
{
    const double direction = m_w2[main.first] > 0.0 ? -1.0 : 1.0;
    std::optional<int> turn;
    for (int i = main.first; i < main.second; ++i) {
        const bool crosses = direction * m_w1[i] <= 0.0 && direction * m_w1[i + 1] > 0.0;
        if (!crosses)
            continue;
        const int here = nearerToZero(m_w1, i);
        if (!turn || direction * m_complex[here] > direction * m_complex[*turn])
            turn = here;
    }
    return turn ? *turn : crossingOnTheWay(m_w2, main.first, main.second);
}

void TAverageBeatDelineator::findWavesBeforeQrs(TPair main)
{
    const double reach = outerWaveReach * m_rate;
    double onset = main.first - qrsMargin * m_rate;
    if (const auto outer = outerExtreme(main.first, -1, reach, outerWaveShare * m_qrsThreshold)) {
        onset = *outer - outerWaveMargin * m_rate;
        m_places.qPeak = crossingOnTheWay(m_w2, main.first, *outer);
    }
    m_places.qrsOnset = std::max(truncated<int>(onset), 0);
}

void TAverageBeatDelineator::findWavesAfterQrs(TPair main)
{
    const double reach = outerWaveReach * m_rate;
    double offset = main.second + qrsMargin * m_rate;
    if (const auto outer = outerExtreme(main.second, 1, reach, outerWaveShare * m_qrsThreshold)) {
        offset = *outer + outerWaveMargin * m_rate;
        m_places.sPeak = crossingOnTheWay(m_w2, main.second, *outer);
        // One more deflection, as the second R of a bundle branch block. It keeps to the same reach: beyond
        // that it would more often be noise or the ST segment.
        const double left = reach - (*outer - main.second);
        if (const auto further = outerExtreme(*outer, 1, left, furtherWaveShare * std::abs(m_w2[*outer])))
            offset = *further + outerWaveMargin * m_rate;
    }
    m_places.qrsOffset = std::min(truncated<int>(offset), size() - 1);
}

/// The largest extreme of W2 in reach before (`step` -1) or behind (1) `from` that differs from it in sign
/// and goes beyond `limit`.
std::optional<int> TAverageBeatDelineator::outerExtreme(int from, int step, double reach, double limit) const
{
    const double sign = m_w2[from] > 0.0 ? -1.0 : 1.0;
    std::optional<int> found;
    for (int distance = 1; distance <= reach; ++distance) {
        const int i = from + step * distance;
        if (i < 0 || i >= size())
            break;
        const double value = sign * m_w2[i];
        if (value > limit && isQrsExtreme(i)) {
            found = i;
            limit = value;
        }
    }
    return found;
}

void TAverageBeatDelineator::findPWave()
{
    const auto wave = wavePair(startOfPSearch(), endOfPSearch(), pShare * m_waveThreshold);
    if (!wave)
        return;
    // Of several turns the one farthest from the QRS, here and in T.
    m_places.pPeak = crossingOnTheWay(m_w4, wave->first, wave->second);
    m_places.pOnset = std::max(truncated<int>(wave->first - pMargin * m_rate), 0);
    const int end = m_places.qrsOnset != notFound ? m_places.qrsOnset : size();
    m_places.pOffset = std::min(truncated<int>(wave->second + pMargin * m_rate), end - 1);
}

double TAverageBeatDelineator::startOfPSearch() const
{
    double from = m_rSample - 0.25 * m_rate;
    if (m_places.qrsOnset != notFound)
        from = m_places.qrsOnset - 0.2 * m_rate;
    else if (m_places.qPeak != notFound)
        from = m_places.qPeak - 0.2 * m_rate;
    else if (m_places.rPeak != notFound)
        from = m_places.rPeak - 0.25 * m_rate;
    return std::max({from, m_rSample - 0.4 * m_rrSamples, 2.0});
}

double TAverageBeatDelineator::endOfPSearch() const
{
    if (m_places.qrsOnset != notFound)
        return m_places.qrsOnset - 0.005 * m_rate;
    if (m_places.qPeak != notFound)
        return m_places.qPeak - 0.01 * m_rate;
    if (m_places.rPeak != notFound)
        return m_places.rPeak - 0.05 * m_rate;
    return m_rSample - 0.05 * m_rate;
}

void TAverageBeatDelineator::findTWave()
{
    const double reach = m_rrSamples >= slowRR * m_rate ? tReach * m_rate : 0.5 * m_rrSamples;
    const double to = std::min(m_rSample + reach, size() - 3.0);
    const auto wave = wavePair(m_rSample + tStart * m_rate, to, tShare * m_waveThreshold);
    if (!wave)
        return;
    m_places.tPeak = crossingOnTheWay(m_w4, wave->second, wave->first);
    m_places.tOnset = std::max(truncated<int>(wave->first - tMargin * m_rate), 0);
    m_places.tOffset = std::min(truncated<int>(wave->second + tMargin * m_rate), size() - 1);
}

/// The steepest rise and fall between two places, both beyond `limit`.
std::optional<TAverageBeatDelineator::TPair> TAverageBeatDelineator::wavePair(double from, double to,
                                                                              double limit) const
{
    TExtremePair extremes;
    const TPair span = within(from, to);
    for (int i = span.first; i <= span.second; ++i)
        if (std::abs(m_w4[i]) > limit && isExtreme(m_w4, i, 2))
            extremes.take(i, m_w4[i]);
    if (!extremes.isComplete())
        return std::nullopt;
    return TPair{extremes.first(), extremes.second()};
}

TAverageBeatDelineator::TPair TAverageBeatDelineator::within(double from, double to) const
{
    return {std::max(truncated<int>(from), 0), std::min(truncated<int>(to), size() - 1)};
}

void TAverageBeatDelineator::scaleBack()
{
    for (int* const place : {&m_places.pOnset, &m_places.pPeak, &m_places.pOffset, &m_places.qrsOnset,
                             &m_places.rPosition, &m_places.qPeak, &m_places.rPeak, &m_places.sPeak,
                             &m_places.qrsOffset, &m_places.tOnset, &m_places.tPeak, &m_places.tOffset})
        *place *= m_factor;
}
