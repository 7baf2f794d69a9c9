// Written by scripts/design-filters.py; docs/filters.md tells how the tables come about.
#pragma once

#include <array>

namespace velantor::taps {

/// The first half of a symmetric FIR table of `taps` coefficients, the middle one included.
template <int taps> struct THalfTable
{
    static constexpr int length = taps;
    std::array<double, (taps + 1) / 2> half;
};

extern const THalfTable<1501> highPass500;
extern const THalfTable<109> notch50At250;
extern const THalfTable<195> notch50At500;
extern const THalfTable<391> notch50At1000;
extern const THalfTable<109> notch60At250;
extern const THalfTable<195> notch60At500;
extern const THalfTable<391> notch60At1000;
extern const THalfTable<382> baseline250;
extern const THalfTable<501> baseline500;
extern const THalfTable<1355> baseline1000;
extern const THalfTable<51> smoothing51;
extern const THalfTable<29> decimation29;
extern const THalfTable<62> muscle250;
extern const THalfTable<19> muscle25At500;
extern const THalfTable<12> muscle40At500;
extern const THalfTable<34> muscle25At1000;
extern const THalfTable<22> muscle40At1000;

} // namespace velantor::taps
