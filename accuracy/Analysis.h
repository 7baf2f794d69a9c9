#pragma once

#include "accuracy/RecordScore.h"

class TSignal;

namespace accuracy {

/// What the program's own analysis finds in a recording: its beats, and the waves of each channel's
/// candidates as they were found before the channels were merged.
TRecordFindings analyseRecord(TSignal& signal, int blockFrames);

/// The average beat over the last 20 s before `end` seconds, its waves and what a review begins with.
TAverageFindings analyseAverage(TSignal& signal, double end);

} // namespace accuracy
