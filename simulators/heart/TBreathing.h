#pragma once

#include <vector>

namespace heart {

/// The breath over the recording, a whole number of breaths.
class TBreathing
{
public:
    TBreathing();

    /// How full the lungs are: -1 to 1. Any time; it is taken modulo the recording.
    double fill(double time) const;

private:
    /// Breaths since the beginning, per frame.
    std::vector<double> m_turns;
};

} // namespace heart
