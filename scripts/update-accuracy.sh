#!/usr/bin/env bash
# Writes the tables of docs/accuracy.md anew: everything behind its line "<!-- tables -->".
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

page=docs/accuracy.md
mark='<!-- tables -->'
cmake --preset release -DVELANTOR_BENCHMARKS=OFF >/dev/null
cmake --build --preset release --target accuracy >/dev/null
tables=$(build/release/accuracy/accuracy)
text=$(sed "/^$mark\$/q" "$page")
printf '%s\n\n%s\n' "$text" "$tables" >"$page"
