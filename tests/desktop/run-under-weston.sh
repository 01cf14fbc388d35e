#!/usr/bin/env bash
# Plays the program as a Wayland client, with a real mouse and keyboard: Weston runs in an X window and hands on what that
# gets. Its X window has no touch screen, so fingers are not shown here. The argument is the build folder.
set -euo pipefail

here=$(dirname "$(readlink -f "$0")")
build=$(readlink -f "${1:?run-under-weston: which build folder?}")
if [ "${2:-}" != inside ]; then exec "$here/with-xvfb.sh" bash "$0" "$build" inside; fi

readonly screen_width=540 screen_height=960                                   # in the phone's own shape
readonly hole_x=135 hole_y=402 hole_rim=105 low_left_x=135 low_left_y=774  # in that screen's pixels
readonly wayland=brevant-proof

name=run-under-weston
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$here/common.sh"

# start_weston: a compositor that gives its one client the whole screen, in an X window that has the keyboard.
start_weston() {
    weston --backend=x11-backend.so --use-pixman --no-config --idle-time=0 --shell=kiosk-shell.so \
        --width=$screen_width --height=$screen_height --socket=$wayland >"$folder/weston" 2>&1 &
    weston=$!
    helpers+=("$weston")
    until_true "Weston's socket" test -S "$XDG_RUNTIME_DIR/$wayland"
    until_true "Weston's window" xdotool search --classname weston
    window=$(xdotool search --classname weston | head -n 1)
    xdotool windowfocus --sync "$window"
}
start_client() { start -u DISPLAY SDL_VIDEODRIVER=wayland WAYLAND_DISPLAY=$wayland SDL_AUDIODRIVER=disk "$@"; }
mouse_to() { xdotool mousemove --window "$window" "$1" "$2"; }
rim_color() {
    xwd -silent -id "$window" -out "$folder/shot.xwd"
    convert "$folder/shot.xwd" -format "%[pixel:p{$((hole_x + hole_rim)),$hole_y}]" info:
}
hole_has_grown() { [ "$(rim_color)" != "$open" ]; }
hole_is_open() { [ "$(rim_color)" = "$open" ]; }

export HOME=$folder XDG_RUNTIME_DIR=$folder/run
mkdir "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
write_breath
start_weston
# Another window, beside it, that can have the keyboard.
xlogo -geometry 100x100-0-0 &
helpers+=($!)
until_true "the other window" xdotool search --onlyvisible --classname xlogo
other=$(xdotool search --onlyvisible --classname xlogo | head -n 1)
mouse_to 270 225 # Between the holes.

start_client SDL_DISKAUDIOFILEIN="$folder/breath"
until_true "the play screen" plays
passed "the play screen follows the splash"
grep -q "\"what\":\"frame\".*\"damage\":\[0,0,$screen_width,$screen_height\]" "$folder/trace" ||
    fail "the program did not take the size that the compositor gave it"
passed "the program has the size that the compositor gave it"
sounds "no hole covered" 5_00 523.25
open=$(rim_color)
mark
xdotool keydown r
sounds "the top left hole covered by a key" 4_01 277.18
until_true "the covered hole's growth" hole_has_grown
passed "the covered hole has grown on the screen"
mouse_to $low_left_x $low_left_y
mark
xdotool mousedown 1
sounds "both holes at the left covered by key and mouse" 4_05 349.23
mark
xdotool keyup r
sounds "the low left hole covered by the mouse" 4_09 440.00
mark
xdotool mouseup 1
sounds "no hole covered again" 5_00 523.25
# Whoever loses the keyboard loses the keys that are down on it.
mark
xdotool keydown r
until_true "the key's tone" opens 4_01
mark
xdotool windowfocus --sync "$other"
sounds "the ocarina that has lost the keyboard" 5_00 523.25
until_true "the open hole" hole_is_open
xdotool keyup r
xdotool windowfocus --sync "$window"
xdotool key Escape
ends_well "the back key"

start_client SDL_DISKAUDIOFILEIN="$folder/no such microphone"
until_true "the play screen" plays
is_silent "the ocarina without a microphone"
xdotool keydown space
sounds "the space bar as breath" 5_00 523.25
kill "$weston"
ends_well "the end of the compositor"

echo "$checks passed, 0 failed"
