#pragma once

#include "study/StudyInfo.h"

class Study;

/// A patient and an acquisition of 14 channels at 500 Hz, 16 bits, -300 to 300 mV; the same at each call.
StudyInfo makeSampleInfo();

/// Appends `seconds` of a synthetic ECG at 72 beats a minute to a study opened for recording, with its beats.
void appendSampleRecording(Study& study, double seconds);

/// Fills trends, lists and values as a stress test of `seconds` with `beatsPerMinute` would, and adds events,
/// a protocol and echo scoring. `seed` varies the numbers.
void fillSampleResults(Study& study, double seconds, double beatsPerMinute, unsigned seed);
