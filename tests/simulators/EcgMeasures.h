#pragma once

#include "simulators/heart/LeadField.h"

#include <vector>

/// Plain measurements on an ECG without noise: thresholds and slopes, no knowledge of how it was made.
/// Positions are frames, voltages mV, durations seconds.
namespace measures {

using TEcg = std::vector<heart::TLeadVoltages>;

struct TComplex
{
    int r = 0; ///< peak of the QRS in lead II
    int qrsOnset = 0;
    int qrsEnd = 0;
    double rr = 0; ///< to the complex before; 0 for the first

    double qrsDuration() const;
    bool isWide() const { return qrsDuration() >= 0.12; }
};

/// Those whose surroundings lie within the ECG.
std::vector<TComplex> complexesOf(const TEcg& ecg);

/// From the first rise of the P wave to the QRS; -1 without a P wave.
double prInterval(const TEcg& ecg, const TComplex& complex);

/// To the point where the steepest tangent of the T wave in lead II meets the baseline.
double qtInterval(const TEcg& ecg, const TComplex& complex);

/// Level of the PR segment.
double baseline(const TEcg& ecg, const TComplex& complex, int lead);

/// Highest and lowest value within the QRS, against the PR segment.
double rAmplitude(const TEcg& ecg, const TComplex& complex, int lead);
double sAmplitude(const TEcg& ecg, const TComplex& complex, int lead);

/// The T wave's value of greatest size, against the PR segment.
double tAmplitude(const TEcg& ecg, const TComplex& complex, int lead);

/// The P wave's value of greatest size, against the PR segment.
double pAmplitude(const TEcg& ecg, const TComplex& complex, int lead);

/// Level so many seconds behind the usual end of a narrow QRS, against the PR segment.
double stLevel(const TEcg& ecg, const TComplex& complex, int lead, double behindJ);

/// From the net deflections of I and aVF, degrees.
double qrsAxis(const TEcg& ecg, const TComplex& complex);

} // namespace measures
