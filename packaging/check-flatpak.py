#!/usr/bin/env python3
"""Checks the Flatpak manifest: its form, and that it asks for a window, sound, the graphics card and nothing else.

Beside that it keeps the recordings, in a folder of its own.
"""

import sys

import yaml

ASKED = {"--socket=wayland", "--socket=fallback-x11", "--socket=pulseaudio", "--device=dri", "--persist=Music"}
NEEDED = ["id", "runtime", "runtime-version", "sdk", "command", "finish-args", "modules"]


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        manifest = yaml.safe_load(file)
    problems = [f"{name} is missing" for name in NEEDED if name not in manifest]
    asked = set(manifest.get("finish-args", []))
    problems += [f"{each} is not for an instrument" for each in sorted(asked - ASKED)]
    problems += [f"{each} is missing: it needs that" for each in sorted(ASKED - asked)]
    for module in manifest.get("modules", []):
        if not module.get("name") or not module.get("buildsystem") or not module.get("sources"):
            problems.append(f"the module {module.get('name')} lacks a name, a build system or sources")
    for problem in problems:
        print(f"{sys.argv[1]}: {problem}", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
