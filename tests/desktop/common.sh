# shellcheck shell=bash
# What the scripts that play the whole program share: its start and its end, what its trace tells, and what a device has
# played. They source it with `name`, the script's own, and `build`, the build folder with brevant in it.

readonly rate=48000 frame_bytes=4  # what SDL's disk driver is asked for: mono, 32-bit floats
: "${name:?}" "${build:?}"

folder=$(mktemp -d)
program=
helpers=()  # processes beside the program, ended after it
checks=0
told=0
finish() {
    local status=$? process
    for process in $program "${helpers[@]}"; do
        kill -KILL "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    if [ "$status" -ne 0 ]; then
        echo "$name: what the program said:" >&2
        cat "$folder/log" >&2 2>/dev/null || true
        tail -n 20 "$folder/trace" >&2 2>/dev/null || true
    fi
    rm -rf "$folder"
}
trap finish EXIT

fail() {
    echo "$name: $*" >&2
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
        if [ -n "$program" ]; then kill -0 "$program" 2>/dev/null || fail "the program ended before $what"; fi
        [ "$SECONDS" -lt "$deadline" ] || fail "waited in vain for $what"
        sleep 0.05
    done
}

# start NAME=VALUE...: the program with a new data folder and these changes of its environment, as env takes them.
start() {
    rm -rf "$folder/data" "$folder/played" "$folder/trace"
    # In the folder, since without a file of its own the disk driver's microphone looks for one in the current folder.
    (cd "$folder" && exec env "$@" SDL_DISKAUDIOFILE="$folder/played" "$build/brevant" \
        --backend desktop --data "$folder/data" --trace "$folder/trace" --language en) >"$folder/log" 2>&1 &
    program=$!
    told=0
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
    grep -q '"what":"app","event":"ended"' "$folder/trace" || fail "$1 did not end the application in order"
    passed "$1 ends the program in order"
}

says() { grep -q "$1" "$folder/log"; }
# mark: what is told from now on is news.
mark() { told=$(wc -l <"$folder/trace"); }
# has_told PATTERN: a line of the trace since the mark matches it.
has_told() { tail -n "+$((told + 1))" "$folder/trace" | grep -q -- "$1"; }
# has_told_after FIRST THEN: as has_told, and a later line matches THEN.
has_told_after() { tail -n "+$((told + 1))" "$folder/trace" | sed "0,/$1/d" | grep -q -- "$2"; }
# The splash form has been composed.
shows_its_splash() { sed '1,/"current","name":"IDF_FORM_SPLASH"/d' "$folder/trace" | grep -q '"what":"frame"'; }
# The play screen is current before and after the splash, and there when it has been composed after that.
plays() { sed '1,/"current","name":"IDF_FORM_SPLASH"/d' "$folder/trace" | sed '1,/"current","name":"IDF_FORM"/d' | grep -q '"what":"frame"'; }
# opens NOTE: the recording of that note, as the last thing that the player did, is opened and played.
opens() { has_told_after "\"file\":\"ocarina_$1.ogg\"" '"event":"play"'; }

# A minute or more of breath for SDL's disk driver, which reads 32-bit floats, one channel at 48000 Hz: noise.
write_breath() {
    local number
    perl -e 'print pack("f", rand(1.8) - 0.9) for 1 .. 48000' >"$folder/second"
    for ((number = 0; number < 120; ++number)); do cat "$folder/second"; done >"$folder/breath"
}

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
