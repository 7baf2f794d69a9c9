#!/usr/bin/env bash
# Builds the Win32 form of the serial port with Debian's cross-compiler and links it to a tiny program, so that
# it does not rot. It is not run. Exit code 77: there is no cross-compiler.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

compiler=x86_64-w64-mingw32-g++
if ! command -v "$compiler" >/dev/null; then
    echo "Win32 port: skipped, there is no $compiler."
    exit 77
fi
mkdir -p build/win32
"$compiler" -std=c++20 -Wall -Wextra -Werror -Isrc -static -o build/win32/commport.exe \
    src/platform/CommPort.cpp src/platform/CommPortWin32.cpp tests/platform/win32/main.cpp
echo "The Win32 form of the serial port builds and links."
