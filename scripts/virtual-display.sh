#!/usr/bin/env bash
# virtual-display.sh WIDTHxHEIGHT COMMAND...: runs a command on a screen that only exists in memory, with a window
# manager, for without one windows get neither the keyboard nor the whole screen. Ends as the command ends.
set -euo pipefail

size=$1
shift
folder=$(mktemp -d "${TMPDIR:-/tmp}/velantor-display.XXXXXX")
servers=()
tidy() {
    ((${#servers[@]} == 0)) || kill "${servers[@]}" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$folder"
}
trap tidy EXIT

wait_until() {
    for ((i = 0; i < 200; i++)); do
        ! "$@" || return 0
        sleep 0.05
    done
    return 1
}

# The server takes the first free number itself, so several can run side by side. 96 dots per inch.
Xvfb -displayfd 3 -screen 0 "${size}x24" -dpi 96 -nolisten tcp 3>"$folder/number" 2>"$folder/log" &
servers+=($!)
wait_until test -s "$folder/number" || {
    echo "No virtual display:" >&2
    cat "$folder/log" >&2
    exit 1
}
export DISPLAY=:$(<"$folder/number")
export QT_QPA_PLATFORM=xcb
openbox --sm-disable --startup "touch $folder/managed" >>"$folder/log" 2>&1 &
servers+=($!)
wait_until test -e "$folder/managed" || {
    echo "No window manager:" >&2
    cat "$folder/log" >&2
    exit 1
}

"$@"
