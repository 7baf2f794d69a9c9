#pragma once

/// Where one lead lies: a sample's y is `centre` - (sample - `offset`) * `pixelsPerCount`, truncated.
/// `pixelsPerCount` is negative for an inverted lead. Device pixels.
struct TraceRow
{
    double centre = 0.0;
    double pixelsPerCount = 0.0;
    int offset = 0;

    /// In doubles, for the counts of some signals take all of an int.
    double y(double sample) const { return centre - (sample - offset) * pixelsPerCount; }
};
