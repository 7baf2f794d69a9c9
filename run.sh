#!/usr/bin/env bash
# Installs what is missing, builds the program as users get it and shows what it does.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
export LC_ALL=C.UTF-8
. scripts/packages.sh

if (($#)); then
    echo "Usage: ./run.sh" >&2
    exit 2
fi
install_missing "${build_packages[@]}"
cmake --preset release -DVELANTOR_BENCHMARKS=OFF
cmake --build --preset release --target velantor-cli ecg500
exec bash scripts/tour.sh build/release/src/cli/velantor-cli build/release/ecg500.dat
