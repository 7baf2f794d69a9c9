#include "recorder/StressFormulas.h"

#include <cmath>

namespace {

/// ml/kg/min of one metabolic equivalent.
constexpr double vo2OfOneMet = 3.5;
/// Metres per minute from which on people run: 5 km/h.
constexpr double runningSpeed = 83.3333;

double metsOnTreadmill(double speed, double incline)
{
    const double v = speed * 1000.0 / 60.0;
    const double grade = incline / 100.0;
    if (v < runningSpeed)
        return (v * 1.8 * grade + (v * 0.1 + 3.5)) / vo2OfOneMet;
    return (v * 0.9 * grade + (v * 0.2 + 3.5)) / vo2OfOneMet;
}

double metsOnErgometer(double workload, double weight)
{
    return weight > 0.0 ? (workload * 10.8 / weight + 7.0) / vo2OfOneMet : 0.0;
}

} // namespace

namespace stress {

double metsOfStage(TProtocolType type, const TProtocolStage& stage, double weight)
{
    switch (type) {
    case TProtocolType::Treadmill:
        return metsOnTreadmill(stage.value(TProtocolStage::speedKey),
                               stage.value(TProtocolStage::inclineKey));
    case TProtocolType::Ergometer:
        return metsOnErgometer(stage.value(TProtocolStage::workloadKey), weight);
    case TProtocolType::Ecg:
    case TProtocolType::TiltTest:
    case TProtocolType::Pharmacologic:
        break;
    }
    return 0.0;
}

double vo2OfMets(double mets)
{
    return mets * vo2OfOneMet;
}

double doubleProduct(double systolic, double bpm)
{
    return std::trunc(systolic) * std::trunc(bpm);
}

} // namespace stress
