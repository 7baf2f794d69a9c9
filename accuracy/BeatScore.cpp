#include "accuracy/BeatScore.h"

#include <algorithm>
#include <cmath>

namespace accuracy {

namespace {

/// Times come from sample numbers: what should be exactly the window may be a bit more.
constexpr double tolerance = 1e-9;

double ratio(int part, int whole)
{
    return whole > 0 ? static_cast<double>(part) / whole : std::numeric_limits<double>::quiet_NaN();
}

struct TPair
{
    long long distance; ///< in units of the tolerance, so that equals are equal
    std::size_t reference;
    std::size_t detected;
};

/// All pairs within the window, the nearest first; among equals the earlier.
std::vector<TPair> nearPairs(const std::vector<double>& reference, const std::vector<double>& detected,
                             double window)
{
    std::vector<TPair> pairs;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        auto first = std::lower_bound(detected.begin(), detected.end(), reference[i] - window - tolerance);
        for (; first != detected.end() && *first <= reference[i] + window + tolerance; ++first)
            pairs.push_back({std::llround(std::abs(*first - reference[i]) / tolerance), i,
                             static_cast<std::size_t>(first - detected.begin())});
    }
    std::stable_sort(pairs.begin(), pairs.end(),
                     [](const TPair& a, const TPair& b) { return a.distance < b.distance; });
    return pairs;
}

bool isIn(const std::vector<TSpan>& spans, double t, double margin)
{
    return std::any_of(spans.begin(), spans.end(), [=](const TSpan& span) {
        return TSpan{span.start - margin, span.end + margin}.covers(t);
    });
}

} // namespace

double TBeatCounts::sensitivity() const
{
    return ratio(truePositives, beats());
}

double TBeatCounts::positivePredictivity() const
{
    return ratio(truePositives, truePositives + falsePositives);
}

TBeatCounts& TBeatCounts::operator+=(const TBeatCounts& other)
{
    truePositives += other.truePositives;
    falseNegatives += other.falseNegatives;
    falsePositives += other.falsePositives;
    return *this;
}

std::vector<int> matchBeats(const std::vector<double>& reference, const std::vector<double>& detected,
                            double window)
{
    std::vector<int> partners(reference.size(), -1);
    std::vector<bool> isTaken(detected.size(), false);
    for (const TPair& pair : nearPairs(reference, detected, window)) {
        if (partners[pair.reference] >= 0 || isTaken[pair.detected])
            continue;
        partners[pair.reference] = static_cast<int>(pair.detected);
        isTaken[pair.detected] = true;
    }
    return partners;
}

TBeatCounts scoreBeats(const TBeatReference& reference, std::vector<double> detected)
{
    std::sort(detected.begin(), detected.end());
    const std::vector<int> partners = matchBeats(reference.beats, detected);
    std::vector<bool> isPaired(detected.size(), false);
    TBeatCounts counts;
    for (std::size_t i = 0; i < partners.size(); ++i) {
        if (partners[i] >= 0)
            isPaired[static_cast<std::size_t>(partners[i])] = true;
        if (!isIn(reference.excluded, reference.beats[i], 0.0))
            ++(partners[i] >= 0 ? counts.truePositives : counts.falseNegatives);
    }
    for (std::size_t j = 0; j < detected.size(); ++j) {
        if (!isPaired[j] && reference.marked.covers(detected[j]) &&
            !isIn(reference.excluded, detected[j], matchWindow))
            ++counts.falsePositives;
    }
    return counts;
}

} // namespace accuracy
