#pragma once

#include "analysis/signals/TDoubleVector.h"

#include <optional>

/// Places the first markers of a resting review on one complex: where P and QRS begin and end and where T
/// ends, told from how steep the complex is. Sign does not matter; size does, for all of it is in counts.
class TSlopeDelineator
{
public:
    /// What a place is that was not found.
    static constexpr int notFound = 0;

    /// `complex` in counts at `rate` samples per second, R at `rSample`, the beat before `rrSamples` earlier.
    /// The search is made at 250 samples per second, which sets the grid of the places. A complex that spans
    /// less than 10 counts gives nothing. Without an RR, 0 or less, the end of T is looked for
    /// within 0.2 s of R only. There is one wherever the QRS has an end and the search has room.
    void analyse(const TDoubleVector& complex, int rate, int rSample, int rrSamples);

    // Samples from the start of the complex, at its own rate and within it.
    int pOnset() const { return m_places.pOnset; }
    int pOffset() const { return m_places.pOffset; }
    int qrsOnset() const { return m_places.qrsOnset; }
    int qrsOffset() const { return m_places.qrsOffset; }
    int tOffset() const { return m_places.tOffset; }

private:
    struct TPlaces
    {
        int pOnset = notFound;
        int pOffset = notFound;
        int qrsOnset = notFound;
        int qrsOffset = notFound;
        int tOffset = notFound;
    };

    void reduce(const TDoubleVector& complex, int rate, int rSample, int rrSamples);
    void findQrs();
    void findPWave();
    void findTOffset();
    void scaleBack(int rate, int size);

    std::optional<int> qrsBorder(int direction) const;
    std::optional<int> firstFlat(int direction, double limit) const;
    double spanOfFour(int border, int direction) const;
    std::optional<int> peakOfT(int from, int to) const;
    double qrsSpan() const;
    int size() const { return m_complex.size(); }

    // The complex at 250 samples per second, and what belongs to it.
    TDoubleVector m_complex;
    int m_r = 0;
    double m_rrSamples = 0.0;
    TPlaces m_places;
};
