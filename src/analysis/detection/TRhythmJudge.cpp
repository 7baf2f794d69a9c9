#include "analysis/detection/TRhythmJudge.h"

namespace {

/// Beats that teach the average whatever they are, and those it may miss before it starts afresh.
constexpr int learningBeats = 8;
constexpr int longestLapse = 3;
/// Intervals of which a mean is told.
constexpr int neededIntervals = 5;
/// Seconds.
constexpr double longestRR = 2.0;

bool isPlausible(double rr)
{
    return rr > 0.0 && rr < longestRR;
}

} // namespace

void TRhythmJudge::clear()
{
    m_beatCount = 0;
    m_previousValid = false;
    m_pendingValid = false;
    m_rrAverager.clear();
    m_rrUpdatedAt = 0;
}

void TRhythmJudge::take(TBeat beat, double agreement)
{
    beat.setValue(TBeat::meanRR, 0.0);
    if (!m_previousValid) {
        accept(beat);
        return;
    }
    const TVerdict verdict = judge(beat.value(TBeat::rr), agreement);
    if (verdict == dropped)
        return;
    if (m_pendingValid)
        resolvePending(beat);
    updateAverage(beat.value(TBeat::rr), verdict == accepted);
    if (m_rrAverager.filledCount() >= neededIntervals)
        beat.setValue(TBeat::meanRR, m_rrAverager.value());
    if (verdict == accepted) {
        accept(beat);
    } else {
        m_pendingBeat = beat;
        m_pendingValid = true;
    }
}

void TRhythmJudge::finish()
{
    if (m_pendingValid)
        rejectPending();
}

/// Few channels and an early beat: the fewer, the less early it may be.
TRhythmJudge::TVerdict TRhythmJudge::judge(double rr, double agreement) const
{
    const double meanRR = m_previousBeat.value(TBeat::meanRR);
    if (agreement >= 0.6 || rr <= 0.0 || rr >= 1.0 || meanRR <= 0.0 || meanRR >= longestRR)
        return accepted;
    const bool isWeak = agreement < 0.4;
    if (rr < (isWeak ? 0.6 : 0.5) * meanRR)
        return dropped;
    return rr >= (isWeak ? 0.85 : 0.75) * meanRR ? accepted : held;
}

/// A premature beat is followed by a pause: both intervals together are about two of the usual ones.
void TRhythmJudge::resolvePending(TBeat& beat)
{
    const double rr = beat.value(TBeat::rr);
    const double pendingRR = m_pendingBeat.value(TBeat::rr);
    const double ratio = rr > 0.0 && pendingRR > 0.0 ? rr / pendingRR : 0.0;
    if (ratio > 1.7 && ratio < 4.0) {
        beat.setValue(TBeat::rr, rr - pendingRR);
        accept(m_pendingBeat);
        m_pendingValid = false;
    } else {
        rejectPending();
    }
}

void TRhythmJudge::rejectPending()
{
    m_pendingValid = false;
    m_pendingBeat.setValid(false);
    m_pendingBeat.setNumber(-1);
    m_emit(m_pendingBeat);
}

void TRhythmJudge::updateAverage(double rr, bool isAccepted)
{
    const bool hasLapsed = m_beatCount - m_rrUpdatedAt > longestLapse;
    if (m_beatCount < learningBeats || hasLapsed) {
        if (hasLapsed)
            m_rrAverager.clear();
        if (isPlausible(rr))
            putInAverage(rr);
    } else if (isAccepted && fitsAverage(rr)) {
        putInAverage(rr);
    }
}

bool TRhythmJudge::fitsAverage(double rr) const
{
    const double average = m_rrAverager.value();
    if (average == 0.0)
        return true;
    return isPlausible(rr) && rr > 0.7 * average && rr < 1.4 * average;
}

void TRhythmJudge::putInAverage(double rr)
{
    m_rrAverager.put(rr);
    m_rrUpdatedAt = m_beatCount;
}

void TRhythmJudge::accept(TBeat& beat)
{
    beat.setNumber(m_beatCount++);
    m_previousBeat = beat;
    m_previousValid = true;
    m_emit(beat);
}
