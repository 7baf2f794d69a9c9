#include "recorder/TStressTrends.h"

#include "recorder/StressFormulas.h"
#include "study/TStudyResults.h"

#include <cmath>

namespace {

constexpr double smoothing = 0.2;

/// A maximum over the stages and the list that it is taken of.
struct TMaximum
{
    const char* value;
    const char* list;
};

constexpr TMaximum maxima[]{
    {"maxBPM", "BPMPerStage"},   {"maxSysBP", "sysBPPerStage"}, {"maxDiaBP", "diaBPPerStage"},
    {"maxMETS", "METSPerStage"}, {"maxDP", "DPPerStage"},
};

} // namespace

void TStressTrends::start(TStudyResults& results, TProtocolType type, double weight)
{
    m_results = &results;
    m_type = type;
    m_weight = weight;
    startStage();
}

void TStressTrends::startStage()
{
    m_beatCount = 0;
    m_smoothedBpm = 0.0;
    m_pendingSystolic = 0.0;
    m_pendingDiastolic = 0.0;
    m_stMeans.fill({});
}

void TStressTrends::addSt(double time, int channel, const TStValue& value)
{
    m_results->trend(TStudyResults::channelName("STLevelTrend(%i)", channel))->add(time, value.level);
    m_results->trend(TStudyResults::channelName("STSlopeTrend(%i)", channel))->add(time, value.slope);
    TStageMean& mean = m_stMeans.at(channel);
    mean.level = (m_beatCount * mean.level + value.level) / (m_beatCount + 1);
    mean.slope = (m_beatCount * mean.slope + value.slope) / (m_beatCount + 1);
}

void TStressTrends::addBeat(double time, double meanRR, const TProtocolStage& load)
{
    if (meanRR > 0.0) {
        const double bpm = 60.0 / meanRR;
        m_smoothedBpm = m_smoothedBpm != 0.0 ? (1.0 - smoothing) * m_smoothedBpm + smoothing * bpm : bpm;
        addTrend("BPMTrend", time, m_smoothedBpm);
    }
    addTrend("METSTrend", time, stress::metsOfStage(m_type, load, m_weight));
    ++m_beatCount;
}

void TStressTrends::addBloodPressure(double time, double systolic, double diastolic, int closedStage)
{
    addTrend("sysBPTrend", time, systolic);
    addTrend("diaBPTrend", time, diastolic);
    addTrend("DPTrend", time, stress::doubleProduct(systolic, m_results->trend("BPMTrend")->valueAt(time)));
    if (closedStage < 0) {
        m_pendingSystolic = systolic;
        m_pendingDiastolic = diastolic;
        return;
    }
    enterBloodPressure(closedStage, systolic, diastolic);
}

void TStressTrends::closeStage(int index, const TProtocolStage& stage)
{
    list("BPMPerStage").setValue(index, std::trunc(m_smoothedBpm));
    list("sysBPPerStage").setValue(index, m_pendingSystolic);
    list("diaBPPerStage").setValue(index, m_pendingDiastolic);
    list("DPPerStage").setValue(index, stress::doubleProduct(m_pendingSystolic, m_smoothedBpm));
    list("METSPerStage").setValue(index, stress::metsOfStage(m_type, stage, m_weight));
    for (int channel = 0; channel < velantor::maxChannels; ++channel) {
        channelList("STLevelPerStage(%i)", channel).setValue(index, m_stMeans[channel].level);
        channelList("STSlopePerStage(%i)", channel).setValue(index, m_stMeans[channel].slope);
    }
    startStage();
}

void TStressTrends::mergeStage(int index)
{
    if (m_pendingSystolic > 0.0 || m_pendingDiastolic > 0.0)
        enterBloodPressure(index, m_pendingSystolic, m_pendingDiastolic);
    startStage();
}

void TStressTrends::enterBloodPressure(int index, double systolic, double diastolic)
{
    list("sysBPPerStage").setValue(index, systolic);
    list("diaBPPerStage").setValue(index, diastolic);
    list("DPPerStage").setValue(index, stress::doubleProduct(systolic, list("BPMPerStage").value(index)));
}

void TStressTrends::finish()
{
    for (const TMaximum& maximum : maxima)
        m_results->value(maximum.value)->setValue(list(maximum.list).maxValue());
    m_results->value("maxVO2")->setValue(stress::vo2OfMets(m_results->value("maxMETS")->value()));
}

TResultList& TStressTrends::list(const char* name) const
{
    return *m_results->list(name);
}

TResultList& TStressTrends::channelList(const char* pattern, int channel) const
{
    return *m_results->list(TStudyResults::channelName(pattern, channel));
}

void TStressTrends::addTrend(const char* name, double time, double value) const
{
    m_results->trend(name)->add(time, value);
}
