#!/usr/bin/env python3
"""Runs clang-tidy over the sources that some build folders compile and prints what it finds.

A file is checked as the first of the folders that compiles it does.

A file is checked again only when something has changed that its result depends on: clang-tidy, its configurations, the
way the file is compiled, the file itself, or one of the project's headers that it includes. Files that passed are
remembered in the cache folder, by a digest of all that.

Usage: tidy.py CLANG-TIDY CACHE-FOLDER BUILD-FOLDER... -- FILE...
"""

import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

INCLUDE = re.compile(rb'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)
INCLUDE_OPTIONS = ("-I", "-isystem")
EMSCRIPTEN = ("emcc", "em++")


class Sources:
    """The project's files with what each of them includes. Headers of libraries do not count."""

    def __init__(self, root):
        self.root = root
        self.files = {}

    def read(self, path):
        if path not in self.files:
            content = path.read_bytes()
            names = [(a or b).decode() for a, b in INCLUDE.findall(content)]
            self.files[path] = (content, names)
        return self.files[path]

    def closure(self, path, folders):
        """The file and, by name, every header of the project that it includes directly or through others."""
        found, left = set(), [path]
        while left:
            file = left.pop()
            if file in found:
                continue
            found.add(file)
            for name in self.read(file)[1]:
                for folder in [file.parent, *folders]:
                    header = (folder / name).resolve()
                    if header.is_file() and header.is_relative_to(self.root):
                        left.append(header)
                        break
        return sorted(found)


def include_folders(command, directory):
    words = iter(shlex.split(command))
    for word in words:
        for option in INCLUDE_OPTIONS:
            if word == option:
                yield directory / next(words)
            elif word.startswith(option):
                yield directory / word[len(option):]


@functools.cache
def hidden_options(compiler):
    """What Emscripten's compiler adds to its command line: the target, the place of its library's headers."""
    if os.path.basename(compiler) not in EMSCRIPTEN:
        return ()
    run = subprocess.run([compiler, "--cflags"], stdout=subprocess.PIPE, text=True, check=True)
    return tuple(f"--extra-arg={option}" for option in shlex.split(run.stdout))


def digest(base, sources, path, entry):
    directory = pathlib.Path(entry["directory"])
    summed = base.copy()
    summed.update(" ".join([entry["command"], *entry["hidden"]]).encode())
    for file in sources.closure(path, list(include_folders(entry["command"], directory))):
        summed.update(b"\0" + str(file.relative_to(sources.root)).encode() + b"\0" + sources.read(file)[0])
    return summed.hexdigest()


def read_entries(build):
    """How the folder compiles each file, by its path."""
    with open(pathlib.Path(build) / "compile_commands.json", encoding="utf-8") as file:
        for entry in json.load(file):
            compiler = shlex.split(entry["command"])[0]
            yield pathlib.Path(entry["file"]).resolve(), {**entry, "build": build, "hidden": hidden_options(compiler)}


def check(tidy, entry, name):
    run = subprocess.run([tidy, "-p", entry["build"], *entry["hidden"], "--quiet", "--warnings-as-errors=*", name],
                         capture_output=True, text=True)
    return run.returncode, run.stdout + run.stderr


def main():
    tidy, cache, *rest = sys.argv[1:]
    builds, names = rest[:rest.index("--")], rest[rest.index("--") + 1:]
    root = pathlib.Path.cwd().resolve()
    cache = pathlib.Path(cache)
    cache.mkdir(parents=True, exist_ok=True)
    entries = {}
    for build in builds:
        for path, entry in read_entries(build):
            entries.setdefault(path, entry)

    base = hashlib.sha256(subprocess.run([tidy, "--version"], capture_output=True, check=True).stdout)
    for file in sorted(root.glob("*/.clang-tidy")) + [root / ".clang-tidy"]:
        base.update(file.read_bytes())
    sources = Sources(root)
    due, unknown = {}, []
    for name in names:
        path = (root / name).resolve()
        if path not in entries:
            unknown.append(name)
            continue
        key = digest(base, sources, path, entries[path])
        if not (cache / key).exists():
            due[name] = key

    failures = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        running = {pool.submit(check, tidy, entries[(root / name).resolve()], name): name for name in due}
        for number, done in enumerate(concurrent.futures.as_completed(running), 1):
            name = running[done]
            status, output = done.result()
            print(f"[{number}/{len(due)}] {name}", flush=True)
            if status == 0:
                (cache / due[name]).touch()
            else:
                failures += 1
                print(output, flush=True)
    for name in unknown:
        print(f"lint: nothing here compiles {name}, so it was not checked")
    print(f"clang-tidy: {failures} of {len(due)} files with findings; "
          f"{len(names) - len(due) - len(unknown)} were checked before")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
