#pragma once

#include <optional>

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

/// The waves of the average beat of each channel, with times relative to R of the dominant channel.
struct TAverageFindings
{
    std::vector<double> beats; ///< R of the beats that were averaged, seconds
    std::vector<QByteArray> leadNames;
    std::vector<TMarkedBeat> leads; ///< one beat a channel; empty without an average
    /// The same beat with the marks that a review begins with.
    std::vector<TMarkedBeat> reviewLeads;
};

/// Where in a record the waves of single beats end to be marked, in seconds; an average of the 20 s before
/// can be held against them. Nothing if no waves are marked.
std::optional<double> endOfMarkedWaves(const TRecordPlace& record);

/// Holds the average against the medians of what people marked in the beats that it is made of, under the
/// name of the set and "average beat"; what a review begins with under "review markers". The leads are scored
/// as those of single beats are. Without an average, or without the channel of a lead, its marks are missed.
void scoreAverage(const TRecordPlace& record, const TAverageFindings& findings, TReport& report);

} // namespace accuracy
