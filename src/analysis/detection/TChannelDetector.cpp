#include "analysis/detection/TChannelDetector.h"

#include "analysis/delineation/ChannelDelineation.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

/// Seconds.
constexpr double thresholdWindow = 4.0;
constexpr double partnerWait = 0.25;
constexpr double refractoryTime = 0.15;
constexpr double longestRR = 2.0;
constexpr double longestGap = 3.0;
constexpr double keptMarks = 10.0;

/// A gap of so many mean RR intervals is searched again, at so much lower thresholds.
constexpr double missedBeatRatio = 1.4;
constexpr double searchBackFactor = 0.7;

/// Of the root mean square of each scale.
constexpr std::array<double, TWaveletSpan::scaleCount> thresholdFactors{1.0, 1.25, 1.25, 0.5};

int toIndex(double x)
{
    return velantor::truncated<int>(x);
}

} // namespace

TChannelDetector::TChannelDetector(const TWaveletTransform& transform, int channel, int samplingRate,
                                   bool delineateWaves)
    : m_transform(transform), m_channel(channel), m_rate(samplingRate), m_delineateWaves(delineateWaves),
      m_marks(samplingRate)
{
}

void TChannelDetector::detect(int from, int to, std::vector<TChannelBeat>& out)
{
    startAfreshAfterGap(from, out);
    enterMarks(from, to);
    walkMarks(to - toIndex(partnerWait * m_rate), out);
    m_marks.forgetBefore(to - toIndex(keptMarks * m_rate));
}

void TChannelDetector::finish(int from, int to, std::vector<TChannelBeat>& out)
{
    startAfreshAfterGap(from, out);
    enterMarks(from, to);
    walkMarks(to, out);
    closePrevious(out);
}

void TChannelDetector::restart(int position)
{
    m_lastIndex = position;
    m_hasPreviousR = false;
    m_searchedBack = false;
}

void TChannelDetector::startAfreshAfterGap(int from, std::vector<TChannelBeat>& out)
{
    if (from - m_lastIndex <= longestGap * m_rate)
        return;
    // The last beat before a pause is one like any other.
    closePrevious(out);
    // The marks that waited in the call before are still to be walked.
    restart(from - toIndex(partnerWait * m_rate));
}

/// Delineates the last beat as if another came after the mean RR interval.
void TChannelDetector::closePrevious(std::vector<TChannelBeat>& out)
{
    if (m_hasPreviousR)
        delineatePrevious(toIndex(m_previousR + m_meanRR * m_rate), out);
    m_hasPreviousR = false;
}

void TChannelDetector::enterMarks(int from, int to)
{
    const int windowEnd = std::max(to, m_transform.begin() + toIndex(thresholdWindow * m_rate));
    const int windowBegin = windowEnd - toIndex(thresholdWindow * m_rate);
    // Chains reach beyond the span, and extremes look a little further.
    const int margin = toIndex(2 * TModulusMarks::searchWindow * m_rate) + 4;
    m_transform.read(m_channel, std::min(from - margin, windowBegin), std::max(to + margin, windowEnd),
                     m_span);
    m_thresholds = measureThresholds(windowBegin, windowEnd);
    m_marks.enter(m_span, m_thresholds, from, to);
}

/// At the beginning of a signal the window holds what there is, the second behind the span included: zeros
/// for what is missing would let noise through.
TWaveletThresholds TChannelDetector::measureThresholds(int windowBegin, int windowEnd) const
{
    const int begin = std::max(windowBegin, m_span.begin());
    const int count = std::min(windowEnd, m_span.end()) - begin;
    TWaveletThresholds thresholds;
    for (int scale = 1; scale <= TWaveletSpan::scaleCount && count > 0; ++scale) {
        const double* const values = m_span.data(scale) + (begin - m_span.begin());
        const double sum = std::inner_product(values, values + count, values, 0.0);
        thresholds.values[scale - 1] = thresholdFactors[scale - 1] * std::sqrt(sum / count);
    }
    return thresholds;
}

void TChannelDetector::walkMarks(int limit, std::vector<TChannelBeat>& out)
{
    m_marks.judge(limit);
    for (;;) {
        const TMark* const first = m_marks.firstAfter(m_lastIndex, limit);
        const TMark* const second = first ? m_marks.firstAfter(first->position, limit) : nullptr;
        if (!second)
            return;
        if (isPair(*first, *second))
            judgePair(TMark(*first), TMark(*second), limit, out);
        else
            m_marks.remove(first->position);
    }
}

bool TChannelDetector::isPair(const TMark& first, const TMark& second) const
{
    return first.sign != second.sign && second.position - first.position < TModulusMarks::pairWindow * m_rate;
}

void TChannelDetector::judgePair(const TMark& first, const TMark& second, int limit,
                                 std::vector<TChannelBeat>& out)
{
    const int r = positionBetween(first, second);
    const double rr = m_hasPreviousR ? static_cast<double>(r - m_previousR) / m_rate : 0.0;
    if (rr > 0.0 && rr < refractoryTime) {
        m_marks.remove(first.position);
        m_marks.remove(second.position);
        m_lastIndex = second.position;
        return;
    }
    if (!m_searchedBack && rr > missedBeatRatio * m_meanRR) {
        searchBack(r, limit);
        return;
    }
    accept(r, rr, out);
    m_lastIndex = second.position;
}

int TChannelDetector::positionBetween(const TMark& first, const TMark& second) const
{
    TWaveletSpan span;
    m_transform.read(m_channel, first.position, second.position + 1, span);
    for (int i = first.position; i <= second.position; ++i) {
        if (second.sign * span.value(2, i) > 0.0)
            return i;
    }
    return (first.position + second.position) / 2;
}

void TChannelDetector::searchBack(int r, int limit)
{
    const int wait = toIndex(refractoryTime * m_rate);
    const int margin = toIndex(2 * TModulusMarks::searchWindow * m_rate) + 4;
    TWaveletSpan span;
    m_transform.read(m_channel, m_previousR + wait - margin, r - wait + margin, span);
    m_marks.enter(span, m_thresholds.scaled(searchBackFactor), m_previousR + wait, r - wait);
    m_marks.judge(limit);
    m_lastIndex = m_previousR;
    m_searchedBack = true;
}

void TChannelDetector::accept(int r, double rr, std::vector<TChannelBeat>& out)
{
    if (m_hasPreviousR)
        delineatePrevious(r, out);
    m_hasPreviousR = true;
    m_previousR = r;
    m_searchedBack = false;
    if (rr > refractoryTime && rr < longestRR)
        m_meanRR = 0.8 * m_meanRR + 0.2 * rr;
}

void TChannelDetector::delineatePrevious(int nextR, std::vector<TChannelBeat>& out)
{
    TDelineationTask task;
    task.samplingRate = m_rate;
    task.r = m_previousR;
    task.nextR = nextR;
    task.meanRR = m_meanRR;
    task.previousWaveEnd = m_previousWaveEnd;
    task.waves = m_delineateWaves;
    // P waves lie up to 0.5 s before, T waves up to 0.4 s behind the complex.
    TWaveletSpan span;
    m_transform.read(m_channel, task.r - m_rate, task.r + m_rate, span);
    out.push_back(delineateChannelBeat(span, m_thresholds, task));
    if (m_delineateWaves)
        m_previousWaveEnd = waveEndOf(out.back(), m_rate);
}
