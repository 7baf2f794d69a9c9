#!/usr/bin/env bash
# check-tidy.sh [COMMIT]: clang-tidy over src/, with the checks of .clang-tidy. It needs about ten seconds for a file, so
# with a COMMIT it looks only at what has changed since then, if that is in the history here. The compile database is
# one of clang and without precompiled headers, as clang-tidy cannot read those of GCC.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

mapfile -t sources < <(find src -name '*.cpp' | sort)
if (($#)) && git rev-parse -q --verify "$1^{commit}" >/dev/null; then
    # A source is looked at for its header too.
    mapfile -t sources < <(git diff --name-only --diff-filter=d "$1" -- 'src/*.cpp' 'src/*.h' |
        sed 's/\.h$/.cpp/' | sort -u | while read -r source; do [[ ! -e $source ]] || echo "$source"; done)
fi
((${#sources[@]})) || {
    echo "There is nothing to look at."
    exit 0
}

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

printf '%s\0' "${sources[@]}" | xargs -0 -P 2 -n 1 clang-tidy-14 -quiet -p "$folder"
echo "clang-tidy has nothing to say of ${#sources[@]} files."
