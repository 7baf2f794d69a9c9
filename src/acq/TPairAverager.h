#pragma once

#include "acq/TEcgSample.h"

/// Halves the rate of the high-rate device: of each two samples one is made.
class TPairAverager
{
public:
    /// Whether `sample` was the second of a pair; its channels are the means of both then, rounded down. The
    /// first one is kept and not to be used.
    bool add(TEcgSample& sample);

private:
    TEcgSample::TChannels m_stored{};
    bool m_hasStored = false;
};
