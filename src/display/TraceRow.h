#pragma once

#include "analysis/signals/Truncation.h"

#include <algorithm>

/// Where one lead lies: a sample's y is `centre` - (sample - `offset`) * `pixelsPerCount`. `pixelsPerCount`
/// is negative for an inverted lead. Device pixels.
struct TraceRow
{
    double centre = 0.0;
    double pixelsPerCount = 0.0;
    int offset = 0;

    /// Truncated, and no further out of the picture than painters can reckon with.
    int pixelY(int sample) const
    {
        constexpr double outside = 30000.0;
        const double y = centre - (static_cast<double>(sample) - offset) * pixelsPerCount;
        return velantor::truncated<int>(std::clamp(y, -outside, outside));
    }
};
