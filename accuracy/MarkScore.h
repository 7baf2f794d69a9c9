#pragma once

#include "accuracy/BeatScore.h"

#include <array>
#include <optional>
#include <vector>

namespace accuracy {

enum TMark
{
    POnset,
    PPeak,
    POffset,
    QrsOnset,
    QrsOffset,
    TOnset,
    TPeak,
    TOffset,
    markCount
};

/// "P onset" and so on.
const char* markName(int mark);

/// A beat with the marks of its waves, in seconds; those that are absent are empty.
struct TMarkedBeat
{
    double r = 0.0;
    std::array<std::optional<double>, markCount> marks;
};

/// How well one mark was found: errors are found minus reference.
class TMarkStatistics
{
public:
    void addError(double seconds);
    void addMissed() { ++m_missed; }
    void addExtra() { ++m_extra; }
    TMarkStatistics& operator+=(const TMarkStatistics& other);

    int found() const { return m_found; }
    /// How often the reference has the mark.
    int reference() const { return m_found + m_missed; }
    /// How often it was found in a beat where the reference has none.
    int extra() const { return m_extra; }
    /// 0 to 1; not a number without reference.
    double detectionRate() const;
    /// Milliseconds; not a number without errors.
    double mean() const;
    /// Milliseconds, with n - 1; not a number with fewer than two errors.
    double standardDeviation() const;

private:
    int m_found = 0;
    int m_missed = 0;
    int m_extra = 0;
    double m_mean = 0.0;
    /// Sum of the squared distances from the mean.
    double m_squares = 0.0;
};

using TMarkScores = std::array<TMarkStatistics, markCount>;

TMarkScores& operator+=(TMarkScores& scores, const TMarkScores& other);

/// Holds the marks of one or more leads, a list of beats each, against the reference. Only beats of the
/// reference count: a lead's beat is the one that `matchBeats` pairs by R. With several leads, each mark is
/// taken from the lead where its error is least, as comparisons on the two-lead QT Database do; it is missed
/// if no lead has it, and extra if every lead that has the beat has it but the reference does not.
TMarkScores scoreMarks(const std::vector<TMarkedBeat>& reference,
                       const std::vector<std::vector<TMarkedBeat>>& leads);

} // namespace accuracy
