#pragma once

#include "analysis/delineation/TWaveletSpan.h"
#include "analysis/signals/TDoubleSignal.h"
#include "analysis/signals/TFirStreamDouble.h"

#include <array>
#include <limits>
#include <memory>

/// The quadratic-spline wavelet transform of a growing signal at the scales 2, 4, 8 and 16, numbered 1 to 4.
/// Positions are those of the signal. The last
/// 10 blocks of each scale are kept, 40 s at least.
class TWaveletTransform
{
public:
    /// Begins at `position` of `signal`, which is borrowed. Nothing is computed from samples before it: they
    /// are not known, and taken as 0 they would make a step of what is only an offset.
    TWaveletTransform(TSignal* signal, int position);

    /// Transforms what the signal has gained, but nothing from `end` on: who steps through a long stretch
    /// reads each step before the next one takes its place.
    void run(int end = std::numeric_limits<int>::max());
    /// First position of all.
    int begin() const { return m_origin; }
    /// First position behind the transform of every scale.
    int end() const;
    /// What `end()` is once the first `sampleCount` samples of the signal are transformed.
    int endFor(int sampleCount) const;
    /// Values over [`begin`, `end`) as far as they are computed; the span is cut to that.
    void read(int channel, int begin, int end, TWaveletSpan& span) const;

private:
    struct TScale
    {
        int firstKnown = 0; ///< from the origin; 0 before
        std::unique_ptr<TFirStreamDouble> stream;
        std::unique_ptr<TDoubleSignal> output;
    };

    int m_origin;
    std::array<TScale, TWaveletSpan::scaleCount> m_scales;
};
