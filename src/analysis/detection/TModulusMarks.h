#pragma once

#include "analysis/delineation/TWaveletSpan.h"

#include <vector>

/// The modulus maxima of one channel that run through all scales, by the position of their finest one: each
/// may be a flank of a complex. Kept for the last 20 s or so, in order of position.
class TModulusMarks
{
public:
    struct TMark
    {
        int position; ///< sample index of the analysis signal
        int sign;     ///< +1 or -1
        double size;  ///< |W| at the mark
    };

    explicit TModulusMarks(int samplingRate) : m_rate(samplingRate) {}

    void clear() { m_marks.clear(); }
    const std::vector<TMark>& marks() const { return m_marks; }

    /// Enters the maxima of [`from`, `to`) on the coarsest scale, followed to the finer ones. A chain begins
    /// at a local extreme of the coarsest scale, and each finer one continues it within `searchWindow` with
    /// the same sign.
    void enter(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds, int from, int to);
    /// Clears marks below `limit` without a partner of the opposite sign, then the smaller of two alike that
    /// are close.
    void judge(int limit);
    /// Forgets what lies before `position`.
    void forgetBefore(int position);

    /// The first mark after `position` and below `limit`, or null.
    const TMark* firstAfter(int position, int limit) const;
    /// Nothing happens if there is no mark.
    void remove(int position);

    /// Seconds within which a maximum is followed to the next finer scale.
    static constexpr double searchWindow = 0.05;
    /// Seconds within which two marks can be the flanks of one complex.
    static constexpr double pairWindow = 0.15;
    /// Seconds within which of two marks of one sign only the greater stays.
    static constexpr double redundancyWindow = 0.2;

private:
    void insert(TMark mark);
    bool hasPartner(std::size_t index) const;
    void clearIsolated(int limit);
    void clearRedundant(int limit);
    template <typename Visit> void visitRivals(std::size_t index, double reach, Visit visit);

    int m_rate;
    std::vector<TMark> m_marks;
};
