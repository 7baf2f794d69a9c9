#pragma once

#include <algorithm>

/// The greatest positive and the most negative of some values: the two modulus maxima between which a wave
/// lies.
class TExtremePair
{
public:
    void take(int place, double value)
    {
        if (value > m_greatest) {
            m_greatest = value;
            m_greatestAt = place;
        } else if (value < m_least) {
            m_least = value;
            m_leastAt = place;
        }
    }

    /// The places are known only if it is.
    bool isComplete() const { return m_greatest > 0.0 && m_least < 0.0; }
    /// Whether the negative one comes first.
    bool isUpright() const { return m_leastAt < m_greatestAt; }
    int first() const { return std::min(m_greatestAt, m_leastAt); }
    int second() const { return std::max(m_greatestAt, m_leastAt); }

private:
    double m_greatest = 0.0;
    double m_least = 0.0;
    int m_greatestAt = 0;
    int m_leastAt = 0;
};
