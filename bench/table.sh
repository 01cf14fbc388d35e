#!/usr/bin/env bash
# Measures this program and every peer that is installed, one after the other on the same machine, and prints one table.
# Usage: bench/table.sh BUILD-FOLDER
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:?usage: bench/table.sh BUILD-FOLDER}" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
figures=$work/figures

readonly starts=15 idle_seconds=20 redraws=3000 accelerated_redraws=300 speed_runs=5
readonly demo_seconds=34.52 # from the demonstration's first breath to its quit
export XDG_DATA_HOME=$work XDG_RUNTIME_DIR=$work SDL_AUDIODRIVER=dummy DBUS_SESSION_BUS_ADDRESS=disabled:

say() { printf 'bench: %s\n' "$*" >&2; }
# measure PROGRAM ARGUMENT...: appends what it prints to the figures, if it was built.
measure() {
    [ -x "$1" ] || return 0
    say "${1##*/} ${*:2}"
    "$@" 2>>"$work/errors" >>"$figures" || say "${1##*/} failed: $(tail -n 1 "$work/errors")"
}
# google PROGRAM: a Google Benchmark program; its counter "median" is the last column.
google() {
    [ -x "$1" ] || return 0
    say "${1##*/}"
    "$1" --benchmark_repetitions=3 --benchmark_min_time=0.2 --benchmark_enable_random_interleaving=true \
        --benchmark_report_aggregates_only=true --benchmark_format=csv 2>>"$work/errors" >"$work/csv" || true
    sed -nE 's/^"([^"]*\|[^"]*)_median",.*,([0-9.e+-]+)$/\1 \2/p' "$work/csv" |
        sed -E 's,/iterations:[0-9]+,,' >>"$figures"
}

with_display() {
    google "$build/bench/bench_hole"
    local window=$build/bench/bench_peer_sdl process=$build/bench/bench_process
    if [ -x "$window" ]; then
        echo "hole|SDL2 $(SDL_FRAMEBUFFER_ACCELERATION=0 "$window" $redraws)" >>"$figures"
        echo "hole|SDL2, default surface $("$window" $accelerated_redraws)" >>"$figures"
        SDL_FRAMEBUFFER_ACCELERATION=0 measure "$process" start "SDL2 and Cairo" $starts "$window" \
            -- ours "$build/brevant" --backend desktop
        measure "$process" start "SDL2 and Cairo, default surface" $starts "$window"
    fi
    if [ -x "$build/bench/bench_peer_qt" ]; then measure "$process" start Qt6 $starts "$build/bench/bench_peer_qt"; fi
    if [ -x "$build/bench/bench_peer_gtk" ]; then measure "$process" start GTK4 $starts "$build/bench/bench_peer_gtk"; fi
    if [ ! -x "$window" ]; then measure "$process" start ours $starts "$build/brevant" --backend desktop; fi
    if [ -x "$build/bench/bench_peer_idle" ]; then
        measure "$process" idle "SDL2, both devices open, nothing else" $idle_seconds "$build/bench/bench_peer_idle"
    fi
    measure "$process" idle ours $idle_seconds "$build/brevant" --backend desktop
    if [ -x "$build/bench/bench_peer_path" ] && command -v pulseaudio >/dev/null; then
        measure "$root/bench/path.py" "$build/brevant" "$build/bench/bench_peer_path"
    fi
}

if [ "${2:-}" = --with-display ]; then # within the X server that is started below
    figures=$3 work=$4
    trap - EXIT
    with_display
    exit
fi

: >"$figures"
google "$build/bench/bench_note"
measure "$build/bench/bench_press"
measure "$build/bench/bench_peer_press"
google "$build/bench/bench_frame"
google "$build/bench/bench_analysis"
measure "$build/bench/bench_process" elapsed ours $speed_runs "$build/brevant" --backend headless --data "$work/data" \
    --performance "$root/demo/ode-to-joy.performance" --breath "$root/demo/ode-to-joy.wav" \
    --record "$work/recording.wav" --screenshots "$work"
if command -v xvfb-run >/dev/null; then
    xvfb-run -a -s "-screen 0 1280x1400x24" "$0" "$build" --with-display "$figures" "$work"
else
    say "the rows with a window need xvfb and xauth"
fi

awk -v demo="$demo_seconds" '
function digits(value) { return value < 10 ? sprintf("%.2g", value) : sprintf("%.0f", value) }
function shown(value, unit) {
    if (unit == "MiB") return sprintf("%.0f MiB", value / 1048576)
    if (unit == "%") return sprintf("%.2f %%", value * 100)
    if (unit == "times") return sprintf("%.0f times", demo * 1e9 / value)
    if (unit == "period") return sprintf("period %.0f", value)
    if (unit != "time") return sprintf("%.0f %s", value, unit)
    if (value < 1e3) return digits(value) " ns"
    if (value < 1e6) return digits(value / 1e3) " us"
    return value < 1e8 ? sprintf("%.2f ms", value / 1e6) : sprintf("%.0f ms", value / 1e6)
}
function cell(row, column, unit) {
    return (row "|" column) in figure ? shown(figure[row "|" column], unit) : "not measured"
}
FNR == NR { value = $NF; sub(/ [^ ]*$/, ""); figure[$0] = value; next }
{
    split($0, field, " *; *")
    count = split(field[5], peers, " *& *")
    others = ""
    for (i = 1; i <= count; ++i) {
        name = peers[i]
        text = cell(field[1], name, field[3])
        if (text == "not measured") text = "not installed"
        others = others (i > 1 ? "; " : "") name " " text
    }
    printf "| %s | %s | %s | %s |\n", field[2], cell(field[1], "ours", field[3]), field[4], others
}
BEGIN { print "| work | here | promise | peers |\n|---|---|---|---|" }
' "$figures" - <<'ROWS'
note; change of note, once heard; time; at most 10 us; SDL_mixer & GStreamer playbin & libsndfile reopen & stb_vorbis reopen & SDL_mixer chunk in memory
note, first; change of note, the first time; time; at most 2 ms;
press; press to sound: the period of the stream that has it, median; period; period 1, the very next; SDL_mixer
press, worst; press to sound, the worst of 50; period; period 1, the very next; SDL_mixer
frame; full frame: four ellipses, gradient buttons, six labels, two pictures; time; at most 0.38 ms; Qt6 raster & Cairo, default filter & Cairo, bilinear & Cairo, pictures scaled once
frame, play screen; full frame of the play screen; time; ;
hole; one hole redrawn and on the screen; time; at most 0.2 ms; SDL2 & SDL2, default surface
start; start to first frame; time; at most 36 ms; SDL2 and Cairo & SDL2 and Cairo, default surface & Qt6 & GTK4
memory; peak memory at the first frame; MiB; at most 40 MiB; SDL2 and Cairo & SDL2 and Cairo, default surface & Qt6 & GTK4
memory playing; peak memory, the play screen shown; MiB; at most 40 MiB;
analysis, silence; analysis of a block: silence; time; at most 200 ns; plain loop
analysis, blowing; analysis of a block: blowing; time; at most 200 ns; plain loop
analysis, noise; analysis of a block: noise; time; at most 200 ns; plain loop
analysis, crossings; analysis of a block: a crossing at every sample; time; at most 200 ns; plain loop
idle; play screen, nobody touching, microphone on; %; at most 0.5 % of a core; SDL2, both devices open, nothing else
wakeups; the same: wake-ups a second, all threads; times a second; ; SDL2, both devices open, nothing else
path key; key to sound, through X and PulseAudio, median; time; at most 2 ms more; SDL2, a trivial program
path key, worst; the same, the worst of 50; time; ; SDL2, a trivial program
path breath; breath to sound, likewise, median; time; at most 22 ms more; SDL2, a trivial program
path breath, worst; the same, the worst of 50; time; ; SDL2, a trivial program
elapsed; headless: the demonstration, times real time; times; at least 100 times;
ROWS
if [ -s "$work/errors" ]; then
    cp "$work/errors" "$build/bench-errors.log"
    say "messages are in $build/bench-errors.log"
fi
