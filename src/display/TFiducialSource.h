#pragma once

#include <array>

/// Where the inset of a display learns the measuring points of the average beat. Whoever installs it owns it.
class TFiducialSource
{
public:
    struct TFiducials
    {
        /// Sample indices into the average beat.
        std::array<int, 3> indices{};
        /// ST level in mV.
        double stLevel = 0.0;
    };

    virtual ~TFiducialSource() = default;

    /// False if nothing is known of the channel.
    virtual bool fiducials(int channel, TFiducials* found) = 0;
};
