#!/usr/bin/env bash
# clang-tidy over src/, with the checks of .clang-tidy. It gets a compile database of its own, of clang and
# without precompiled headers, as it cannot read those of GCC.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

folder=build/tidy
mkdir -p build
cmake -S . -B "$folder" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++-14 \
    -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON -DCMAKE_AUTOGEN_ORIGIN_DEPENDS=OFF -DVELANTOR_TESTS=OFF >"$folder.log" || {
    cat "$folder.log"
    exit 1
}
# Sources include what moc, uic and rcc make of them.
mapfile -t generated < <(ninja -C "$folder" -t targets all | sed -n 's/^\([^/]*_autogen\): phony$/\1/p')
((${#generated[@]} == 0)) || cmake --build "$folder" --target "${generated[@]}"

run-clang-tidy-14 -quiet -p "$folder" -j 2 "^$PWD/src/.*\.cpp$"
echo "clang-tidy has nothing to say."
