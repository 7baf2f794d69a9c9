#include "analysis/detection/TBeatDetector.h"

#include "analysis/beats/TBeatStore.h"
#include "analysis/detection/BeatAssembly.h"
#include "analysis/detection/ChannelQuality.h"
#include "analysis/signals/TSignal.h"

#include <algorithm>
#include <limits>

namespace {

/// Seconds.
constexpr double shortestUpdate = 0.2;
/// Far below what the marks reach back: with longer steps the thresholds, which look at the last 4 s of a
/// step, would not be those of its beginning.
constexpr double longestStep = 2.0;
constexpr double shortestRR = 0.2;
constexpr double pendingReach = 0.15;
constexpr double togetherWindow = 0.075;

/// With more channels than this, a beat that few of them know waits for the others, so many times.
constexpr int fewChannels = 4;
constexpr int longestWait = 2;

/// A start beyond any recording; what is computed around it still has to fit an int.
constexpr int latestStart = std::numeric_limits<int>::max() / 2;

} // namespace

TBeatDetector::TBeatDetector() : m_rhythm([this](const TBeat& beat) { emitBeat(beat); }) {}

void TBeatDetector::reset(TSignal* signal, double startTime, double endTime)
{
    m_signal = signal;
    m_lag = signal->samplingRate();
    m_position = std::clamp(signal->indexOf(startTime), 0, latestStart);
    m_startTime = startTime;
    m_endTime = endTime;
    m_waitCount = 0;
    m_queues.assign(signal->channelCount(), TQueue());
    m_rhythm.clear();
}

void TBeatDetector::clear()
{
    m_signal = nullptr;
    m_position = 0;
    m_waitCount = 0;
    m_queues.clear();
    m_rhythm.clear();
}

void TBeatDetector::addListener(TBeatListener* listener)
{
    if (listener && !hasListener(listener))
        m_listeners.push_back(listener);
}

void TBeatDetector::removeListener(TBeatListener* listener)
{
    std::erase(m_listeners, listener);
}

bool TBeatDetector::hasListener(const TBeatListener* listener) const
{
    return std::find(m_listeners.begin(), m_listeners.end(), listener) != m_listeners.end();
}

void TBeatDetector::update()
{
    if (!m_signal)
        return;
    const int end = m_signal->sampleCount() - m_lag;
    if (m_signal->timeOf(m_position) + m_signal->timeOf(m_lag) + shortestUpdate > m_signal->duration() ||
        end <= m_position)
        return;
    advance(end);
}

void TBeatDetector::finish()
{
    if (!m_signal)
        return;
    const int end = lastPosition();
    if (end > m_position + m_lag)
        advance(end - m_lag);
    prepare(m_signal->sampleCount());
    for (int channel = 0; channel < m_signal->channelCount(); ++channel) {
        m_candidates.clear();
        finishChannel(channel, m_position, std::max(end, m_position), m_candidates);
        queueCandidates(channel, m_candidates);
    }
    m_position = std::max(end, m_position);
    merge(1);
    m_rhythm.finish();
}

int TBeatDetector::lastPosition() const
{
    return m_signal->sampleCount();
}

int TBeatDetector::finishChannel(int channel, int from, int to, std::vector<TChannelBeat>& out)
{
    return detectChannel(channel, from, to, out);
}

void TBeatDetector::advance(int end)
{
    const int longest = m_signal->indexOf(longestStep);
    while (m_position < end)
        detectStep(std::min(end, m_position + longest));
}

void TBeatDetector::detectStep(int to)
{
    // The lag, and as much again for a recording that has ended, where the step may end closer to its end.
    prepare(to + 2 * m_lag);
    for (int channel = 0; channel < m_signal->channelCount(); ++channel) {
        m_candidates.clear();
        detectChannel(channel, m_position, to, m_candidates);
        queueCandidates(channel, m_candidates);
    }
    merge(2);
    m_position = to;
}

void TBeatDetector::queueCandidates(int channel, const std::vector<TChannelBeat>& candidates)
{
    m_queues[channel].insert(m_queues[channel].end(), candidates.begin(), candidates.end());
}

/// Makes beats of the candidates as long as a queue holds as many as are `needed`.
void TBeatDetector::merge(std::size_t needed)
{
    dropPassed();
    const bool mayWait = needed > 1;
    while (hasQueued(needed)) {
        if (mayWait && isWorthWaiting() && m_waitCount < longestWait) {
            ++m_waitCount;
            return;
        }
        m_waitCount = 0;
        mergeHeads();
    }
}

void TBeatDetector::dropPassed()
{
    if (!m_rhythm.hasPrevious())
        return;
    const double limit = m_rhythm.previous().value(TBeat::beatTime) + shortestRR;
    for (TQueue& queue : m_queues) {
        while (!queue.empty() && m_signal->timeOf(queue.front().rPosition) <= limit)
            queue.pop_front();
    }
}

bool TBeatDetector::hasQueued(std::size_t count) const
{
    return std::any_of(m_queues.begin(), m_queues.end(),
                       [count](const TQueue& queue) { return queue.size() >= count; });
}

/// Whether most channels have no candidate yet.
bool TBeatDetector::isWorthWaiting() const
{
    const auto count =
        std::count_if(m_queues.begin(), m_queues.end(), [](const TQueue& queue) { return !queue.empty(); });
    const auto channels = static_cast<std::ptrdiff_t>(m_queues.size());
    return channels > fewChannels && 2 * count <= channels;
}

int TBeatDetector::earliestHead() const
{
    int earliest = -1;
    for (const TQueue& queue : m_queues) {
        if (!queue.empty() && (earliest < 0 || queue.front().rPosition < earliest))
            earliest = queue.front().rPosition;
    }
    return earliest;
}

void TBeatDetector::mergeHeads()
{
    const double last = earliestHead() + togetherWindow * m_signal->samplingRate();
    std::vector<TChannelBeat> records(m_queues.size());
    std::vector<int> positions;
    for (std::size_t channel = 0; channel < m_queues.size(); ++channel) {
        TQueue& queue = m_queues[channel];
        if (queue.empty() || queue.front().rPosition > last)
            continue;
        records[channel] = queue.front();
        positions.push_back(queue.front().rPosition);
        queue.pop_front();
    }
    std::sort(positions.begin(), positions.end());
    acceptBeat(positions[positions.size() / 2], records);
}

void TBeatDetector::acceptBeat(int position, std::vector<TChannelBeat>& records)
{
    const double t = m_signal->timeOf(position);
    if (!isInTime(t))
        return;
    const std::vector<bool> usable = dropUnusable(t, records);
    const double agreement = assembly::agreement(records, usable);
    if (agreement < assembly::requiredAgreement(static_cast<int>(records.size())) || agreement <= 0.0)
        return;
    TBeat beat = assembly::beatFrom(records, position, *m_signal);
    beat.setValue(TBeat::rr, m_rhythm.hasPrevious() ? assembly::medianRr(beat, m_rhythm.previous()) : 0.0);
    assembly::setWindow(beat, records, *m_signal);
    m_rhythm.take(beat, agreement);
}

bool TBeatDetector::isInTime(double t)
{
    if (t < m_startTime || (m_endTime > 0.0 && t > m_endTime))
        return false;
    if (m_rhythm.hasPrevious() && t <= m_rhythm.previous().value(TBeat::beatTime) + shortestRR)
        return false;
    if (m_rhythm.hasPending() && t <= m_rhythm.pending().value(TBeat::beatTime) + pendingReach)
        m_rhythm.forgetPending();
    return true;
}

/// Takes the vote from channels that are clipped or flat around `t`; a single channel always keeps it.
std::vector<bool> TBeatDetector::dropUnusable(double t, std::vector<TChannelBeat>& records)
{
    std::vector<bool> usable(records.size(), true);
    for (std::size_t channel = 0; records.size() > 1 && channel < records.size(); ++channel) {
        usable[channel] = quality::isUsable(*m_signal, static_cast<int>(channel), t);
        if (!usable[channel])
            records[channel] = TChannelBeat();
    }
    return usable;
}

void TBeatDetector::emitBeat(const TBeat& beat)
{
    TBeat stored = beat;
    if (m_beatStore)
        stored.setIndex(m_beatStore->add(beat));
    // Listeners may come and go while they are told.
    const std::vector<TBeatListener*> listeners = m_listeners;
    for (TBeatListener* listener : listeners) {
        if (hasListener(listener))
            listener->beatFound(stored);
    }
}
