#define FIR_VECTOR_BYTES 16
#include "analysis/signals/FirSum.h"

#include "analysis/signals/FirKernel.h"
#include "analysis/signals/FirSumWide.h"

namespace {

using TSum = void (*)(const fir::TTap*, const fir::TTap*, const double*, int, double*);

TSum sumOfThisProcessor()
{
#ifdef VELANTOR_FIR_WIDE
    if (__builtin_cpu_supports("avx512f"))
        return fir::sumAvx512;
    if (__builtin_cpu_supports("avx"))
        return fir::sumAvx;
#endif
    return sumAll;
}

} // namespace

void fir::sum(const std::vector<TTap>& taps, const double* x, int count, double* out)
{
    static const TSum sumHere = sumOfThisProcessor();
    sumHere(taps.data(), taps.data() + taps.size(), x, count, out);
}
