#!/usr/bin/env python3
"""Plays hours of random performances with everything in them, headless, and watches what the program holds meanwhile.

Usage: headless.py PROGRAM SECONDS

Each round is one performance made from its number, so that a round that fails can be had again. Memory and open files
are sampled while it runs, and its speed is told.
"""

import pathlib
import random
import subprocess
import sys
import tempfile
import time

import growth

VIRTUAL_MINUTES = 10 * 60
SAMPLE_SECONDS = 0.1
LONGEST_SECONDS = 600
# More growth than this between two thirds is a leak: of 140 bytes an action, for there are some sixty thousand of them in
# a third.
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
            if time.monotonic() > begin + LONGEST_SECONDS:
                process.kill()
            samples.append(growth.sample(process.pid))
            time.sleep(SAMPLE_SECONDS)
    seconds = time.monotonic() - begin
    if process.returncode != 0:
        return f"ended with {process.returncode}: {(folder / 'log').read_text()[-4000:]}"
    told, reason = growth.judge([each for each in samples if each], ALLOWED_GROWTH_KB)
    print(f"round {number}: {VIRTUAL_MINUTES * 60 / seconds:6.0f} times real time, {told}", flush=True)
    return reason


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
