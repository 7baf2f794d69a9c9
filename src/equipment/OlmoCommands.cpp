#include "equipment/OlmoCommands.h"

#include <algorithm>
#include <limits>

namespace olmo {

namespace {

constexpr char resetCommand[] = "r";
constexpr char dataCommand[] = "c";
constexpr char activateCommand[] = "a";
constexpr char prepareCommand[] = "p";
constexpr char loadCommand[] = "d";
constexpr char increaseCommand[] = "i";
constexpr char endCommand[] = "e";

std::string number(int value)
{
    return std::to_string(value) + '\n';
}

} // namespace

TStep reset()
{
    return {resetCommand, 0, false};
}

TStep askForData()
{
    return {dataCommand, 3, false};
}

TStep activate()
{
    return {activateCommand, 1, false};
}

std::vector<TStep> loadSteps(int current, int target)
{
    if (current == 0 && target > 0)
        return {{prepareCommand, 1, true}, {loadCommand, 1, true}, {number(target), 2, true}, activate()};
    if (current > 0 && target == 0)
        return {{endCommand, 2, false}};
    if (current > 0 && target > 0)
        return {{increaseCommand, 1, true}, {number(target - current), 2, false}};
    return {};
}

int wholeWatts(double watts)
{
    using TLimits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<double>(watts, TLimits::min(), TLimits::max()));
}

} // namespace olmo
