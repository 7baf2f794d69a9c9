#pragma once

#include <limits>
#include <type_traits>

namespace velantor {

/// `value` truncated towards zero and clamped to the range of `Integer`; 0 for what is not a number.
template <typename Integer> inline Integer truncated(double value)
{
    static_assert(std::is_integral_v<Integer> && std::is_signed_v<Integer>,
                  "the way over int has to hold it");
    static_assert(sizeof(Integer) <= 4, "both limits have to be exact as doubles");
    constexpr double least = std::numeric_limits<Integer>::min();
    constexpr double greatest = std::numeric_limits<Integer>::max();
    // Plain selections, which the compiler turns into vector code.
    const double number = value == value ? value : 0.0;
    const double above = number > least ? number : least;
    return static_cast<Integer>(static_cast<int>(above < greatest ? above : greatest));
}

} // namespace velantor
