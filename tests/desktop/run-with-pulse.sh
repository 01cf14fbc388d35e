#!/usr/bin/env bash
# Plays the program on a PulseAudio server of its own whose devices come and go: none at first, then a sink, then none
# again while a tone sounds. The argument is the build folder.
set -euo pipefail

here=$(dirname "$(readlink -f "$0")")
build=$(readlink -f "${1:?run-with-pulse: which build folder?}")
if [ "${2:-}" != inside ]; then exec "$here/with-xvfb.sh" bash "$0" "$build" inside; fi

folder=$(mktemp -d)
server=
program=
finish() {
    local status=$?
    for process in $program $server; do
        kill -KILL "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    if [ "$status" -ne 0 ]; then
        echo "run-with-pulse: what the program said:" >&2
        cat "$folder/log" >&2 2>/dev/null || true
        tail -n 5 "$folder/trace" >&2 2>/dev/null || true
    fi
    rm -rf "$folder"
}
trap finish EXIT

fail() {
    echo "run-with-pulse: $*" >&2
    exit 1
}

# until_true WHAT COMMAND...: tries until the command succeeds.
until_true() {
    local what=$1 deadline=$((SECONDS + 30))
    shift
    until "$@" >/dev/null 2>&1; do
        if [ -n "$program" ]; then kill -0 "$program" 2>/dev/null || fail "the program ended before $what"; fi
        [ "$SECONDS" -lt "$deadline" ] || fail "waited in vain for $what"
        sleep 0.05
    done
    echo "ok: $what"
}
says() { grep -q "$1" "$folder/log"; }
no_stream() { [ -z "$(pactl list short sink-inputs)" ]; }
traces() { grep -q "$1" "$folder/trace"; }
# A quarter of a second of the sink's own monitor holds something else than zeros.
sounds() (
    # Whoever reads no further ends the recorder, which is no failure.
    set +o pipefail
    [ "$(parec -d out.monitor --raw --latency-msec=5 2>/dev/null | head -c 22050 | tr -d '\0' | wc -c)" -gt 0 ]
)

mkdir -p "$folder/run/pulse"
chmod 700 "$folder/run" "$folder/run/pulse"
export HOME=$folder XDG_RUNTIME_DIR=$folder/run PULSE_RUNTIME_PATH=$folder/run/pulse SDL_AUDIODRIVER=pulseaudio
pulseaudio -n --daemonize=no --exit-idle-time=-1 -L "module-native-protocol-unix auth-anonymous=1" \
    >"$folder/server-log" 2>&1 &
server=$!
until_true "the server" pactl info

"$build/brevant" --backend desktop --data "$folder/data" --trace "$folder/trace" --language en >"$folder/log" 2>&1 &
program=$!
until_true "word of a missing output at the start" says "the sound output is gone"
until_true "the play screen" traces '"what":"user-event","event":"delivered"'
xdotool keydown space
until_true "a tone that nobody hears" traces '"event":"play"'
sink=$(pactl load-module module-null-sink sink_name=out rate=44100 channels=1 format=s16le norewinds=1)
until_true "the output's return" says "the sound output is back"
until_true "the tone on it" sounds
pactl unload-module "$sink"
pactl load-module module-null-sink sink_name=out rate=44100 channels=1 format=s16le norewinds=1 >/dev/null
until_true "the tone on the next output" sounds
pactl unload-module module-null-sink
until_true "the last output's end" no_stream
xdotool keyup space
until_true "the end of the tone" traces '"event":"close"'
kill -TERM "$program"
status=0
wait "$program" || status=$?
program=
[ "$status" -eq 0 ] || fail "it ended with status $status"
traces '"what":"app","event":"ended"' || fail "it did not end in order"
echo "ok: an end in order without any device"
