#!/usr/bin/env python3
"""Plays hours of random performances with everything in them, headless, and watches what the program holds meanwhile.

Usage: soak.py PROGRAM SECONDS

Each round is one performance made from its number, so that a round that fails can be had again. Memory and open files
are sampled while it runs: what the last third of a round holds may not exceed what the second third held.
"""

import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

VIRTUAL_MINUTES = 10 * 60
SAMPLE_SECONDS = 0.1
# Caches fill in the first third. More growth than this between the others is a leak: of 140 bytes an action, for
# there are some sixty thousand of them in a third.
ALLOWED_GROWTH_KB = 8192
CONTROLS = ["IDC_BUTTON_MENU", "IDC_BUTTON_SETUP", "IDC_BUTTON_HELP", "IDC_BUTTON_CLOSE", "IDC_CHECK_AUTO_PLAY"]
# Without the Back key, which ends the program from its first screen.
KEYS = ["KeyR", "KeyU", "KeyF", "KeyJ", "Space", "Enter", "Tab", "volume-up", "volume-down"]


def action(chance):
    x, y, finger = chance.randrange(720), chance.randrange(1280), chance.randrange(10)
    kind = chance.randrange(20)
    if kind < 6:
        return f"touch {finger} {chance.choice(['down', 'move'])} {x} {y}"
    if kind < 9:
        return f"touch {finger} up"
    if kind < 12:
        return f"breath {chance.random():.2f}"
    if kind < 14:
        return f"key {chance.choice(KEYS)} {chance.choice(['press', 'release'])}"
    if kind < 16:
        return f"tap {chance.choice(CONTROLS)}"
    if kind == 16:
        return chance.choice(["background", "foreground", "screen-off", "screen-on"])
    if kind == 17:
        return f"{chance.choice(['lose', 'restore'])} {chance.choice(['speaker', 'microphone'])}"
    if kind == 18:
        return f"ringtone {chance.randrange(16)}"
    return f"peak {chance.randrange(128, 256)}"


def performance(number):
    """Bursts of everything. After each the world is put right again, so that no round plays in the background alone."""
    chance = random.Random(number)
    lines, now = [], 2600
    while now < VIRTUAL_MINUTES * 60_000:
        for _ in range(50):
            now += chance.randrange(1, 400)
            lines.append(f"{now} {action(chance)}")
        lines += [f"{now} {each}" for each in ("foreground", "screen-on", "restore speaker", "restore microphone")]
    return "\n".join(lines) + f"\n{now + 1} quit\n"


def sample(pid):
    """Resident memory in kB and open files; nothing when the process has ended."""
    try:
        status = pathlib.Path(f"/proc/{pid}/status").read_text()
        memory = next(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmRSS:"))
        return memory, len(os.listdir(f"/proc/{pid}/fd"))
    except (FileNotFoundError, ProcessLookupError, StopIteration):
        return None


def play(program, number, folder):
    """One round; the reason why it failed, or nothing."""
    file = folder / "soak.performance"
    file.write_text(performance(number))
    begin = time.monotonic()
    with (folder / "log").open("w") as log:
        process = subprocess.Popen([program, "--backend", "headless", "--data", str(folder / "data"), "--performance",
                                    str(file), "--language", "en"], stderr=log)
        samples = []
        while process.poll() is None:
            samples.append(sample(process.pid))
            time.sleep(SAMPLE_SECONDS)
    seconds = time.monotonic() - begin
    samples = [each for each in samples if each]
    third = len(samples) // 3
    if process.returncode != 0:
        return f"ended with {process.returncode}: {(folder / 'log').read_text()[-2000:]}"
    if third == 0:
        return "was over before it could be watched"
    middle, last = samples[third:2 * third], samples[2 * third:]
    memory = [max(each[0] for each in part) for part in (middle, last)]
    # A file is open for a moment while it is read or written; what stays open is open in every sample.
    files = [min(each[1] for each in part) for part in (middle, last)]
    print(f"round {number}: {VIRTUAL_MINUTES * 60 / seconds:6.0f} times real time, "
          f"memory {memory[0]} then {memory[1]} kB, files {files[0]} then {files[1]}", flush=True)
    if memory[1] > memory[0] + ALLOWED_GROWTH_KB:
        return f"memory grew by {memory[1] - memory[0]} kB"
    if files[1] > files[0]:
        return f"open files grew from {files[0]} to {files[1]}"
    return None


def main():
    program, seconds = sys.argv[1], float(sys.argv[2])
    end = time.monotonic() + seconds
    number = 0
    with tempfile.TemporaryDirectory() as folder:
        while number == 0 or time.monotonic() < end:
            number += 1
            reason = play(program, number, pathlib.Path(folder))
            if reason:
                print(f"soak: round {number} {reason}", file=sys.stderr)
                return 1
    print(f"soak: {number * VIRTUAL_MINUTES / 60:.0f} virtual hours, nothing grew")
    return 0


if __name__ == "__main__":
    sys.exit(main())
