#!/usr/bin/env python3
"""From a key, and from a breath, to the sound: through the X server, the sound server and back, as a player has it.

Usage: path.py OURS PEER, with a display of its own

Both programs run one after the other on one PulseAudio server with null sinks. Times are from the call that presses the key, or
from the write that gives the breath to the microphone's sink, to the arrival of the first loud sample at a recorder on the output's
monitor: the same way for both, so that their difference is the programs'. Prints a line for each figure, in nanoseconds.
"""

import ctypes
import fcntl
import math
import os
import pathlib
import statistics
import struct
import subprocess
import sys
import tempfile
import threading
import time

PRESSES = 50
LOUD = 0.001  # Silence is exact zeros there.
TONE_SECONDS = 0.15
REST_SECONDS = 0.35
PATIENCE_SECONDS = 30
BREATH_RATE = 48000
# 5 ms, low enough for the phone's rate.
NOISE = b"".join(struct.pack("<h", round(20000 * math.sin(i * 2 * math.pi * 5 / 240))) for i in range(240))
SERVER = ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
          "-L", "module-native-protocol-unix auth-anonymous=1",
          "-L", "module-null-sink sink_name=out rate=48000 channels=1 format=float32le norewinds=1",
          "-L", "module-null-sink sink_name=micsink rate=8000 channels=2 format=u8 norewinds=1",
          "-L", "module-remap-source master=micsink.monitor source_name=mic"]


class Recorder:
    """When it became loud after it had been silent, last."""

    def __init__(self):
        self.became_loud = 0.0
        self.last_loud = 0.0
        self.process = subprocess.Popen(["parec", "-d", "out.monitor", "--raw", "--latency-msec=2", "--rate=48000",
                                         "--channels=1", "--format=float32le"], stdout=subprocess.PIPE)
        threading.Thread(target=self.run, daemon=True).start()

    def run(self):
        while data := os.read(self.process.stdout.fileno(), 65536):
            now = time.monotonic()
            usable = len(data) // 4 * 4
            if max((abs(value) for value, in struct.iter_unpack("<f", data[:usable])), default=0) > LOUD:
                if now - self.last_loud > REST_SECONDS / 3:
                    self.became_loud = now
                self.last_loud = now


class Breath:
    """The microphone's sink, which hears silence but while something blows."""

    def __init__(self):
        self.process = subprocess.Popen(["pacat", "--playback", "--device=micsink", "--raw", "--latency-msec=10",
                                         f"--rate={BREATH_RATE}", "--channels=1", "--format=s16le"], stdin=subprocess.PIPE)
        # What waits in the pipe is late: a page of it is 43 ms.
        fcntl.fcntl(self.process.stdin.fileno(), fcntl.F_SETPIPE_SZ, 4096)
        self.is_blown = False
        self.began = 0.0
        threading.Thread(target=self.run, daemon=True).start()

    def run(self):
        was_blown = False
        while True:
            blown = self.is_blown
            if blown and not was_blown:
                self.began = time.monotonic()
            was_blown = blown
            try:
                # Waits while the pipe is full.
                os.write(self.process.stdin.fileno(), NOISE if blown else bytes(len(NOISE)))
            except OSError:
                return


class Keyboard:
    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.xtst = ctypes.CDLL("libXtst.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))
        self.r = self.x11.XKeysymToKeycode(self.display, ctypes.c_ulong(ord("r")))

    def press(self, down):
        self.xtst.XTestFakeKeyEvent(self.display, self.r, down, 0)
        self.x11.XFlush(self.display)
        return time.monotonic()


def wait_for(what, condition):
    deadline = time.monotonic() + PATIENCE_SECONDS
    while not condition():
        if time.monotonic() > deadline:
            sys.exit(f"path: {what} did not come")
        time.sleep(0.002)


def measure(recorder, begin, end):
    """Seconds from each beginning to its sound."""
    times = []
    for number in range(PRESSES):
        wait_for("silence", lambda: time.monotonic() - recorder.last_loud > REST_SECONDS)
        # Not in step with any period.
        time.sleep(number % 7 * 0.0023)
        asked = time.monotonic()
        began = begin()
        wait_for("a sound", lambda: recorder.became_loud > max(asked, began()) > 0)
        times.append(recorder.became_loud - began())
        time.sleep(TONE_SECONDS)
        end()
    return times


def run(name, program, folder, recorder, breath, keyboard):
    data = folder / "data"
    data.mkdir(exist_ok=True)

    def start(settings):
        (data / "info.ini").write_text(settings)
        process = subprocess.Popen([program, "--backend", "desktop", "--data", str(data)], stderr=subprocess.DEVNULL)
        wait_for("its streams", lambda: subprocess.run(["pactl", "list", "short", "sink-inputs"], capture_output=True,
                                                       text=True, check=False).stdout.count("\n") >= 2)
        time.sleep(4)  # The splash.
        return process

    def stop(process):
        process.terminate()
        process.wait()

    def press():
        when = keyboard.press(True)
        return lambda: when

    def blow():
        breath.began = 0.0
        breath.is_blown = True
        return lambda: breath.began

    process = start("[Setup]\nAutoPlay=1\nFirstBlow=1\n")
    keys = measure(recorder, press, lambda: keyboard.press(False))
    stop(process)
    process = start("[Setup]\nFirstBlow=1\n")
    blows = measure(recorder, blow, lambda: setattr(breath, "is_blown", False))
    stop(process)
    for what, times in (("key", keys), ("breath", blows)):
        print(f"path {what}|{name} {statistics.median(times) * 1e9:.0f}")
        print(f"path {what}, worst|{name} {max(times) * 1e9:.0f}", flush=True)


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "run/pulse").mkdir(parents=True)
        for each in (folder / "run", folder / "run/pulse"):
            each.chmod(0o700)
        os.environ.update(HOME=name, XDG_RUNTIME_DIR=str(folder / "run"), PULSE_RUNTIME_PATH=str(folder / "run/pulse"),
                          SDL_AUDIODRIVER="pulseaudio")
        server = subprocess.Popen(SERVER, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            wait_for("the sound server", lambda: subprocess.run(["pactl", "info"], capture_output=True,
                                                                check=False).returncode == 0)
            for command in (["set-default-sink", "out"], ["set-default-source", "mic"]):
                subprocess.run(["pactl", *command], check=True)
            recorder, breath, keyboard = Recorder(), Breath(), Keyboard()
            run("SDL2, a trivial program", sys.argv[2], folder, recorder, breath, keyboard)
            run("ours", sys.argv[1], folder, recorder, breath, keyboard)
        finally:
            server.kill()
            server.wait()
    return 0


if __name__ == "__main__":
    sys.exit(main())
