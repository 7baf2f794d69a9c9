#pragma once

#include "analysis/filters/FirTaps.h"

#include <algorithm>
#include <vector>

namespace velantor::taps {

/// All coefficients of a symmetric table.
template <int taps> std::vector<double> unfold(const THalfTable<taps>& table)
{
    std::vector<double> all(table.half.begin(), table.half.end());
    all.resize(taps);
    std::reverse_copy(table.half.begin(), table.half.begin() + taps / 2, all.begin() + (taps + 1) / 2);
    return all;
}

} // namespace velantor::taps
