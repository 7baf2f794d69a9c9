#!/usr/bin/env bash
# Builds the release preset and lets every benchmark run for a moment, to show that it runs; times mean nothing
# here.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

with_benchmarks=OFF
[[ ! -f benchmarks/CMakeLists.txt ]] || with_benchmarks=ON
cmake --preset release -DVELANTOR_BENCHMARKS=$with_benchmarks
cmake --build --preset release
if [[ $with_benchmarks == OFF ]]; then
    echo "Benchmarks: skipped, there is no benchmarks/CMakeLists.txt."
    exit 0
fi
mapfile -d '' -t programs < <(find build/release/benchmarks -maxdepth 2 -type f -executable -print0 | sort -z)
if ((${#programs[@]} == 0)); then
    echo "The release preset built no benchmark." >&2
    exit 1
fi
for program in "${programs[@]}"; do
    "$program" --benchmark_min_time=0.01
done
