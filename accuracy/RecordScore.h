#pragma once

#include "accuracy/Records.h"
#include "accuracy/Report.h"

namespace accuracy {

/// What an analysis found in a record.
struct TRecordFindings
{
    std::vector<double> beats; ///< seconds
    /// For each channel its name and its beats with their marks, ascending by R.
    std::vector<QByteArray> leadNames;
    std::vector<std::vector<TMarkedBeat>> leads;
};

/// Holds the findings against all annotations of the record that the set is known for and puts the scores
/// into the report:
/// - beats of `.atr` over the whole record;
/// - without `.atr`, beats that any of the twelve leads has in its own annotation file;
/// - waves of `.q1c`, from the lead where each error is least;
/// - waves of each lead's own annotation file in the channel of that lead, all leads together.
/// Throws TError for an annotation file that cannot be read.
void scoreRecord(const TRecordPlace& record, const TRecordFindings& findings, TReport& report);

} // namespace accuracy
