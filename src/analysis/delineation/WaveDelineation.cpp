#include "analysis/delineation/WaveDelineation.h"

#include "analysis/delineation/DelineationPlaces.h"
#include "analysis/delineation/TExtremePair.h"

#include <algorithm>
#include <cmath>

using places::known;
using places::toIndex;

namespace {

/// The scale on which the slower waves are seen.
constexpr int waveScale = 4;

int signOf(double x)
{
    return (x > 0.0) - (x < 0.0);
}

/// Which way the wave between the pair points.
int signOf(const TExtremePair& pair)
{
    return pair.isUpright() ? 1 : -1;
}

class TWaveDelineator
{
public:
    TWaveDelineator(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                    const TDelineationTask& task, TChannelBeat& beat)
        : m_wavelet(wavelet), m_threshold(thresholds[waveScale]), m_task(task), m_rate(task.samplingRate),
          m_beat(beat)
    {
    }

    void delineateP();
    void delineateT();
    void findIsoelectricPoint();
    void findStPoint();

private:
    double wave(int i) const { return m_wavelet.value(waveScale, i); }
    int at(int position, double seconds) const { return toIndex(position + seconds * m_rate); }
    int pWindowStart() const;
    int pWindowEnd() const;
    int tWindowEnd() const;
    TExtremePair findWavePair(int from, int to, double limit) const;
    bool isFlat(int i) const;

    const TWaveletSpan& m_wavelet;
    double m_threshold;
    const TDelineationTask& m_task;
    double m_rate;
    TChannelBeat& m_beat;
};

int TWaveDelineator::pWindowStart() const
{
    if (known(m_task.previousWaveEnd) && m_task.previousWaveEnd > m_task.r - 0.3 * m_rate)
        return at(m_task.previousWaveEnd, 0.05);
    if (known(m_beat.qrsStart))
        return at(m_beat.qrsStart, -0.25);
    if (known(m_beat.qrsOnset))
        return at(m_beat.qrsOnset, -0.25);
    return at(known(m_beat.rPeak) ? m_beat.rPeak : m_task.r, -0.3);
}

int TWaveDelineator::pWindowEnd() const
{
    if (known(m_beat.qrsStart))
        return at(m_beat.qrsStart, -0.005);
    if (known(m_beat.qrsOnset))
        return at(m_beat.qrsOnset, -0.01);
    return at(known(m_beat.rPeak) ? m_beat.rPeak : m_task.r, -0.05);
}

TExtremePair TWaveDelineator::findWavePair(int from, int to, double limit) const
{
    TExtremePair pair;
    for (int i = from; i <= to; ++i) {
        if (std::abs(wave(i)) > limit && m_wavelet.isExtreme(waveScale, i, 2))
            pair.take(i, wave(i));
    }
    return pair;
}

void TWaveDelineator::delineateP()
{
    const TExtremePair pair = findWavePair(pWindowStart(), pWindowEnd(), 0.3 * m_threshold);
    if (!pair.isComplete())
        return;
    const int sign = signOf(pair);
    int k = pair.second();
    while (k > pair.first() && sign * wave(k) >= 0.0)
        --k;
    m_beat.pPeak = std::abs(wave(k)) >= std::abs(wave(k + 1)) ? k + 1 : k;
    m_beat.pType = static_cast<short>(sign);
    m_beat.pStart = at(pair.first(), -0.01);
    m_beat.pEnd = at(pair.second(), 0.01);
}

int TWaveDelineator::tWindowEnd() const
{
    const double limit = m_task.nextR - 0.1 * m_rate;
    if (limit < m_task.r + 0.35 * m_rate)
        return toIndex(limit);
    const double reach = m_task.meanRR >= 0.7 ? 0.4 : 0.5 * m_task.meanRR;
    return toIndex(std::min(m_task.r + reach * m_rate, limit));
}

void TWaveDelineator::delineateT()
{
    const TExtremePair pair = findWavePair(at(m_task.r, 0.1), tWindowEnd(), 0.5 * m_threshold);
    if (!pair.isComplete())
        return;
    const int sign = signOf(pair);
    int k = pair.first();
    while (k < pair.second() && sign * wave(k) <= 0.0)
        ++k;
    m_beat.tPeak = std::abs(wave(k)) >= std::abs(wave(k - 1)) ? k - 1 : k;
    m_beat.tType = static_cast<short>(sign);
    m_beat.tStart = at(pair.first(), -0.02);
    m_beat.tEnd = at(pair.second(), 0.02);
}

/// Whether the integer half of the difference across `i` is 0 on one of the two coarse scales.
bool TWaveDelineator::isFlat(int i) const
{
    for (const int scale : {4, 3}) {
        if (toIndex(std::abs(m_wavelet.value(scale, i - 1) - m_wavelet.value(scale, i + 1))) / 2 == 0)
            return true;
    }
    return false;
}

void TWaveDelineator::findIsoelectricPoint()
{
    if (!known(m_beat.rPeak))
        return;
    const bool hasOnset = known(m_beat.qrsOnset);
    const int start = hasOnset ? at(m_beat.qrsOnset, -0.01) : at(m_beat.rPeak, -0.02);
    const int limit = hasOnset ? at(m_beat.qrsOnset, -0.1) : at(m_beat.rPeak, -0.2);
    for (int i = start; i > limit; --i) {
        if (isFlat(i)) {
            m_beat.isoelectricPoint = i;
            return;
        }
    }
}

void TWaveDelineator::findStPoint()
{
    if (!known(m_beat.qrsOffset) && !known(m_beat.rPeak))
        return;
    const int start = known(m_beat.qrsOffset) ? at(m_beat.qrsOffset, 0.01) : at(m_beat.rPeak, 0.05);
    const int end = known(m_beat.tPeak) ? at(m_beat.tPeak, -0.05) : at(start, 0.2);
    for (int i = start; i <= end; ++i) {
        if (signOf(wave(i - 2)) != signOf(wave(i + 2)))
            m_beat.stPoint = i;
    }
}

} // namespace

void delineateWaves(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                    const TDelineationTask& task, TChannelBeat& beat)
{
    TWaveDelineator waves(wavelet, thresholds, task, beat);
    waves.delineateP();
    waves.delineateT();
    waves.findIsoelectricPoint();
    waves.findStPoint();
}
