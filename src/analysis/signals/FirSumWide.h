#pragma once

#include "analysis/signals/FirSum.h"

namespace fir {

// Forms of `sum` for wider vectors; only for processors that have them.
void sumAvx(const TTap* taps, const TTap* end, const double* x, int count, double* out);
void sumAvx512(const TTap* taps, const TTap* end, const double* x, int count, double* out);

} // namespace fir
