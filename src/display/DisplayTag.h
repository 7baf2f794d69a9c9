#pragma once

/// Tags under which the signal displays take their colours.
struct DisplayTag
{
    enum TTag
    {
        trace, ///< and the separator of the inset
        background,
        grid,
        label, ///< lead labels, time ruler
        averageBeat,
        referenceBeat,
        saturation, ///< stretches of trace at the end of the converter's range
        beatTick,
        cursor,
        fiducial, ///< ticks and ST figure in the inset
        selectedBeat
    };

    /// Saturated stretches shine through whatever colour is chosen for them.
    static constexpr int saturationAlpha = 128;
};
