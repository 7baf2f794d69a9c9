#!/usr/bin/env bash
# Installs what is missing, builds and tests. See usage below.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
export LC_ALL=C.UTF-8
. scripts/packages.sh

usage() {
    cat <<'TEXT'
Usage: ./test.sh [--all]
  (nothing)  install missing Debian packages, build the dev preset, run its tests
  --all      also: layers, layout, static checks of what changed lately; the Win32 form of the serial port; tests
             under the address and the thread sanitizers; fuzzers (FUZZ_SECONDS each, 60); release build with a
             moment of every benchmark; three hours of recording with its memory watched
TEXT
}

summary=()
passed=0
failed=0
skipped=0

# count_result CODE LOG: a run of ctest counts its tests, anything else counts once.
count_result() {
    local code=$1 totals
    totals=$(sed -n 's/^[0-9]*% tests passed, \([0-9]*\) tests failed out of \([0-9]*\)$/\1 \2/p' "$2" | tail -n 1)
    if [[ -n $totals ]]; then
        local bad=${totals% *} all=${totals#* } left
        left=$(grep -c '\*\*\*Skipped\|\*\*\*Not Run (Disabled)' "$2" || true)
        ((passed += all - bad - left, failed += bad, skipped += left)) || true
        ((code == 0 || bad > 0)) || ((failed += 1))
    elif ((code == 0)); then
        ((passed += 1))
    elif ((code == 77)); then
        ((skipped += 1))
    else
        ((failed += 1))
    fi
}

# stage NAME COMMAND...: runs one part of the tests; a failure is told at the end and stops no other part.
stage() {
    local name=$1 code=0 log start=$SECONDS result=ok
    log=build/log/${name// /-}.log
    shift
    echo "=== $name"
    "$@" 2>&1 | tee "$log" || code=${PIPESTATUS[0]}
    count_result "$code" "$log"
    ((code == 0)) || result=FAILED
    ((code != 77)) || result=skipped
    summary+=("$(printf '%-24s %-8s %4d s' "$name" "$result" $((SECONDS - start)))")
}

test_preset() {
    cmake --preset "$1" && cmake --build --preset "$1" && ctest --preset "$1"
}

# The thread sanitizer wants its own places in the address space, which a randomized layout may take.
test_preset_fixed_layout() {
    local wrapper=(setarch "$(uname -m)" -R)
    "${wrapper[@]}" true 2>/dev/null || wrapper=()
    cmake --preset "$1" && "${wrapper[@]}" cmake --build --preset "$1" && "${wrapper[@]}" ctest --preset "$1"
}

all=0
case "$#:${1-}" in
    0:) ;;
    1:--all) all=1 ;;
    1:-h | 1:--help)
        usage
        exit 0
        ;;
    *)
        usage >&2
        exit 2
        ;;
esac

packages=("${build_packages[@]}" "${test_packages[@]}")
((all == 0)) || packages+=("${check_packages[@]}")
install_missing "${packages[@]}"
mkdir -p build/log

stage "tests" test_preset dev
if ((all)); then
    stage "layers" python3 scripts/check-includes.py
    stage "layout" bash scripts/check-format.sh
    stage "static checks" bash scripts/check-tidy.sh HEAD~30
    stage "Win32 port" bash scripts/check-win32.sh
    stage "address sanitizer" test_preset asan
    stage "thread sanitizer" test_preset_fixed_layout tsan
    stage "fuzzers" bash scripts/run-fuzzers.sh
    stage "release and benchmarks" bash scripts/run-benchmarks.sh
    stage "three hours" bash scripts/run-soak.sh
fi

printf '\n'
printf '%s\n' "${summary[@]}"
echo "$passed passed, $failed failed, $skipped skipped"
((failed == 0))
