#!/usr/bin/env bash
# Holds every C++ file of our own against .clang-format. `clang-format-14 -i FILE` mends one.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

folders=()
for folder in src tests benchmarks fuzz simulators accuracy; do
    [[ ! -d $folder ]] || folders+=("$folder")
done
find "${folders[@]}" -type f \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 "${CLANG_FORMAT:-clang-format-14}" --dry-run --Werror
echo "The layout of all files is that of .clang-format."
