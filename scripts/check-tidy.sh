#!/usr/bin/env bash
# clang-tidy over src/, with the checks of .clang-tidy. It gets a compile database of its own, of clang and
# without precompiled headers, as it cannot read those of GCC.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

folder=build/tidy
mkdir -p build
cmake -S . -B "$folder" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++-14 \
    -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON -DVELANTOR_TESTS=OFF >"$folder.log" || {
    cat "$folder.log"
    exit 1
}
# Of what Qt's tools make, sources include the forms alone. They are made here: CMake would build every library first.
uic=$(qmake -query QT_INSTALL_BINS)/uic
for form in src/*/*.ui; do
    library=$(basename "$(dirname "$form")")
    made=$folder/src/$library/${library}_autogen/include
    mkdir -p "$made"
    "$uic" "$form" -o "$made/ui_$(basename "$form" .ui).h"
done

run-clang-tidy-14 -quiet -p "$folder" -j 2 "^$PWD/src/.*\.cpp$"
echo "clang-tidy has nothing to say."
