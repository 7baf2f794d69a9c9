#!/usr/bin/env bash
# Builds the fuzz targets and runs each for FUZZ_SECONDS (60), two at a time. They start from the seeds that the
# tests of the dev preset write and keep what they learn in build/fuzz/corpus. Exit code 77: nothing to run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [[ ! -f fuzz/CMakeLists.txt ]]; then
    echo "Fuzzers: skipped, there is no fuzz/CMakeLists.txt."
    exit 77
fi
cmake --preset fuzz
cmake --build --preset fuzz

fuzz_one() {
    local target=$1 name corpus log
    name=$(basename "$target")
    corpus=build/fuzz/corpus/$name
    log=build/fuzz/log/$name.log
    mkdir -p "$corpus" build/fuzz/log "build/fuzz/crashes/$name"
    [[ ! -d build/dev/fuzz-seeds/$name ]] || cp -r "build/dev/fuzz-seeds/$name/." "$corpus/"
    if "$target" -max_total_time="${FUZZ_SECONDS:-60}" -rss_limit_mb=1024 -timeout=10 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/crashes/$name/" "$corpus" >"$log" 2>&1; then
        echo "$name: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") runs, nothing found"
    else
        echo "$name: FOUND something, input in build/fuzz/crashes/$name/"
        tail -n 60 "$log"
        return 1
    fi
}
export -f fuzz_one

mapfile -d '' -t targets < <(find build/fuzz/fuzz -maxdepth 1 -type f -executable -name 'fuzz_*' -print0 | sort -z)
if ((${#targets[@]} == 0)); then
    echo "The fuzz preset built no fuzz target." >&2
    exit 1
fi
printf '%s\0' "${targets[@]}" | xargs -0 -P 2 -n 1 bash -c 'fuzz_one "$1"' fuzz_one
