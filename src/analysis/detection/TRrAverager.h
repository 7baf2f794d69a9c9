#pragma once

#include <array>

/// The mean of the last RR intervals. It runs one interval behind, so that an interval is judged by those
/// before it.
class TRrAverager
{
public:
    static constexpr int slotCount = 8;

    /// Mean of the positive slots as they stood before the last interval went in, in seconds; 0 if there was
    /// none.
    double value() const { return m_value; }
    /// Slots that hold an interval.
    int filledCount() const;
    /// Takes an interval in seconds in place of the oldest.
    void put(double rr);
    void clear();

private:
    std::array<double, slotCount> m_slots{};
    int m_next = 0;
    double m_value = 0.0;
};
