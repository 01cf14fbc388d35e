#!/usr/bin/env python3
"""Checks the Flatpak manifest: its form, and that it asks for nothing but a window, sound and the graphics card."""

import sys

import yaml

ALLOWED = {"--socket=wayland", "--socket=fallback-x11", "--socket=pulseaudio", "--device=dri"}
NEEDED = ["id", "runtime", "runtime-version", "sdk", "command", "finish-args", "modules"]


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        manifest = yaml.safe_load(file)
    problems = [f"{name} is missing" for name in NEEDED if name not in manifest]
    problems += [f"{asked} is not for an instrument" for asked in set(manifest.get("finish-args", [])) - ALLOWED]
    for module in manifest.get("modules", []):
        if not module.get("name") or not module.get("buildsystem") or not module.get("sources"):
            problems.append(f"the module {module.get('name')} lacks a name, a build system or sources")
    for problem in problems:
        print(f"{sys.argv[1]}: {problem}", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
