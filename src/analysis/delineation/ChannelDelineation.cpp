#include "analysis/delineation/ChannelDelineation.h"

#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int absent = TChannelBeat::absent;

/// The scale of the complex, and that of the slower waves.
constexpr int qrsScale = 2;
constexpr int waveScale = 4;

int toIndex(double position)
{
    return velantor::truncated<int>(position);
}

bool known(int position)
{
    return TChannelBeat::known(position);
}

int signOf(double x)
{
    return (x > 0.0) - (x < 0.0);
}

/// The two modulus maxima between which a wave lies.
struct TExtremePair
{
    int maxAt = absent;
    int minAt = absent;
    double maxValue = 0.0;
    double minValue = 0.0;

    void take(int i, double value)
    {
        if (value > maxValue) {
            maxValue = value;
            maxAt = i;
        } else if (value < minValue) {
            minValue = value;
            minAt = i;
        }
    }
    bool isComplete() const { return known(maxAt) && known(minAt); }
    bool isUpright() const { return minAt < maxAt; }
    short type() const { return isUpright() ? 1 : -1; }
    int first() const { return std::min(maxAt, minAt); }
    int second() const { return std::max(maxAt, minAt); }
};

/// Crossings and bounds around the main pair of a complex.
struct TComplex
{
    int middle = absent;
    int left = absent;
    int right = absent;
    int start = absent;
    int end = absent;
};

class TChannelDelineator
{
public:
    TChannelDelineator(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                       const TDelineationTask& task)
        : m_wavelet(wavelet), m_thresholds(thresholds), m_task(task), m_rate(task.samplingRate)
    {
        m_beat.rPosition = task.r;
    }

    TChannelBeat delineate();

private:
    double qrs(int i) const { return m_wavelet.value(qrsScale, i); }
    double wave(int i) const { return m_wavelet.value(waveScale, i); }
    int at(int position, double seconds) const { return toIndex(position + seconds * m_rate); }
    bool isQrsExtreme(int i) const
    {
        return m_wavelet.isExtreme(qrsScale, i, 2) || m_wavelet.isExtreme(qrsScale, i, 3);
    }

    void delineateQrs();
    TExtremePair findMainPair() const;
    int middleCrossing(const TExtremePair& pair, int sign) const;
    void findRightLobe(const TExtremePair& pair, int sign, TComplex& complex) const;
    void findLeftLobe(const TExtremePair& pair, int sign, TComplex& complex) const;
    void takeUpright(const TComplex& complex);
    void takeInverted(const TComplex& complex);
    int pWindowStart() const;
    int pWindowEnd() const;
    void delineateP();
    int tWindowEnd() const;
    void delineateT();
    TExtremePair findWavePair(int from, int to, double limit) const;
    bool isFlat(int i) const;
    void findIsoelectricPoint();
    void findStPoint();

    const TWaveletSpan& m_wavelet;
    const TWaveletThresholds& m_thresholds;
    const TDelineationTask& m_task;
    double m_rate;
    TChannelBeat m_beat;
};

TChannelBeat TChannelDelineator::delineate()
{
    delineateQrs();
    if (m_task.waves) {
        delineateP();
        delineateT();
        findIsoelectricPoint();
        findStPoint();
    }
    return m_beat;
}

void TChannelDelineator::delineateQrs()
{
    const TExtremePair pair = findMainPair();
    if (!pair.isComplete())
        return;
    // Seen through the sign, the first extreme is negative and the second positive, whichever way it points.
    const int sign = pair.type();
    TComplex complex;
    complex.middle = middleCrossing(pair, sign);
    findRightLobe(pair, sign, complex);
    findLeftLobe(pair, sign, complex);
    m_beat.qrsType = pair.type();
    m_beat.qrsStart = complex.start;
    m_beat.qrsEnd = complex.end;
    if (pair.isUpright())
        takeUpright(complex);
    else
        takeInverted(complex);
}

TExtremePair TChannelDelineator::findMainPair() const
{
    TExtremePair pair;
    const double last = m_task.r + 0.1 * m_rate;
    for (int i = at(m_task.r, -0.1); i <= last; ++i) {
        if (isQrsExtreme(i))
            pair.take(i, qrs(i));
    }
    return pair;
}

int TChannelDelineator::middleCrossing(const TExtremePair& pair, int sign) const
{
    int k = pair.first();
    while (k < pair.second() && sign * qrs(k) <= 0.0)
        ++k;
    return std::abs(qrs(k)) >= std::abs(qrs(k - 1)) ? k - 1 : k;
}

void TChannelDelineator::findRightLobe(const TExtremePair& pair, int sign, TComplex& complex) const
{
    double deepest = -0.1 * m_thresholds[qrsScale];
    int lobe = absent;
    const double last = pair.second() + 0.05 * m_rate;
    for (int j = pair.second(); j <= last; ++j) {
        if (sign * qrs(j) < deepest && isQrsExtreme(j)) {
            deepest = sign * qrs(j);
            lobe = j;
        }
    }
    if (!known(lobe)) {
        complex.end = toIndex(pair.second() + 0.05 * m_rate - 0.01 * m_rate);
        return;
    }
    complex.end = at(lobe, 0.005);
    int k = pair.second();
    while (k < lobe && sign * qrs(k) >= 0.0)
        ++k;
    if (sign * qrs(k) < 0.0)
        complex.right = k - 1;
}

void TChannelDelineator::findLeftLobe(const TExtremePair& pair, int sign, TComplex& complex) const
{
    double highest = 0.1 * m_thresholds[qrsScale];
    int lobe = absent;
    const double last = pair.first() - 0.05 * m_rate;
    for (int j = pair.first(); j >= last; --j) {
        if (sign * qrs(j) > highest && isQrsExtreme(j)) {
            highest = sign * qrs(j);
            lobe = j;
        }
    }
    if (!known(lobe)) {
        complex.start = toIndex(pair.first() - 0.05 * m_rate + 0.01 * m_rate);
        return;
    }
    complex.start = at(lobe, -0.005);
    int k = pair.first();
    while (k > lobe && sign * qrs(k) <= 0.0)
        --k;
    if (sign * qrs(k) > 0.0)
        complex.left = k + 1;
}

void TChannelDelineator::takeUpright(const TComplex& complex)
{
    m_beat.qrsOnset = complex.left;
    m_beat.rPeak = complex.middle;
    m_beat.qrsOffset = complex.right;
}

void TChannelDelineator::takeInverted(const TComplex& complex)
{
    if (known(complex.left)) {
        // An R before a deep S.
        m_beat.rPeak = complex.left;
        m_beat.qrsOffset = complex.middle;
        return;
    }
    // A Q before an R, or a QS complex, which has no R.
    m_beat.qrsOnset = complex.middle;
    m_beat.rPeak = complex.right;
    if (!known(complex.right))
        m_beat.qrsOffset = complex.middle;
}

int TChannelDelineator::pWindowStart() const
{
    if (known(m_task.previousWaveEnd) && m_task.previousWaveEnd > m_task.r - 0.3 * m_rate)
        return at(m_task.previousWaveEnd, 0.05);
    if (known(m_beat.qrsStart))
        return at(m_beat.qrsStart, -0.25);
    if (known(m_beat.qrsOnset))
        return at(m_beat.qrsOnset, -0.25);
    return at(known(m_beat.rPeak) ? m_beat.rPeak : m_task.r, -0.3);
}

int TChannelDelineator::pWindowEnd() const
{
    if (known(m_beat.qrsStart))
        return at(m_beat.qrsStart, -0.005);
    if (known(m_beat.qrsOnset))
        return at(m_beat.qrsOnset, -0.01);
    return at(known(m_beat.rPeak) ? m_beat.rPeak : m_task.r, -0.05);
}

TExtremePair TChannelDelineator::findWavePair(int from, int to, double limit) const
{
    TExtremePair pair;
    for (int i = from; i <= to; ++i) {
        if (std::abs(wave(i)) > limit && m_wavelet.isExtreme(waveScale, i, 2))
            pair.take(i, wave(i));
    }
    return pair;
}

void TChannelDelineator::delineateP()
{
    const TExtremePair pair = findWavePair(pWindowStart(), pWindowEnd(), 0.3 * m_thresholds[waveScale]);
    if (!pair.isComplete())
        return;
    const int sign = pair.type();
    int k = pair.second();
    while (k > pair.first() && sign * wave(k) >= 0.0)
        --k;
    m_beat.pPeak = std::abs(wave(k)) >= std::abs(wave(k + 1)) ? k + 1 : k;
    m_beat.pType = pair.type();
    m_beat.pStart = at(pair.first(), -0.01);
    m_beat.pEnd = at(pair.second(), 0.01);
}

int TChannelDelineator::tWindowEnd() const
{
    const double limit = m_task.nextR - 0.1 * m_rate;
    if (limit < m_task.r + 0.35 * m_rate)
        return toIndex(limit);
    const double reach = m_task.meanRR >= 0.7 ? 0.4 : 0.5 * m_task.meanRR;
    return toIndex(std::min(m_task.r + reach * m_rate, limit));
}

void TChannelDelineator::delineateT()
{
    const TExtremePair pair = findWavePair(at(m_task.r, 0.1), tWindowEnd(), 0.5 * m_thresholds[waveScale]);
    if (!pair.isComplete())
        return;
    const int sign = pair.type();
    int k = pair.first();
    while (k < pair.second() && sign * wave(k) <= 0.0)
        ++k;
    m_beat.tPeak = std::abs(wave(k)) >= std::abs(wave(k - 1)) ? k - 1 : k;
    m_beat.tType = pair.type();
    m_beat.tStart = at(pair.first(), -0.02);
    m_beat.tEnd = at(pair.second(), 0.02);
}

/// Whether the integer half of the difference across `i` is 0 on one of the two coarse scales.
bool TChannelDelineator::isFlat(int i) const
{
    for (const int scale : {4, 3}) {
        if (toIndex(std::abs(m_wavelet.value(scale, i - 1) - m_wavelet.value(scale, i + 1))) / 2 == 0)
            return true;
    }
    return false;
}

void TChannelDelineator::findIsoelectricPoint()
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

void TChannelDelineator::findStPoint()
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

TChannelBeat delineateChannelBeat(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                                  const TDelineationTask& task)
{
    return TChannelDelineator(wavelet, thresholds, task).delineate();
}

int waveEndOf(const TChannelBeat& beat, int samplingRate)
{
    const auto after = [&](int position, double seconds) {
        return toIndex(position + seconds * samplingRate);
    };
    if (known(beat.tEnd))
        return beat.tEnd;
    if (known(beat.tPeak))
        return after(beat.tPeak, 0.1);
    if (known(beat.tStart))
        return after(beat.tStart, 0.2);
    if (known(beat.qrsEnd))
        return after(beat.qrsEnd, 0.3);
    if (known(beat.qrsOffset))
        return after(beat.qrsOffset, 0.4);
    return after(known(beat.rPeak) ? beat.rPeak : beat.rPosition, 0.4);
}
