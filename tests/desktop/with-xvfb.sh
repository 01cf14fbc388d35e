#!/usr/bin/env bash
# Runs a command on an X server of its own, of a desktop's size, which ends with the command.
set -euo pipefail

server=
folder=$(mktemp -d)
finish() {
    if [ -n "$server" ]; then
        kill "$server" 2>/dev/null || true
        wait "$server" 2>/dev/null || true
    fi
    rm -rf "$folder"
}
trap finish EXIT

# The server picks a free display and says which as soon as it listens. Left to itself it starts anew whenever its last
# client has gone, and refuses the next one that comes meanwhile.
mkfifo "$folder/display"
Xvfb -displayfd 3 -noreset -screen 0 1280x1024x24 -nolisten tcp 3>"$folder/display" 2>"$folder/log" &
server=$!
if ! read -r -t 30 number <"$folder/display"; then
    cat "$folder/log" >&2
    echo "with-xvfb: the X server did not start" >&2
    exit 1
fi
export DISPLAY=":$number"
unset WAYLAND_DISPLAY
"$@"
