#include "recorder/TStMeter.h"

#include "analysis/beats/TAverageBeat.h"
#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>

namespace {

/// The rate at which complexes are delineated.
constexpr int delineationRate = 250;

/// Seconds from R.
constexpr double fixedBase = -0.05;
constexpr double fixedJ = 0.04;
constexpr double fixedSt = 0.12;

/// Samples at 250 per second from the borders of the QRS complex: 10 ms before and after it, 80 ms after.
constexpr double baseDistance = 2.5;
constexpr double jDistance = 2.5;
constexpr double stDistance = 20.0;

int truncated(double x)
{
    return velantor::truncated<int>(x);
}

double at(const TDoubleVector& complex, int index)
{
    return index >= 0 && index < complex.size() ? complex[index] : 0.0;
}

TStPoints pointsOf(const TAverageBeatDelineator& waves)
{
    TStPoints points;
    points.base = waves.pOffset() != TAverageBeatDelineator::notFound
                      ? truncated((waves.pOffset() + waves.qrsOnset()) / 2.0)
                      : std::max(truncated(waves.qrsOnset() - baseDistance), 0);
    points.j = truncated(waves.qrsOffset() + jDistance);
    points.st = truncated(waves.qrsOffset() + stDistance);
    return points;
}

} // namespace

double TStMeter::TMeans::add(double value)
{
    m_values[m_count % length] = value;
    ++m_count;
    const int used = std::min(m_count, length);
    double sum = 0.0;
    for (int i = 0; i < used; ++i)
        sum += m_values[i];
    return sum / used;
}

void TStMeter::start()
{
    m_points.fill({});
    for (TMeans& means : m_levelMeans)
        means.clear();
    for (TMeans& means : m_slopeMeans)
        means.clear();
}

std::optional<TStValue> TStMeter::measure(TAverageBeat& average, const TSignal& signal, int channel,
                                          double rr)
{
    if (m_method == FixedPoints)
        return measureFixed(average, signal, channel);
    return measureDelineated(average, signal, channel, rr);
}

TStValue TStMeter::measureFixed(TAverageBeat& average, const TSignal& signal, int channel)
{
    const TDoubleVector& complex = average.complex(channel);
    const auto indexOf = [&](double seconds) { return average.rOffset() + signal.indexOf(seconds); };
    TStPoints& points = m_points.at(channel);
    points = {indexOf(fixedBase), indexOf(fixedJ), indexOf(fixedSt)};
    TStValue value;
    value.level = (at(complex, points.st) - at(complex, points.base)) * signal.countValue();
    if (points.j < points.st)
        value.slope = (at(complex, points.st) - at(complex, points.j)) * signal.countValue() /
                      signal.timeOf(points.st - points.j);
    return value;
}

std::optional<TStValue> TStMeter::measureDelineated(TAverageBeat& average, const TSignal& signal, int channel,
                                                    double rr)
{
    const int factor = std::max(signal.samplingRate() / delineationRate, 1);
    const TDoubleVector complex = average.complex(channel).decimatedMean(factor);
    m_delineator.analyse(complex, delineationRate, average.rOffset() / factor,
                         truncated(rr * delineationRate));
    TStPoints& points = m_points.at(channel);
    points = {};
    if (m_delineator.qrsOnset() == TAverageBeatDelineator::notFound ||
        m_delineator.qrsOffset() == TAverageBeatDelineator::notFound)
        return std::nullopt;
    const TStPoints reduced = pointsOf(m_delineator);
    points = {reduced.base * factor, reduced.j * factor, reduced.st * factor};
    const double level = (at(complex, reduced.j) - at(complex, reduced.base)) * signal.countValue();
    const double rise = (at(complex, reduced.st) - at(complex, reduced.j)) * signal.countValue();
    const double slope = reduced.j < reduced.st ? rise * delineationRate / (reduced.st - reduced.j) : 0.0;
    return TStValue{m_levelMeans.at(channel).add(level), m_slopeMeans.at(channel).add(slope)};
}
