#!/usr/bin/env bash
# Which folder may include what. The linker holds the layers apart; this holds the headers and the libraries apart.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

failures=0
# forbid WHERE PATTERN WHY: no #include line that matches PATTERN may stand in the files of WHERE.
forbid() {
    local found
    # shellcheck disable=SC2086 # WHERE is a list of pathspecs
    found=$(git grep -nE "^#include [<\"]($2)" -- $1 || true)
    [ -z "$found" ] && return
    printf '%s\n%s\n' "layers: $3" "$found" >&2
    failures=$((failures + 1))
}

forbid "app splash shared ui sound play setup" "backend/|runtime/|launcher/" "the ocarina sees nothing of the host but Tizen/"
forbid "app splash shared ui sound play setup" "SDL|cairo|pango|sndfile|samplerate|pugixml|CLI" "the ocarina uses no library"
forbid "host/Tizen/*.h" "backend/|runtime/" "the framework's headers show nothing of what stands behind them"
forbid "host/Tizen" "backend/[a-z]+/" "the framework knows no back end"
forbid "host/runtime" "backend/[a-z]+/|Tizen/|launcher/" "the runtime knows neither a back end nor the framework"
forbid "host/backend" "runtime/|Tizen/|launcher/" "a back end knows the seam alone"
forbid "host :!host/backend/desktop" "SDL" "SDL is named in host/backend/desktop alone"
forbid "host :!host/backend/desktop" "alsa/" "ALSA is named in host/backend/desktop alone"
forbid "host :!host/backend/cairo" "cairo|pango" "Cairo and Pango are named in host/backend/cairo alone"
forbid "host :!host/png" "png\\.|zlib|stb_" "libpng, zlib and stb are named in host/png alone"
forbid "host/text" "runtime/|Tizen/|launcher/|backend/" "the rules of setting text need nothing but the text"
forbid "host/png" "runtime/|Tizen/|launcher/|backend/[a-z]+/" "pictures are decoded from plain bytes"
forbid "host :!host/runtime/soundfile" "sndfile|samplerate|ogg/|vorbis/" "libsndfile, libsamplerate, libogg and libvorbis are named in host/runtime/soundfile alone"
forbid "host :!host/runtime/package" "pugixml" "pugixml is named in host/runtime/package alone"
forbid "host :!host/launcher" "CLI/" "CLI11 is named in host/launcher alone"
forbid "tests :!tests/desktop" "SDL" "the tests link no SDL"
[ "$failures" -eq 0 ] || exit 1
echo "layers: clean"
