#pragma once

#include "study/TStressProtocol.h"

#include <QString>

class Study;
class TStageRun;

/// What a test calls its stages of a phase, translated; empty where there is no name.
QString stageLabel(TProtocolType type, TStagePhase phase);

/// Adds the event that marks the last seconds of a stage, whose strip is printed, to the study. To be called
/// when the recorder tells of a change of stage: the stage is the last one that was carried out, and `now`,
/// in seconds of the study, is its end. Nothing is added in a resting ECG.
void addStageEvent(Study& study, const TStageRun& run, double now);
