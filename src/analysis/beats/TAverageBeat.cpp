#include "analysis/beats/TAverageBeat.h"

#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <array>

using velantor::truncated;

namespace {

constexpr double secondsBeforeR = 0.45;

// Limits of a normal rhythm: seconds, and the share of the mean RR. All of them lie outside.
constexpr double minRR = 0.2;
constexpr double maxRR = 2.0;
constexpr double minRRRatio = 0.85;
constexpr double maxRRRatio = 1.2;

bool hasR(const TBeat& beat, int channel)
{
    return beat.isFiducialSet(channel, TBeat::rPosition);
}

bool isNormalOn(const TBeat& beat, int channel)
{
    return hasR(beat, channel) && beat.fiducial(channel, TBeat::qrsType) == 1.0;
}

bool hasSteadyRhythm(const TBeat& beat)
{
    const double rr = beat.value(TBeat::rr);
    const double meanRR = beat.value(TBeat::meanRR);
    const double ratio = meanRR > 0.0 ? rr / meanRR : 0.0;
    return rr > minRR && rr < maxRR && ratio > minRRRatio && ratio < maxRRRatio;
}

void removeMean(TDoubleVector& complex)
{
    const double mean = complex.mean();
    for (int i = 0; i < complex.size(); ++i)
        complex[i] -= mean;
}

} // namespace

TAverageBeat::TAverageBeat(TSignal* signal, double holdTime)
    : m_signal(signal), m_holdTime(holdTime), m_sampleCount(signal->samplingRate()),
      m_rOffset(truncated<int>(secondsBeforeR * signal->samplingRate())),
      m_complexes(signal->channelCount(), TDoubleVector(m_sampleCount)), m_stage1Complexes(m_complexes),
      m_silence(m_sampleCount), m_snippet(m_sampleCount)
{
}

void TAverageBeat::addBeat(const TBeat& beat)
{
    m_pendingBeats.push_back(beat);
    const double oldest = beat.windowStart() - m_holdTime;
    while (!m_pendingBeats.empty() && m_pendingBeats.front().windowStart() < oldest)
        m_pendingBeats.pop_front();
    m_dirty = true;
}

void TAverageBeat::complexFromBeat(const TBeat& beat)
{
    m_dirty = false;
    clearResults();
    const int channels = std::min(beat.channelCount(), m_signal->channelCount());
    while (m_dominantChannel < channels && !hasR(beat, m_dominantChannel))
        ++m_dominantChannel;
    const bool anyR = m_dominantChannel < channels;
    if (!anyR)
        m_dominantChannel = 0;
    if (!anyR && !beat.isValueSet(TBeat::beatTime))
        return;
    m_meanRR = beat.value(TBeat::rr);
    const double t = anyR ? beat.fiducial(m_dominantChannel, TBeat::rPosition) : beat.value(TBeat::beatTime);
    m_averagedTimes = {t};
    for (int channel = 0; channel < m_signal->channelCount(); ++channel)
        average(channel);
}

const TDoubleVector& TAverageBeat::complex(int channel)
{
    update();
    return isChannel(channel) ? m_complexes[channel] : m_silence;
}

int TAverageBeat::count()
{
    update();
    return static_cast<int>(m_averagedTimes.size());
}

const std::vector<double>& TAverageBeat::averagedTimes()
{
    update();
    return m_averagedTimes;
}

double TAverageBeat::meanRR()
{
    update();
    return m_meanRR;
}

int TAverageBeat::dominantChannel()
{
    update();
    return m_dominantChannel;
}

void TAverageBeat::keepReference()
{
    update();
    m_stage1Complexes = m_complexes;
    m_hasReference = true;
}

TDoubleVector TAverageBeat::reference(int channel) const
{
    return isChannel(channel) ? m_stage1Complexes[channel] : m_silence;
}

void TAverageBeat::update()
{
    if (m_dirty)
        recompute();
    m_dirty = false;
}

bool TAverageBeat::recompute()
{
    clearResults();
    m_dominantChannel = findDominantChannel();
    m_averagedTimes = selectBeats();
    if (m_averagedTimes.empty())
        return false;
    for (int channel = 0; channel < m_signal->channelCount(); ++channel)
        average(channel);
    return true;
}

void TAverageBeat::clearResults()
{
    m_averagedTimes.clear();
    m_meanRR = 0.0;
    m_dominantChannel = 0;
    for (TDoubleVector& complex : m_complexes)
        std::fill_n(complex.data(), complex.size(), 0.0);
}

int TAverageBeat::findDominantChannel() const
{
    std::array<int, velantor::maxChannels> normalBeats{};
    for (const TBeat& beat : m_pendingBeats)
        for (int channel = 0; channel < m_signal->channelCount(); ++channel)
            normalBeats[channel] += isNormalOn(beat, channel);
    // The first of equals.
    const auto greatest = std::max_element(normalBeats.begin(), normalBeats.end());
    return static_cast<int>(greatest - normalBeats.begin());
}

bool TAverageBeat::isNormal(const TBeat& beat) const
{
    return isNormalOn(beat, m_dominantChannel) && hasSteadyRhythm(beat);
}

int TAverageBeat::startOf(double t) const
{
    return truncated<int>((t - secondsBeforeR) * m_signal->samplingRate());
}

/// Whether the signal has the whole second around `t`. What it lacks would read 0, which any offset makes a
/// step in the average.
bool TAverageBeat::isHeld(double t) const
{
    const int start = startOf(t);
    return start >= m_signal->oldestSample() && start <= m_signal->sampleCount() - m_sampleCount;
}

/// The R times of the beats to average; their mean RR is set on the way.
std::vector<double> TAverageBeat::selectBeats()
{
    std::vector<double> times;
    double sum = 0.0;
    for (const TBeat& beat : m_pendingBeats) {
        const double t = beat.fiducial(m_dominantChannel, TBeat::rPosition);
        if (!isNormal(beat) || !isHeld(t))
            continue;
        times.push_back(t);
        sum += beat.value(TBeat::rr);
    }
    if (!times.empty())
        m_meanRR = sum / static_cast<double>(times.size());
    return times;
}

void TAverageBeat::average(int channel)
{
    TDoubleVector& complex = m_complexes[channel];
    for (const double t : m_averagedTimes)
        addSnippet(channel, t, complex);
    // The mean of each snippet goes with the mean of their sum, in one pass instead of one per beat.
    removeMean(complex);
    const double share = 1.0 / static_cast<double>(m_averagedTimes.size());
    for (int i = 0; i < complex.size(); ++i)
        complex[i] *= share;
}

void TAverageBeat::addSnippet(int channel, double t, TDoubleVector& sum)
{
    m_signal->readDoubles(channel, startOf(t), m_sampleCount, m_snippet.data());
    double* const to = sum.data();
    for (int i = 0; i < m_sampleCount; ++i)
        to[i] += m_snippet[i];
}

bool TAverageBeat::isChannel(int channel) const
{
    return channel >= 0 && channel < m_signal->channelCount();
}
