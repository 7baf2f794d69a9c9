#pragma once

#include <vector>

/// The weighted sums in which the streams spend their time. Each output is summed tap by tap in the order
/// given, without fused operations, whatever the processor: the same recording gives the same bits on every
/// machine.
namespace fir {

/// A coefficient and where it looks: so many samples from the start of the input.
struct TTap
{
    double coefficient;
    int offset;
};

/// Samples that must be readable behind the last one a sum needs; their values do not matter.
inline constexpr int padding = 7;

/// out[i] = sum over the taps of coefficient * x[offset + i], for 0 <= i < count.
void sum(const std::vector<TTap>& taps, const double* x, int count, double* out);

} // namespace fir
