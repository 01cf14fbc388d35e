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

readonly hole_x=180 hole_y=536 hole_rim=140  # the top left hole's centre, and where only its covered ellipse reaches
readonly low_left_x=180 low_left_y=1032
readonly phone_width=720  # these pixels' screen

name=run-under-xvfb
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$here/common.sh"

# start_window NAME=VALUE...: the program with these in its environment, and its window.
start_window() {
    start SDL_AUDIODRIVER=disk "$@"
    until_true "its window" xdotool search --name Brevant
    window=$(xdotool search --name Brevant | head -n 1)
    measure_window
}

measure_window() {
    eval "$(xdotool getwindowgeometry --shell "$window" | grep -E '^(WIDTH|HEIGHT)=')"
}

size_is() {
    measure_window
    [ "$WIDTH" -eq "$1" ] && [ "$HEIGHT" -eq "$2" ]
}

# device N: a length of the phone's as one of the window's.
device() { echo $(($1 * WIDTH / phone_width)); }
shot() { xwd -silent -id "$window" -out "$folder/$1.xwd"; }
color() { convert "$folder/$1.xwd" -format "%[pixel:p{$2,$3}]" info:; }
# shows_splash NAME: that shot is of the splash picture.
shows_splash() {
    local difference
    # On stderr, as "1234.5 (0.0188)" of the full range; the status only says whether there is any at all.
    difference=$(compare -metric RMSE "$folder/$1.xwd" "$folder/intro.png" null: 2>&1 || true)
    awk -F'[()]' '{ exit !($2 < 0.03) }' <<<"$difference"
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

write_breath
start_window SDL_DISKAUDIOFILEIN="$folder/breath"
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

start_window SDL_DISKAUDIOFILEIN="$folder/no such microphone"
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

echo "$checks passed, 0 failed"
