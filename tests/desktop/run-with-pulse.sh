#!/usr/bin/env bash
# Plays the program on a PulseAudio server of its own whose devices come and go: none at first, then a sink, then none
# again while a tone sounds. The argument is the build folder.
set -euo pipefail

here=$(dirname "$(readlink -f "$0")")
build=$(readlink -f "${1:?run-with-pulse: which build folder?}")
if [ "${2:-}" != inside ]; then exec "$here/with-xvfb.sh" bash "$0" "$build" inside; fi

name=run-with-pulse
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$here/common.sh"

# comes WHAT COMMAND...: waits until the command succeeds.
comes() {
    until_true "$@"
    passed "$1"
}
no_stream() { [ -z "$(pactl list short sink-inputs)" ]; }
# A quarter of a second of the sink's own monitor holds something else than zeros.
is_heard() (
    # Whoever reads no further ends the recorder, which is no failure.
    set +o pipefail
    [ "$(parec -d out.monitor --raw --latency-msec=5 2>/dev/null | head -c 22050 | tr -d '\0' | wc -c)" -gt 0 ]
)

mkdir -p "$folder/run/pulse"
chmod 700 "$folder/run" "$folder/run/pulse"
export HOME=$folder XDG_RUNTIME_DIR=$folder/run PULSE_RUNTIME_PATH=$folder/run/pulse
pulseaudio -n --daemonize=no --exit-idle-time=-1 -L "module-native-protocol-unix auth-anonymous=1" \
    >"$folder/server-log" 2>&1 &
helpers+=($!)
comes "the server" pactl info

start SDL_AUDIODRIVER=pulseaudio
comes "word of a missing output at the start" says "there is no sound output"
comes "the play screen" plays
xdotool keydown space
comes "a tone that nobody hears" has_told '"event":"play"'
sink=$(pactl load-module module-null-sink sink_name=out rate=44100 channels=1 format=s16le norewinds=1)
comes "the output's return" says "there is a sound output now"
comes "the tone on it" is_heard
pactl unload-module "$sink"
pactl load-module module-null-sink sink_name=out rate=44100 channels=1 format=s16le norewinds=1 >/dev/null
comes "the tone on the next output" is_heard
pactl unload-module module-null-sink
comes "the last output's end" no_stream
xdotool keyup space
comes "the end of the tone" has_told '"event":"close"'
kill -TERM "$program"
ends_well "a polite kill without any device"

echo "$checks passed, 0 failed"
