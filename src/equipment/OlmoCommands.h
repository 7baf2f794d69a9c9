#pragma once

#include <string>
#include <vector>

/// The language of the OLMO ergometer: one-letter commands and numbers; the device answers with lines.
namespace olmo {

inline constexpr int baud = 9600;
/// An answer's line; a device that never ends one must not hold the driver up.
inline constexpr int maxLineBytes = 256;

/// One thing that is sent, and what comes of it.
struct TStep
{
    std::string text;
    int answerLines = 0;
    bool isFollowedByPause = false;

    bool operator==(const TStep&) const = default;
};

/// Also takes the load away.
TStep reset();
TStep askForData();
TStep activate();
/// What brings the load from `current` to `target`, in watts; nothing if there is nothing to do.
std::vector<TStep> loadSteps(int current, int target);

/// Whole watts of a finite value, truncated; what is beyond an int becomes the nearest one.
int wholeWatts(double watts);

} // namespace olmo
