#include "analysis/delineation/ComplexDelineation.h"

#include "analysis/delineation/DelineationPlaces.h"
#include "analysis/delineation/TExtremePair.h"

#include <cmath>

using places::absent;
using places::known;
using places::toIndex;

namespace {

/// The scale on which the complex is seen.
constexpr int qrsScale = 2;

/// Crossings and bounds around the main pair of a complex.
struct TComplex
{
    int middle = absent;
    int left = absent;
    int right = absent;
    int start = absent;
    int end = absent;
};

class TComplexDelineator
{
public:
    TComplexDelineator(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                       const TDelineationTask& task, TChannelBeat& beat)
        : m_wavelet(wavelet), m_threshold(thresholds[qrsScale]), m_task(task), m_rate(task.samplingRate),
          m_beat(beat)
    {
    }

    void delineate();

private:
    double qrs(int i) const { return m_wavelet.value(qrsScale, i); }
    int at(int position, double seconds) const { return toIndex(position + seconds * m_rate); }
    bool isQrsExtreme(int i) const
    {
        return m_wavelet.isExtreme(qrsScale, i, 2) || m_wavelet.isExtreme(qrsScale, i, 3);
    }

    TExtremePair findMainPair() const;
    int middleCrossing(const TExtremePair& pair, int sign) const;
    void findRightLobe(const TExtremePair& pair, int sign, TComplex& complex) const;
    void findLeftLobe(const TExtremePair& pair, int sign, TComplex& complex) const;
    void takeUpright(const TComplex& complex);
    void takeInverted(const TComplex& complex);

    const TWaveletSpan& m_wavelet;
    double m_threshold;
    const TDelineationTask& m_task;
    double m_rate;
    TChannelBeat& m_beat;
};

void TComplexDelineator::delineate()
{
    const TExtremePair pair = findMainPair();
    if (!pair.isComplete())
        return;
    // Seen through the sign, the first extreme is negative and the second positive, whichever way it points.
    const int sign = pair.isUpright() ? 1 : -1;
    TComplex complex;
    complex.middle = middleCrossing(pair, sign);
    findRightLobe(pair, sign, complex);
    findLeftLobe(pair, sign, complex);
    m_beat.qrsType = static_cast<short>(sign);
    m_beat.qrsStart = complex.start;
    m_beat.qrsEnd = complex.end;
    if (pair.isUpright())
        takeUpright(complex);
    else
        takeInverted(complex);
}

TExtremePair TComplexDelineator::findMainPair() const
{
    TExtremePair pair;
    const double last = m_task.r + 0.1 * m_rate;
    for (int i = at(m_task.r, -0.1); i <= last; ++i) {
        if (isQrsExtreme(i))
            pair.take(i, qrs(i));
    }
    return pair;
}

int TComplexDelineator::middleCrossing(const TExtremePair& pair, int sign) const
{
    int k = pair.first();
    while (k < pair.second() && sign * qrs(k) <= 0.0)
        ++k;
    return std::abs(qrs(k)) >= std::abs(qrs(k - 1)) ? k - 1 : k;
}

void TComplexDelineator::findRightLobe(const TExtremePair& pair, int sign, TComplex& complex) const
{
    double deepest = -0.1 * m_threshold;
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

void TComplexDelineator::findLeftLobe(const TExtremePair& pair, int sign, TComplex& complex) const
{
    double highest = 0.1 * m_threshold;
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

void TComplexDelineator::takeUpright(const TComplex& complex)
{
    m_beat.qrsOnset = complex.left;
    m_beat.rPeak = complex.middle;
    m_beat.qrsOffset = complex.right;
}

void TComplexDelineator::takeInverted(const TComplex& complex)
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

} // namespace

void delineateComplex(const TWaveletSpan& wavelet, const TWaveletThresholds& thresholds,
                      const TDelineationTask& task, TChannelBeat& beat)
{
    TComplexDelineator(wavelet, thresholds, task, beat).delineate();
}
