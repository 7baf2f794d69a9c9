#pragma once

#include "accuracy/BeatScore.h"
#include "accuracy/MarkScore.h"
#include "wfdb/TWfdbAnnotations.h"

#include <QString>
#include <QStringList>

namespace accuracy {

// What people marked in a record, out of annotation files. `frequency` is that of the record, in which
// annotations count unless their file tells its own. Reading a file throws the TError of TWfdbAnnotations.

/// Beats and, between "[" and "]", ventricular flutter, which is not scored. A bracket without its partner
/// reaches to the end of the record on that side.
TBeatReference beatsOf(const TWfdbAnnotations& annotations, double frequency);
TBeatReference readBeats(const QString& path, double frequency);

/// Waves out of "(" peak ")": peaks are "p", any beat, "t". A P wave belongs to the beat behind it, a T wave
/// to the beat before; one that has no such beat is left out, and so is a U wave. Of two peaks in one wave
/// the first counts.
std::vector<TMarkedBeat> marksOf(const TWfdbAnnotations& annotations, double frequency);
std::vector<TMarkedBeat> readMarks(const QString& path, double frequency);

/// One list of the beats that any lead has: times within 150 ms of the first are one beat, at their median.
/// The first and the last beats of a record may be marked in no lead, so that what lies outside of the marked
/// ones by more than the window is not scored.
TBeatReference mergeLeads(const std::vector<std::vector<TMarkedBeat>>& leads);

/// Endings of the annotation files of a record with one for each lead.
QStringList leadEndings();

} // namespace accuracy
