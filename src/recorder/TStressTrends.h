#pragma once

#include "base/Constants.h"
#include "recorder/TStMeter.h"
#include "study/TProtocolStage.h"
#include "study/TStressProtocol.h"

#include <array>

class TBeat;
class TResultList;
class TStudyResults;

/// Fills the results of a study while it is recorded: values at each beat and, at the end of each stage, one
/// value per stage. Times are seconds from the start of the study.
class TStressTrends
{
public:
    /// `results` is borrowed. `weight` of the patient in kilograms, 0 if unknown.
    void start(TStudyResults& results, TProtocolType type, double weight);

    /// Takes the ST values of a channel at the beat that `addBeat` ends.
    void addSt(double time, int channel, const TStValue& value);
    /// Heart rate and METS of a beat under a load; counts the beat. `meanRR` in seconds, 0 if unknown.
    void addBeat(double time, double meanRR, const TProtocolStage& load);

    /// A pressure in mmHg at a time. `closedStage` is the ended stage that holds the time; below 0 the values
    /// wait for the end of the stage that runs.
    void addBloodPressure(double time, double systolic, double diastolic, int closedStage);

    /// Enters the values of a stage that has ended at its place in the study, and begins the next one.
    void closeStage(int index, const TProtocolStage& stage);
    /// The stage that ran was too short to count: its time and its blood pressure go to the ended stage of
    /// that index, the rest of it is dropped.
    void mergeStage(int index);
    /// Enters the maxima over the stages.
    void finish();

    /// Beats per minute, smoothed over the beats of the stage; 0 before the first.
    double smoothedBpm() const { return m_smoothedBpm; }

private:
    /// Mean over the beats of a stage.
    struct TStageMean
    {
        double level = 0.0;
        double slope = 0.0;
    };

    void startStage();
    void enterBloodPressure(int index, double systolic, double diastolic);
    TResultList& list(const char* name) const;
    TResultList& channelList(const char* pattern, int channel) const;
    void addTrend(const char* name, double time, double value) const;

    TStudyResults* m_results = nullptr;
    TProtocolType m_type = TProtocolType::Ecg;
    double m_weight = 0.0;

    // Of the stage that runs.
    int m_beatCount = 0;
    double m_smoothedBpm = 0.0;
    double m_pendingSystolic = 0.0;
    double m_pendingDiastolic = 0.0;
    std::array<TStageMean, velantor::maxChannels> m_stMeans{};
};
