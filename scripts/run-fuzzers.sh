#!/usr/bin/env bash
# Builds the fuzz targets and runs each for FUZZ_SECONDS (60), two at a time. They start from the seeds that the
# tests of the dev preset write and keep what they learn in build/fuzz/corpus. Exit code 77: nothing to run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export LC_ALL=C.UTF-8

if [[ ! -f fuzz/CMakeLists.txt ]]; then
    echo "Fuzzers: skipped, there is no fuzz/CMakeLists.txt."
    exit 77
fi
cmake --preset fuzz
cmake --build --preset fuzz
[[ -d build/dev/fuzz-seeds ]] || echo "There are no seeds, as the tests of the dev preset did not run."

# The targets remove their own files; those of a target that crashed go with this folder.
scratch_place=${TMPDIR:-/tmp}
[[ ! -w /dev/shm ]] || scratch_place=/dev/shm
VELANTOR_FUZZ_SCRATCH=$(mktemp -d "$scratch_place/velantor-fuzz-run-XXXXXX")
export VELANTOR_FUZZ_SCRATCH
trap 'rm -rf "$VELANTOR_FUZZ_SCRATCH"' EXIT

# Freed memory that the sanitizer holds back is no use of ours, so it may hold back little.
readonly quarantine_mb=16
export ASAN_OPTIONS=quarantine_size_mb=$quarantine_mb:detect_stack_use_after_return=1
export UBSAN_OPTIONS=print_stacktrace=1

statistic() {
    sed -n "s/^stat::$1: *//p" "$2"
}

# What the sanitizers, the fuzzer with its corpus, and the fixture of a target take before any mutation, in MB.
base_memory() {
    local log=build/fuzz/log/$2.base.log
    "$1" -runs=0 -print_final_stats=1 "$3" >"$log" 2>&1 || return 0
    statistic peak_rss_mb "$log"
}

# A run may take 256 MB, in one piece or in many, on top of what it takes to fuzz at all; and 2 s, which are
# 10 s under the sanitizers.
fuzz_one() {
    local target=$1 name corpus log base runs options
    readonly own_mb=256 corpus_growth_mb=64
    name=$(basename "$target")
    corpus=build/fuzz/corpus/$name
    log=build/fuzz/log/$name.log
    mkdir -p "$corpus" build/fuzz/log "build/fuzz/crashes/$name"
    [[ ! -d build/dev/fuzz-seeds/$name ]] || cp -r "build/dev/fuzz-seeds/$name/." "$corpus/"
    base=$(base_memory "$target" "$name" "$corpus")
    options=(-max_total_time="${FUZZ_SECONDS:-60}" -timeout=10 -malloc_limit_mb=$own_mb
        -rss_limit_mb=$((${base:-100} + quarantine_mb + corpus_growth_mb + own_mb))
        -print_final_stats=1 -artifact_prefix="build/fuzz/crashes/$name/")
    [[ ! -f fuzz/$name.dict ]] || options+=(-dict="fuzz/$name.dict")
    if ! "$target" "${options[@]}" "$corpus" >"$log" 2>&1; then
        echo "$name: FOUND something, input in build/fuzz/crashes/$name/"
        tail -n 60 "$log"
        return 1
    fi
    runs=$(statistic number_of_executed_units "$log")
    echo "$name: ${runs:-0} runs, $(statistic average_exec_per_sec "$log") a second," \
        "$(statistic peak_rss_mb "$log") MB at most of which $base MB to begin with, nothing found"
    ((${runs:-0} > 0))
}
export quarantine_mb
export -f fuzz_one base_memory statistic

mapfile -d '' -t targets < <(find build/fuzz/fuzz -maxdepth 1 -type f -executable -name 'fuzz_*' -print0 | sort -z)
if ((${#targets[@]} == 0)); then
    echo "The fuzz preset built no fuzz target." >&2
    exit 1
fi
printf '%s\0' "${targets[@]}" | xargs -0 -P 2 -n 1 bash -c 'fuzz_one "$1"' fuzz_one
