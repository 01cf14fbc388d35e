#!/usr/bin/env python3
"""Lets a monkey at the program in a real window: keys, the mouse, sizes, focus, hiding, and sound devices and servers
that come and go.

Usage: monkey.py PROGRAM SECONDS, with a display of its own (tests/desktop/with-xvfb.sh)

What it does follows from a fixed number; only how much of it fits into the time is the machine's. The program must still
be there at the end, end in order when it is asked to, and hold no more in the last third of the time than in the second.
"""

import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

import growth

NUMBER = 1
DEVICE_SECONDS = 2
PATIENCE_SECONDS = 60
# Decoded tones may take 64 MB, and a monkey comes across them slowly. What is lost for good is the sanitiser's to tell.
ALLOWED_GROWTH_KB = 32768
# Without Escape, which ends the program from its first screen.
KEYS = ["r", "u", "f", "j", "space", "Return", "Tab", "Prior", "Next", "Left", "Down", "BackSpace", "a", "7", "F11"]
SERVER = ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "-L",
          "module-native-protocol-unix auth-anonymous=1"]
SINKS = [["module-null-sink", "sink_name=one", "norewinds=1"], ["module-null-sink", "sink_name=two", "rate=48000"]]


def run(*command):
    try:
        return subprocess.run(command, check=False, capture_output=True, text=True, timeout=PATIENCE_SECONDS).stdout
    except subprocess.TimeoutExpired:
        return ""


class World:
    """Sound devices of our own: a server, and sinks whose monitors are the microphones."""

    def __init__(self, folder):
        (folder / "run/pulse").mkdir(parents=True)
        for each in (folder / "run", folder / "run/pulse"):
            each.chmod(0o700)
        os.environ.update(HOME=str(folder), XDG_RUNTIME_DIR=str(folder / "run"),
                          PULSE_RUNTIME_PATH=str(folder / "run/pulse"), SDL_AUDIODRIVER="pulseaudio")
        self.server = None
        self.sinks = {}
        self.start()

    def start(self):
        self.server = subprocess.Popen(SERVER, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        deadline = time.monotonic() + PATIENCE_SECONDS
        while not run("pactl", "info"):
            if time.monotonic() > deadline:
                sys.exit("monkey: the sound server does not start")
            time.sleep(0.1)

    def end(self):
        self.server.kill()
        self.server.wait()
        self.sinks = {}

    def change(self, chance):
        kind = chance.randrange(8)
        if kind == 0:
            self.end()
            self.start()
        number = chance.randrange(len(SINKS))
        if number in self.sinks:
            run("pactl", "unload-module", self.sinks.pop(number))
        else:
            self.sinks[number] = run("pactl", "load-module", *SINKS[number]).strip()


def act(chance, window):
    """One thing that a monkey does."""
    kind = chance.randrange(40)
    if kind < 18:
        run("xdotool", chance.choice(["keydown", "keyup", "key"]), chance.choice(KEYS))
    elif kind < 36:
        run("xdotool", "mousemove", "--window", window, str(chance.randrange(560)), str(chance.randrange(980)),
            chance.choice(["mousedown", "mouseup", "click"]), "1")
    elif kind == 36:
        run("xdotool", "windowsize", window, str(chance.randrange(200, 1280)), str(chance.randrange(300, 1024)))
    elif kind == 37:
        run("xdotool", "windowunmap", window)
        run("xdotool", "windowmap", window)
    elif kind == 38:
        run("xdotool", "windowfocus", "1")
    else:
        run("xdotool", "windowfocus", window, "keyup", "space", "mouseup", "1")


def play(program, seconds, folder):
    """The reason why it failed, or nothing."""
    world, chance, samples, actions = World(folder), random.Random(NUMBER), [], 0
    log, trace = folder / "log", folder / "trace"
    with log.open("w") as output:
        process = subprocess.Popen([program, "--backend", "desktop", "--data", str(folder / "data"), "--language", "en",
                                    "--trace", str(trace)], stderr=output)
    try:
        window = run("xdotool", "search", "--sync", "--name", "Brevant").split()[0]
        end = time.monotonic() + seconds
        next_device = time.monotonic()
        while time.monotonic() < end and process.poll() is None:
            act(chance, window)
            actions += 1
            if time.monotonic() >= next_device:
                next_device = time.monotonic() + DEVICE_SECONDS
                samples.append(growth.sample(process.pid))
                world.change(chance)
        reason = None if process.poll() is None else f"the program ended by itself after {actions} actions"
        process.terminate()
        process.wait(timeout=PATIENCE_SECONDS)
    except subprocess.TimeoutExpired:
        reason = "the program does not end when it is asked to"
        process.kill()
        process.wait()
    finally:
        world.end()
    if reason or process.returncode != 0:
        return f"{reason or 'the program ended'}, status {process.returncode}:\n{log.read_text()[-6000:]}"
    frames = trace.read_text().count('"what":"frame"')
    told, reason = growth.judge([each for each in samples if each], ALLOWED_GROWTH_KB)
    print(f"monkey: {actions} actions, {frames / seconds:.1f} frames a second, {told}")
    return reason


def main():
    program, seconds = os.path.abspath(sys.argv[1]), float(sys.argv[2])
    with tempfile.TemporaryDirectory() as folder:
        reason = play(program, seconds, pathlib.Path(folder))
    if reason:
        print(f"monkey: {reason}", file=sys.stderr)
    return 1 if reason else 0


if __name__ == "__main__":
    sys.exit(main())
