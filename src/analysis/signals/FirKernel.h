#pragma once

#include "analysis/signals/FirSum.h"

/// The body of `fir::sum`, compiled once per width of vector. Included only by the sources that choose a
/// width in `FIR_VECTOR_BYTES`. Everything here is local to the including source and nothing of the standard
/// library is called: shared inline code, compiled for a newer processor, could replace the one that older
/// ones run.
namespace {

using TVector = double __attribute__((vector_size(FIR_VECTOR_BYTES)));

constexpr int lanes = FIR_VECTOR_BYTES / sizeof(double);
/// Sums in flight: enough to hide the latency of an addition, few enough for sixteen registers.
constexpr int maxVectors = 8;

static_assert(lanes - 1 <= fir::padding);

template <int vectors>
void sumTile(const fir::TTap* tap, const fir::TTap* end, const double* x, int count, double* out)
{
    TVector sums[vectors] = {};
    for (; tap != end; ++tap) {
        const double* const from = x + tap->offset;
#pragma GCC unroll 8
        for (int i = 0; i < vectors; ++i) {
            TVector samples;
            __builtin_memcpy(&samples, from + i * lanes, sizeof samples);
            sums[i] += tap->coefficient * samples;
        }
    }
    double results[vectors * lanes];
#pragma GCC unroll 8
    for (int i = 0; i < vectors; ++i)
        __builtin_memcpy(results + i * lanes, &sums[i], sizeof sums[i]);
    __builtin_memcpy(out, results, count * sizeof(double));
}

template <int vectors>
void sumRest(const fir::TTap* tap, const fir::TTap* end, const double* x, int count, double* out)
{
    if constexpr (vectors > 1) {
        if (count <= (vectors - 1) * lanes)
            return sumRest<vectors - 1>(tap, end, x, count, out);
    }
    sumTile<vectors>(tap, end, x, count, out);
}

void sumAll(const fir::TTap* tap, const fir::TTap* end, const double* x, int count, double* out)
{
    constexpr int tile = maxVectors * lanes;
    for (; count > tile; count -= tile, x += tile, out += tile)
        sumTile<maxVectors>(tap, end, x, tile, out);
    if (count > 0)
        sumRest<maxVectors>(tap, end, x, count, out);
}

} // namespace
