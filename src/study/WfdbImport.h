#pragma once

#include "study/StudyInfo.h"

#include <QString>

class StudyDatabase;

/// Makes a study of a WFDB record: samples in the form of TResampledRecord, an empty beats file; finished,
/// saved and closed. Returns what the list shows of it.
///
/// `fields` are the texts of the study. What they leave empty is filled in: the type is "ECG"; the patient's
/// last name, if both names are missing, that of the record; the study's and the recording's time that of the
/// record, or now. If the store has a study of that name already, the study's time is moved on, second by
/// second, until its name is free.
///
/// Throws TError: the texts of TWfdbRecord and TResampledRecord, "WFDB record is longer than 14 days", those
/// of the store, or "Write error". A failure leaves nothing behind. Memory does not grow with the record.
StudyInfo importWfdb(StudyDatabase& database, const QString& recordPath, StudyInfo fields = {});
