#pragma once

#include <QByteArray>

#include <vector>

/// The names of the results by kind, written down once more so that a name that goes missing or changes in
/// the program is noticed: studies on disk are read by these names.
inline std::vector<QByteArray> valueNames()
{
    return {"maxBPM",  "maxSysBP", "maxDiaBP", "maxMETS",  "maxDP",         "maxVO2", "measurementChannel",
            "POnset",  "PPeak",    "POffset",  "QRSOnset", "QRSOffset",     "TOnset", "TPeak",
            "TOffset", "PAmp",     "QRSAmp",   "TAmp",     "avgRRInterval", "QRSAxis"};
}

inline std::vector<QByteArray> withChannels(std::vector<QByteArray> names, const QByteArray& first,
                                            const QByteArray& second)
{
    for (int channel = 0; channel <= 15; ++channel) {
        names.push_back(first + '(' + QByteArray::number(channel) + ')');
        names.push_back(second + '(' + QByteArray::number(channel) + ')');
    }
    return names;
}

inline std::vector<QByteArray> listNames()
{
    return withChannels(
        {"BPMPerStage", "sysBPPerStage", "diaBPPerStage", "METSPerStage", "DPPerStage", "pacemakerPulses"},
        "STLevelPerStage", "STSlopePerStage");
}

inline std::vector<QByteArray> trendNames()
{
    return withChannels({"BPMTrend", "sysBPTrend", "diaBPTrend", "METSTrend", "DPTrend"}, "STLevelTrend",
                        "STSlopeTrend");
}
