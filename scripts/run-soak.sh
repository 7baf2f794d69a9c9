#!/usr/bin/env bash
# Records three hours of the demonstration with the release build, as fast as it can, and watches the memory that
# it takes. Less than 64 MB may come in after the first five minutes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

cmake --preset release -DVELANTOR_BENCHMARKS=OFF
cmake --build --preset release --target velantor-cli ecg500
cmake --preset dev
cmake --build --preset dev --target RecordMemoryTest
VELANTOR_SOAK_MINUTES=180 VELANTOR_SOAK_CLI=$PWD/build/release/src/cli/velantor-cli build/dev/tests/cli/RecordMemoryTest
