#pragma once

#include <cstdint>
#include <random>
#include <vector>

/// A line that loses and changes bytes at random; the same seed gives the same faults.
class TByteFaults
{
public:
    /// Probabilities of each byte, 0 to 1.
    TByteFaults(double garbled, double lost, unsigned seed);

    /// Appends what arrives of `bytes` to `out`.
    void pass(const std::vector<std::uint8_t>& bytes, std::vector<char>& out);

private:
    bool happens(double probability);

    double m_garbled;
    double m_lost;
    std::mt19937 m_random;
};
