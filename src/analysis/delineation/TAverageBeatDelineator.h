#pragma once

#include "analysis/delineation/QuadraticSplineWavelet.h"
#include "analysis/signals/TDoubleVector.h"

#include <array>
#include <optional>

/// Finds where the waves of one complex begin, turn and end, by the quadratic-spline wavelet: the ST points
/// of an exercise test and the first places of the markers in a review come from it. Nothing but the shape of
/// the complex counts, neither its size nor its sign. The method is that of Martinez et al., "A wavelet-based
/// ECG delineator", IEEE Trans. Biomed. Eng. 51 (2004), on one complex.
class TAverageBeatDelineator
{
public:
    /// What a place is that was not found. There is a P or a T wave if its peak is above 0, and a QRS complex
    /// if `rPosition()` is.
    static constexpr int notFound = 0;

    TAverageBeatDelineator();

    /// `complex` in any unit at `rate` samples per second, R at or near `rSample`, the beat before
    /// `rrSamples` earlier. From 500 samples per second on, the places lie on a coarser grid of about 250 per
    /// second. Without an RR, 0 or less, there is no room for P and T waves.
    void analyse(const TDoubleVector& complex, int rate, int rSample, int rrSamples);

    // Samples from the start of the complex, at its own rate and within it.
    int pOnset() const { return m_places.pOnset; }
    int pPeak() const { return m_places.pPeak; }
    int pOffset() const { return m_places.pOffset; }
    int qrsOnset() const { return m_places.qrsOnset; }
    /// Turn of the main deflection, be it upward or downward.
    int rPosition() const { return m_places.rPosition; }
    /// Turn of the smaller deflection before the main one.
    int qPeak() const { return m_places.qPeak; }
    /// Equals `rPosition()`.
    int rPeak() const { return m_places.rPeak; }
    /// Turn of the smaller deflection after the main one.
    int sPeak() const { return m_places.sPeak; }
    int qrsOffset() const { return m_places.qrsOffset; }
    int tOnset() const { return m_places.tOnset; }
    int tPeak() const { return m_places.tPeak; }
    int tOffset() const { return m_places.tOffset; }

private:
    struct TPlaces
    {
        int pOnset = notFound;
        int pPeak = notFound;
        int pOffset = notFound;
        int qrsOnset = notFound;
        int rPosition = notFound;
        int qPeak = notFound;
        int rPeak = notFound;
        int sPeak = notFound;
        int qrsOffset = notFound;
        int tOnset = notFound;
        int tPeak = notFound;
        int tOffset = notFound;
    };

    /// Two samples, in the order of time.
    struct TPair
    {
        int first;
        int second;
    };

    void reduce(const TDoubleVector& complex, int rate, int rSample, int rrSamples);
    void transform();
    void findQrs();
    void findWavesBeforeQrs(TPair main);
    void findWavesAfterQrs(TPair main);
    void findPWave();
    void findTWave();
    void scaleBack();

    double startOfPSearch() const;
    double endOfPSearch() const;
    std::optional<TPair> mainPair() const;
    std::optional<TPair> wavePair(double from, double to, double limit) const;
    std::optional<int> outerExtreme(int from, int step, double reach, double limit) const;
    int turnOfR(TPair main) const;
    bool isQrsExtreme(int i) const;
    TPair within(double from, double to) const;
    int size() const { return m_complex.size(); }

    std::array<TDoubleVector, velantor::waveletScales> m_filters;

    // The complex at the reduced rate, and what belongs to it.
    TDoubleVector m_complex;
    int m_factor = 1;
    double m_rate = 0.0;
    double m_rSample = 0.0;
    double m_rrSamples = 0.0;
    TDoubleVector m_w1;
    TDoubleVector m_w2;
    TDoubleVector m_w4;
    double m_qrsThreshold = 0.0;
    double m_waveThreshold = 0.0;
    TPlaces m_places;
};
