#include "study/TProtocolStage.h"

#include <cmath>

namespace {

constexpr double kilometresPerMileSet = 1.6;
constexpr double kilometresPerMileRead = 1.609344;
constexpr double kgmPerMinutePerWatt = 6.0;

bool isMilesPerHour(const QByteArray& key, const QByteArray& unit)
{
    return key == TProtocolStage::speedKey && unit.compare("mph", Qt::CaseInsensitive) == 0;
}

bool isKgmPerMinute(const QByteArray& key, const QByteArray& unit)
{
    return key == TProtocolStage::workloadKey && unit.compare("kgm/min", Qt::CaseInsensitive) == 0;
}

} // namespace

double TProtocolStage::value(const QByteArray& key, const QByteArray& unit) const
{
    const auto found = m_values.find(key);
    if (found == m_values.end())
        return 0.0;
    if (isMilesPerHour(key, unit))
        return found->second / kilometresPerMileRead;
    if (isKgmPerMinute(key, unit))
        return found->second * kgmPerMinutePerWatt;
    return found->second;
}

void TProtocolStage::setValue(const QByteArray& key, double value, const QByteArray& unit)
{
    if (!std::isfinite(value))
        value = 0.0;
    if (isMilesPerHour(key, unit))
        value *= kilometresPerMileSet;
    else if (isKgmPerMinute(key, unit))
        value /= kgmPerMinutePerWatt;
    m_values[key] = value;
}
