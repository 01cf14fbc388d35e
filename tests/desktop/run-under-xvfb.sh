#!/usr/bin/env bash
# Plays the whole program in a real X window, with a real mouse and keyboard, and listens to what it plays: SDL's disk
# driver stands in for the sound card. The argument is the build folder, with brevant and tests/desktop/desktop_proof.
set -euo pipefail

here=$(dirname "$(readlink -f "$0")")
root=$(readlink -f "$here/../..")
build=$(readlink -f "${1:?run-under-xvfb: which build folder?}")

if [ "${2:-}" != inside ]; then
    "$here/with-xvfb.sh" "$build/tests/desktop/desktop_proof" --gtest_brief=1
    exec "$here/with-xvfb.sh" bash "$0" "$build" inside
fi

readonly rate=48000 frame_bytes=4          # what SDL's disk driver is asked for: mono, 32-bit floats
readonly phone_width=720                   # the phone's own pixels, which the layouts are in
readonly hole_x=180 hole_y=536 hole_rim=140  # the top left hole's centre, and where only its covered ellipse reaches
readonly low_left_x=180 low_left_y=1032

folder=$(mktemp -d)
program=
checks=0
finish() {
    local status=$?
    if [ -n "$program" ]; then kill -KILL "$program" 2>/dev/null || true; fi
    if [ "$status" -ne 0 ]; then
        echo "run-under-xvfb: what the program said:" >&2
        cat "$folder/log" >&2 2>/dev/null || true
        tail -n 20 "$folder/trace" >&2 2>/dev/null || true
    fi
    rm -rf "$folder"
}
trap finish EXIT

fail() {
    echo "run-under-xvfb: $*" >&2
    exit 1
}
passed() {
    checks=$((checks + 1))
    echo "ok: $*"
}

# until_true WHAT COMMAND...: tries until the command succeeds.
until_true() {
    local what=$1 deadline=$((SECONDS + 60))
    shift
    until "$@" >/dev/null 2>&1; do
        kill -0 "$program" 2>/dev/null || fail "the program ended before $what"
        [ "$SECONDS" -lt "$deadline" ] || fail "waited in vain for $what"
        sleep 0.05
    done
}

# start NAME=VALUE...: the program with a new data folder, and these in its environment.
start() {
    rm -rf "$folder/data" "$folder/played" "$folder/trace"
    # In the folder, since without a file of its own the disk driver's microphone looks for one in the current folder.
    (cd "$folder" && exec env SDL_AUDIODRIVER=disk SDL_DISKAUDIOFILE="$folder/played" "$@" "$build/brevant" \
        --backend desktop --data "$folder/data" --trace "$folder/trace" --language en) >"$folder/log" 2>&1 &
    program=$!
    until_true "its window" xdotool search --name Brevant
    window=$(xdotool search --name Brevant | head -n 1)
    measure_window
}

measure_window() {
    eval "$(xdotool getwindowgeometry --shell "$window" | grep -E '^(WIDTH|HEIGHT)=')"
}

# ends_well WHAT: the program ends by itself, with status 0.
ends_well() {
    local status=0 try
    for ((try = 0; try < 100; ++try)); do
        kill -0 "$program" 2>/dev/null || break
        sleep 0.1
    done
    kill -0 "$program" 2>/dev/null && fail "$1 did not end the program"
    wait "$program" || status=$?
    program=
    [ "$status" -eq 0 ] || fail "$1 ended the program with status $status"
    passed "$1 ends the program with status 0"
}

size_is() {
    measure_window
    [ "$WIDTH" -eq "$1" ] && [ "$HEIGHT" -eq "$2" ]
}

# device N: a length of the phone's as one of the window's.
device() { echo $(($1 * WIDTH / phone_width)); }
shot() { xwd -silent -id "$window" -out "$folder/$1.xwd"; }
color() { convert "$folder/$1.xwd" -format "%[pixel:p{$2,$3}]" info:; }
# The splash form has been composed.
shows_its_splash() { sed '1,/"current","name":"IDF_FORM_SPLASH"/d' "$folder/trace" | grep -q '"what":"frame"'; }
# shows_splash NAME: that shot is of the splash picture.
shows_splash() {
    local difference
    # On stderr, as "1234.5 (0.0188)" of the full range; the status only says whether there is any at all.
    difference=$(compare -metric RMSE "$folder/$1.xwd" "$folder/intro.png" null: 2>&1 || true)
    awk -F'[()]' '{ exit !($2 < 0.03) }' <<<"$difference"
}
# mark: what is told from now on is news.
mark() { told=$(wc -l <"$folder/trace"); }
# has_told PATTERN: a line of the trace since the mark matches it.
has_told() { tail -n "+$((told + 1))" "$folder/trace" | grep -q -- "$1"; }
# has_told_after FIRST THEN: as has_told, and a later line matches THEN.
has_told_after() { tail -n "+$((told + 1))" "$folder/trace" | sed "1,/$1/d" | grep -q -- "$2"; }
# The play screen is current before and after the splash, and there when it has been composed after that.
plays() { sed '1,/"current","name":"IDF_FORM_SPLASH"/d' "$folder/trace" | sed '1,/"current","name":"IDF_FORM"/d' | grep -q '"what":"frame"'; }
# opens NOTE: the recording of that note, as the last thing that the player did, is opened and played.
opens() { has_told_after "\"file\":\"ocarina_$1.ogg\"" '"event":"play"'; }

played_bytes() { stat -c %s "$folder/played"; }
# has_played FROM BYTES: so many bytes have been played since the file had FROM.
has_played() { [ "$(played_bytes)" -ge $(($1 + $2)) ]; }
# Listens for half a second, a quarter of a second from now: writes loudness (the peak) and pitch in Hz. What the program
# tells of a tone is ahead of what the device has played by a few periods.
listen() {
    local from length=$((rate * frame_bytes / 2))
    from=$(($(played_bytes) / frame_bytes * frame_bytes + rate * frame_bytes / 4))
    until_true "half a second of sound" has_played "$from" "$length"
    # The pitch is the first lag at which the sound is nearly as much like itself as it ever is, at a quarter of the rate.
    tail -c +$((from + 1)) "$folder/played" | head -c "$length" | od -An -v -t f4 -w4 | awk -v rate="$rate" '
        { if ($1 > peak) peak = $1; if (-$1 > peak) peak = -$1; sum += $1; if (NR % 4 == 0) { x[n++] = sum; sum = 0 } }
        END {
            if (peak == 0) { print 0, 0; exit }
            for (lag = 8; lag <= 100; ++lag) {
                r[lag] = 0
                for (i = 0; i + 100 < n; ++i) r[lag] += x[i] * x[i + lag]
                if (lag > 9 && r[lag] > best) best = r[lag]
            }
            for (lag = 10; lag < 100; ++lag) if (r[lag] > 0.85 * best && r[lag] >= r[lag - 1] && r[lag] > r[lag + 1]) break
            bend = r[lag - 1] - 2 * r[lag] + r[lag + 1]
            if (bend != 0) lag += 0.5 * (r[lag - 1] - r[lag + 1]) / bend
            printf "%.4f %.1f\n", peak, rate / 4 / lag
        }'
}
# sounds WHAT NOTE HZ: since the mark that note was begun, and that pitch, within less than half a semitone, is to be heard.
sounds() {
    local peak pitch
    until_true "the tone of $1" opens "$2"
    read -r peak pitch < <(listen)
    awk -v peak="$peak" -v pitch="$pitch" -v hz="$3" \
        'BEGIN { exit !(peak > 0.02 && pitch > hz / 1.025 && pitch < hz * 1.025) }' ||
        fail "$1 should sound at $3 Hz, but is $pitch Hz with a peak of $peak"
    passed "$1 sounds at $3 Hz: $pitch Hz, peak $peak"
}
is_silent() {
    local peak pitch
    read -r peak pitch < <(listen)
    awk -v peak="$peak" 'BEGIN { exit !(peak < 0.0005) }' || fail "$1 should be silent, but has a peak of $peak"
    passed "$1 is silent"
}
has_focus() { [ "$(xdotool getwindowfocus -f)" -eq "$window" ]; }
# hole_has_grown: since the shot "open", the top left hole's rim has been covered.
hole_has_grown() {
    local rim
    rim="$(device $((hole_x + hole_rim))) $(device $hole_y)"
    shot covered
    # shellcheck disable=SC2086 # two coordinates
    [ "$(color open $rim)" != "$(color covered $rim)" ]
}
# An icon of 128 pixels is told as a list of numbers: its two sides, then every pixel. A corner is transparent, the middle
# is not.
has_icon() {
    xprop -id "$window" -notype 32c _NET_WM_ICON | tr -dc '0-9,' |
        awk -F, '{ exit !($1 == 128 && $2 == 128 && NF == 2 + 128 * 128 && $3 == 0 && $(2 + 64 * 128 + 64) != 0) }'
}
mouse_to() { xdotool mousemove --window "$window" "$(device "$1")" "$(device "$2")"; }

# Two minutes of breath for the microphone: noise as SDL's disk driver reads it, 32-bit floats, one channel at 48000 Hz.
perl -e 'print pack("f", rand(1.8) - 0.9) for 1 .. 48000' >"$folder/second"
for ((number = 0; number < 120; ++number)); do cat "$folder/second"; done >"$folder/breath"

start SDL_DISKAUDIOFILEIN="$folder/breath"
# The splash stands for two seconds from its first frame on: first the shots, then a look at them.
until_true "the splash" shows_its_splash
for ((number = 0; number < 5; ++number)); do shot "early$number"; done
convert "$root/res/images/intro01.png" -resize "${WIDTH}x${HEIGHT}" -background black -gravity center \
    -extent "${WIDTH}x${HEIGHT}" "$folder/intro.png"
while ! shows_splash "early$((--number))"; do
    [ "$number" -gt 0 ] || fail "no splash picture was on the screen"
done
passed "the splash picture is on the screen"
mouse_to 360 300 # Between the holes.
told=0
until_true "the play screen" plays
until_true "the keyboard's focus" has_focus
passed "the play screen follows it"
until_true "the window's icon" has_icon
passed "the window has the application's icon"

# The open instrument, one hole by a key, one more by the mouse, and back.
sounds "no hole covered" 5_00 523.25
shot open
mark
xdotool keydown r
sounds "the top left hole covered by a key" 4_01 277.18
until_true "the covered hole's growth" hole_has_grown
passed "the covered hole has grown"
mouse_to $low_left_x $low_left_y
mark
xdotool mousedown 1
sounds "both holes at the left covered by key and mouse" 4_05 349.23
mark
xdotool keyup r
sounds "the low left hole covered by the mouse" 4_09 440.00
mark
xdotool windowsize "$window" 400 700
until_true "the new size" size_is 400 700
until_true "the play screen in the new size" has_told '"what":"frame".*"damage":\[0,0,400,700\]'
mark
xdotool mouseup 1
mouse_to 360 300
sounds "no hole covered in a smaller window" 5_00 523.25
xdotool key Escape
ends_well "the back key"

start SDL_DISKAUDIOFILEIN="$folder/no such microphone"
mouse_to 360 300
until_true "the play screen" plays
until_true "the keyboard's focus" has_focus
is_silent "the ocarina without a microphone"
shot open
mark
xdotool keydown r
# Seen before there is breath: a wrong tone is then no lost key.
until_true "the hole under its key" hole_has_grown
xdotool keydown space
sounds "the top left hole with the space bar as breath" 4_01 277.18
mark
xdotool keyup space
until_true "the tone's end" has_told '"event":"close"'
is_silent "the ocarina after the breath"
xdotool keyup r
# Whoever stops a program may send it more than once.
kill -TERM "$program"
kill -TERM "$program"
ends_well "a polite kill"
grep -q '"what":"app","event":"ended"' "$folder/trace" || fail "a polite kill did not end the application in order"

echo "$checks passed, 0 failed"
