#pragma once

#include "simulators/DeviceFrames.h"

#include <QString>

#include <array>
#include <memory>

namespace sim {

using TSamples = std::array<std::int16_t, 11>;

/// Where the samples of a simulated device come from.
class TSampleSource
{
public:
    virtual ~TSampleSource() = default;
    /// The sampling instant of that number; sources without an end go round.
    virtual TSamples frame(std::int64_t index) const = 0;
};

/// A sample of the test pattern: every channel and every instant differs from its neighbours, and all stay
/// within the range that does not count as saturated.
std::int16_t patternSample(int channel, std::int64_t index);

/// The test pattern; a 14-channel file of interleaved samples in our channel order; or a WFDB record, whose
/// leads are found by name and brought to `framesPerSecond` and counts of a device that ranges to
/// `rangeMillivolts`. `source` is "pattern", a path ending in ".dat" without a header beside it, or a record.
/// Throws TError.
std::unique_ptr<TSampleSource> makeSampleSource(const QString& source, int framesPerSecond,
                                                double rangeMillivolts);

} // namespace sim
