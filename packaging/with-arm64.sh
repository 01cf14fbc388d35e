#!/usr/bin/env bash
# with-arm64.sh COMMAND...: runs the command where programs for arm64 run as well, by qemu-user-static. For root alone.
# Where the kernel does not know qemu for all programs, it is told for the command alone, which Linux can since 6.7.
set -euo pipefail
readonly emulator=/usr/bin/qemu-aarch64-static formats=/proc/sys/fs/binfmt_misc

if [ "$(uname -m)" = aarch64 ] || grep -qsx enabled "$formats/qemu-aarch64"; then exec "$@"; fi

# The first bytes of a program for arm64 and which of their bits count, as the kernel takes them. F: the emulator is opened
# now, since it is not there behind a chroot.
readonly head='\x7fELF\x02\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\xb7\x00'
readonly bits='\xff\xff\xff\xff\xff\xff\xff\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff'
readonly format=":qemu-aarch64:M::$head:$bits:$emulator:F"

# It waits for its users before it does anything. What the command writes goes where this script's output goes.
# shellcheck disable=SC2016 # expanded by the inner shell
readonly inside='echo ready
read -r _
if ! { mount -t binfmt_misc none "$0" && printf %s "$1" >"$0/register"; }; then
    echo "with-arm64: this kernel learns of qemu only for the whole machine; the package binfmt-support does that" >&2
    exit 1
fi
exec "${@:2}" >&3 </dev/null'
exec 3>&1
# debootstrap goes by the variable: who has users of his own makes no devices.
coproc namespace { exec env container=lxc unshare --user --mount --pid --fork bash -c "$inside" "$formats" "$format" "$@"; }
# shellcheck disable=SC2154 # coproc sets it
pid=$namespace_PID
read -r _ <&"${namespace[0]}"
# Every user and group is the one of the same number outside.
echo "0 0 65536" >"/proc/$pid/uid_map"
echo "0 0 65536" >"/proc/$pid/gid_map"
echo >&"${namespace[1]}"
wait "$pid"
