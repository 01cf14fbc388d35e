#!/usr/bin/env bash
# fetch-sources.sh FOLDER: Debian's sources of the libraries that a browser's build compiles itself, unpacked below
# FOLDER. They come by apt from where the machine's other packages come from, signatures checked, and with
# Debian's patches; what is there stays. Needs dpkg-dev.
set -euo pipefail

readonly packages=(pugixml libogg libvorbis libsamplerate)

mkdir -p "$1"
cd "$1"
missing=()
for package in "${packages[@]}"; do
    [ -e "$package" ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

# A machine's lists name binary packages at most times, so that of the sources is made of them, for this call alone.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/parts" "$work/lists/partial"
for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -e "$list" ] || continue
    sed -n 's/^deb /deb-src /p' "$list" >"$work/parts/$(basename "$list" .list)-src.list"
done
for list in /etc/apt/sources.list.d/*.sources; do
    [ -e "$list" ] || continue
    sed 's/^Types:.*/Types: deb-src/' "$list" >"$work/parts/$(basename "$list")"
done
apt=(apt-get -q -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$work/parts"
    -o Dir::State::Lists="$work/lists" -o APT::Sandbox::User=)
"${apt[@]}" update >&2
for package in "${missing[@]}"; do
    rm -rf "${work:?}/$package"
    mkdir "$work/$package"
    (cd "$work/$package" && "${apt[@]}" source "$package" >&2)
    mv "$work/$package"/*/ "$package"
done
