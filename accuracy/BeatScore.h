#pragma once

#include <limits>
#include <vector>

namespace accuracy {

/// A detection so far from a reference beat still is that beat (ANSI/AAMI EC57), in seconds.
inline constexpr double matchWindow = 0.150;

/// A stretch of time in seconds, both ends included.
struct TSpan
{
    double start = 0.0;
    double end = 0.0;

    bool covers(double t) const { return start <= t && t <= end; }
};

/// All of a record.
inline constexpr TSpan wholeRecord{-std::numeric_limits<double>::infinity(),
                                   std::numeric_limits<double>::infinity()};

/// The beats of a record as people marked them.
struct TBeatReference
{
    std::vector<double> beats;   ///< seconds, ascending
    std::vector<TSpan> excluded; ///< what is not scored, such as ventricular flutter
    /// Where all beats are marked; detections outside are not false.
    TSpan marked = wholeRecord;
};

struct TBeatCounts
{
    int truePositives = 0;
    int falseNegatives = 0;
    int falsePositives = 0;

    int beats() const { return truePositives + falseNegatives; }
    /// 0 to 1; not a number without a beat, or without a detection.
    double sensitivity() const;
    double positivePredictivity() const;

    /// Gross totals are sums over records.
    TBeatCounts& operator+=(const TBeatCounts& other);
    bool operator==(const TBeatCounts&) const = default;
};

/// For each reference time the place of its detection, or -1. Both lists ascend. A pair lies within the
/// window, its edge included, and nobody is in two pairs. The nearest pair is taken first, then the nearest
/// of what is left; of two that are equally near the earlier.
std::vector<int> matchBeats(const std::vector<double>& reference, const std::vector<double>& detected,
                            double window = matchWindow);

/// Holds detections, in seconds, against the reference. In excluded stretches neither list counts, and a
/// detection that stands within the window of one is not false.
TBeatCounts scoreBeats(const TBeatReference& reference, std::vector<double> detected);

} // namespace accuracy
