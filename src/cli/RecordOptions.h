#pragma once

#include "cli/Options.h"
#include "study/StudyInfo.h"

#include <optional>
#include <vector>

/// Something that is done when the signal of the study has come to a time.
struct TTimedAction
{
    enum TKind
    {
        BloodPressure,
        Event,
        NextStage,
        Recovery
    };

    TKind kind = Event;
    double time = 0.0;      ///< seconds of the study
    double systolic = 0.0;  ///< mmHg
    double diastolic = 0.0; ///< mmHg
    QByteArray text;        ///< of an event
};

/// What `record` was asked for.
struct TRecordOptions
{
    enum TSource
    {
        Demo,
        Usb,
        Port
    };
    enum TTest
    {
        RestingEcg,
        StressTest,
        TiltTest
    };

    TSource source = Demo;
    QString place; ///< file of a demonstration, empty for the usual one; name of a port
    bool highRate = false;
    bool reducedChannels = false;
    bool unpaced = false;

    TTest test = RestingEcg;
    QByteArray protocolName; ///< of a stress test
    QString equipmentName;   ///< empty for a test that is driven by hand
    QString equipmentPort;

    StudyInfo patient;
    std::optional<double> stopAfter; ///< seconds of the study
    double stageScale = 1.0;         ///< divides the durations of the stages
    bool tellsBeats = false;
    std::vector<TTimedAction> actions; ///< in the order of their times
};

/// The options of the command line.
std::span<const TOption> recordOptions();

/// Throws TUsageError for what makes no sense.
TRecordOptions parseRecordOptions(const TOptions& options);
