#!/usr/bin/env bash
# all-tours.sh BUILD: every tour of the desktop program, side by side, for each mostly waits for the heart to beat.
set -euo pipefail

tour=$(realpath "$(dirname "${BASH_SOURCE[0]}")/tour.sh")
running=()
for language in english spanish; do
    for size in 1280x800 1920x1080; do
        "$tour" "$1" "$language" "$size" 2>&1 | sed "s/^/$language $size: /" &
        running+=($!)
    done
done
failed=0
for tour in "${running[@]}"; do
    wait "$tour" || failed=1
done
exit $failed
