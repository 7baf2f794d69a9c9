#define FIR_VECTOR_BYTES 32
#include "analysis/signals/FirKernel.h"
#include "analysis/signals/FirSumWide.h"

void fir::sumAvx(const TTap* taps, const TTap* end, const double* x, int count, double* out)
{
    sumAll(taps, end, x, count, out);
}
