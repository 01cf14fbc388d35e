#!/usr/bin/env bash
# Plays the program as a player does, on a sound server of its own: real keys for the holes, a breath that is played into
# the microphone, and what comes out of the sound output is recorded there. All sixteen fingerings in a row; then the
# server is killed and comes back. The arguments are the build folder and the server, pulseaudio or pipewire.
set -euo pipefail

here=$(dirname "$(readlink -f "$0")")
build=$(readlink -f "${1:?run-with-microphone: which build folder?}")
server=${2:?run-with-microphone: pulseaudio or pipewire?}
if [ "${3:-}" != inside ]; then
    # What manages PipeWire's devices needs a message bus.
    bus=()
    if [ "$server" = pipewire ]; then bus=(dbus-run-session --); fi
    exec "$here/with-xvfb.sh" "${bus[@]}" bash "$0" "$build" "$server" inside
fi

name="run-with-microphone $server"
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$here/common.sh"

# In the order that they are played in, each one or two fingers from the one before: KEYS NOTE HZ.
readonly fingerings="- 5_00 523.25
r 4_01 277.18
ru 4_03 311.13
u 4_11 493.88
uf 4_08 415.30
f 4_09 440.00
rf 4_05 349.23
ruf 4_04 329.63
rufj 4_00 261.63
ufj 4_06 369.99
fj 4_07 392.00
rfj 4_02 293.66
rj 3_09 220.00
ruj 3_11 246.94
uj 3_07 196.00
j 4_10 466.16"

servers=()
# serve COMMAND...: one of the processes that make up the server.
serve() {
    "$@" >>"$folder/server-log" 2>&1 &
    helpers+=($!)
    servers+=($!)
}
start_server() {
    case $server in
        pulseaudio)
            serve pulseaudio -n --daemonize=no --exit-idle-time=-1 -L "module-native-protocol-unix auth-anonymous=1"
            ;;
        pipewire)
            serve pipewire
            until_true "PipeWire" test -S "$XDG_RUNTIME_DIR/pipewire-0"
            serve wireplumber
            serve pipewire-pulse
            ;;
        *) fail "there is no server \"$server\"" ;;
    esac
    until_true "the sound server" pactl info
    load module-null-sink sink_name=out rate=44100 channels=2 format=s16le norewinds=1
    load module-null-sink sink_name=micsink rate=8000 channels=2 format=u8 norewinds=1
    load module-remap-source master=micsink.monitor source_name=mic
    # PipeWire knows of defaults once its devices' manager is up.
    until_true "a choice of the output" pactl set-default-sink out
    until_true "a choice of the microphone" pactl set-default-source mic
    until_true "the default devices" has_default_devices
}
kill_server() {
    local process
    for process in "${servers[@]}"; do
        # PipeWire's other processes end with it by themselves.
        kill -KILL "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    servers=()
}
load() { pactl load-module "$@" >/dev/null; }
has_default_devices() { pactl info | grep -qx 'Default Sink: out' && pactl info | grep -qx 'Default Source: mic'; }
# What the output plays from now on goes to the file that the checks listen to.
record_output() {
    parec -d out.monitor --latency-msec=5 --raw --rate=$rate --channels=1 --format=float32le >"$folder/played" 2>/dev/null &
    helpers+=($!)
    until_true "the recording of the output" test -s "$folder/played"
}
# From its beginning, into the microphone.
breathe() {
    paplay --device=micsink --raw --rate=48000 --channels=1 --format=float32le "$folder/breath" 2>/dev/null &
    breath=$!
    helpers+=("$breath")
}
# A change of tones closes one, too, but opens the next at once.
no_tone() { grep '"what":"player"' "$folder/trace" | tail -n 1 | grep -q '"event":"close"'; }

mkdir -p "$folder/run/pulse"
chmod 700 "$folder/run" "$folder/run/pulse"
export HOME=$folder XDG_RUNTIME_DIR=$folder/run PULSE_RUNTIME_PATH=$folder/run/pulse
start_server
write_breath

start SDL_AUDIODRIVER=pulseaudio
record_output
until_true "the play screen" plays
is_silent "the ocarina before anybody blows"
mark
breathe
held=
while read -r keys note hz; do
    mark
    # Keys that the next fingering does not have come up, then its new ones go down.
    for key in r u f j; do
        case $keys in *$key*) ;; *) case $held in *$key*) xdotool keyup $key ;; esac ;; esac
    done
    for key in r u f j; do
        case $held in *$key*) ;; *) case $keys in *$key*) xdotool keydown $key ;; esac ;; esac
    done
    held=$keys
    if [ "$keys" = - ]; then told=0; fi
    sounds "fingering $keys" "$note" "$hz"
done <<<"$fingerings"
mark
xdotool keyup j
until_true "the open instrument's tone" opens 5_00

mark
kill_server
until_true "word of the lost output" says "the sound output is gone"
until_true "word of the lost microphone" says "the microphone is gone"
until_true "the end of the tone" no_tone
passed "a killed server is told and ends the tone"
start_server
until_true "the output's return" says "the sound output is back"
until_true "the microphone's return" says "the microphone is back"
record_output
mark
breathe
sounds "the open instrument on the new server" 5_00 523.25

kill "$breath"
until_true "the end of the tone" no_tone
is_silent "the ocarina after the breath"
kill -TERM "$program"
ends_well "a polite kill"

echo "$checks passed, 0 failed"
