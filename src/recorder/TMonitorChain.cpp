#include "recorder/TMonitorChain.h"

#include "analysis/filters/SmoothingTables.h"
#include "base/Constants.h"

namespace {

constexpr int blockSize = 4096;
constexpr int blocksKept = 20;

} // namespace

TMonitorChain::TMonitorChain(TSignal& raw)
    : m_decimation(raw.samplingRate() == 2 * samplingRate ? 2 : 1),
      m_monitorSignal(blockSize, blocksKept * blockSize, raw.channelCount(), samplingRate),
      m_decimator(velantor::monitorDecimation(), m_decimation), m_filters(&m_monitorSignal)
{
    m_monitorSignal.takeFormOf(raw);
    m_decimator.attach(&raw, 0);
    m_decimator.setSink(&m_monitorSignal);
    m_filters.setNotchName(velantor::notchFilter50Hz);
    m_filters.setMuscleName(velantor::muscleFilter40Hz);
    m_filters.setBaselineMode(velantor::baselineFilterFir);
    setFilters(false, false, false);
}

void TMonitorChain::setFilters(bool notch, bool muscle, bool baseline)
{
    m_filters.apply(notch, muscle, baseline);
    m_filters.update();
}
