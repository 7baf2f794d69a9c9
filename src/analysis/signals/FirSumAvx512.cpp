#define FIR_VECTOR_BYTES 64
#include "analysis/signals/FirKernel.h"
#include "analysis/signals/FirSumWide.h"

void fir::sumAvx512(const TTap* taps, const TTap* end, const double* x, int count, double* out)
{
    sumAll(taps, end, x, count, out);
}
