#include "analysis/FilterSamples.h"
#include "analysis/NaiveBlockFilters.h"
#include "analysis/filters/FirTables.h"
#include "analysis/filters/TFirBlockFilter.h"

/// One block of one filter of the off-line chain.
namespace {

using namespace filters;

void blockFilter(benchmark::State& state, TBlockProcessor& filter)
{
    const auto samples = ecgLike(5 * pageSize);
    TRecording recording(1, samples);
    TSignalWindow window(&recording);
    window.move(2, 0);
    std::vector<short> out(pageSize);
    for (auto _ : state) {
        filter.process(window, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    countSeconds(state, 1.0 * pageSize / rate);
}

void recursion(benchmark::State& state, const velantor::TIirTable* table)
{
    TIirBlockFilter filter(table->coefficients, table->margin, true);
    TNaiveIir naive(*table);
    blockFilter(state, state.range(0) != 0 ? static_cast<TBlockProcessor&>(naive) : filter);
}
BENCHMARK_CAPTURE(recursion, highPass, velantor::highPassRecursion(500))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(recursion, notch, velantor::notchRecursion(500))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(recursion, notch1000, velantor::notchRecursion(1000))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(recursion, baseline, velantor::baselineRecursion(500))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(recursion, baseline1000, velantor::baselineRecursion(1000))
    ->ArgName("naive")
    ->Arg(0)
    ->Arg(1);

void convolution(benchmark::State& state, const std::vector<double>* table)
{
    TFirBlockFilter filter(*table, static_cast<int>(table->size()) / 2);
    TNaiveFir naive(*table);
    blockFilter(state, state.range(0) != 0 ? static_cast<TBlockProcessor&>(naive) : filter);
}
BENCHMARK_CAPTURE(convolution, muscle, velantor::muscleTable("40hz", 500))->ArgName("naive")->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(convolution, muscle250, velantor::muscleTable("40hz", 250))
    ->ArgName("naive")
    ->Arg(0)
    ->Arg(1);

} // namespace
