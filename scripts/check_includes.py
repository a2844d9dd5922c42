#!/usr/bin/env python3
"""Checks the direction of includes in source/: a file includes files of its own rank or of a lower one.

The longest entry of RANKS that fits a file's path gives its rank. An entry without an extension stands for a
folder and all below it, or for header and source of that name. docs/architecture.md explains the ranks.
"""

import pathlib
import re
import sys

RANKS = {
    "common": 0,
    "dsp": 1,
    "state": 2,
    "settings": 3,
    "widgets": 4,
    "look": 5,
    "presets": 5,
    "core": 6,
    "browser": 7,
    "dialogs": 7,
    "editor": 8,
    "module": 8,
}

# The DSP, its tests and its benchmarks build without audio processors, trees or graphics.
JUCE_MODULES = {
    "dsp": {"juce_core", "juce_audio_basics", "juce_dsp"},
}

# Made by the build.
GENERATED = {"LunaBinary.h", "BinaryData.h"}

INCLUDE = re.compile(r'\s*#\s*include\s+(["<])([^">]+)[">]')


def rank_of(path):
    """None if no entry fits."""
    keys = [key for key in RANKS if path.startswith(key + "/") or path.rsplit(".", 1)[0] == key]
    return RANKS[max(keys, key=len)] if keys else None


def resolve(source, path, name):
    """The path below source/ of a quoted include: beside the file, else from the top. None if in neither."""
    beside = (source / path).parent / name
    found = next((p for p in (beside, source / name) if p.is_file()), None)
    return found.resolve().relative_to(source).as_posix() if found else None


def fault_of(source, path, bracket, name):
    """What is wrong with one include, or None."""
    allowed = JUCE_MODULES.get(path.split("/")[0])
    if bracket == "<":
        module = name.split("/")[0]
        if allowed and module.startswith("juce_") and module not in allowed:
            return f"includes {module}; this folder may use {', '.join(sorted(allowed))} only"
        return None
    if name in GENERATED:
        return None
    target = resolve(source, path, name)
    if target is None:
        return f"includes {name}, which is not in source/"
    rank, target_rank = rank_of(path), rank_of(target)
    if target_rank is not None and target_rank > rank:
        return f"rank {rank} includes {target} of rank {target_rank}"
    return None


def faults_of(source, path):
    if rank_of(path) is None:
        yield f"{path}: no rank; add its folder to the table in scripts/check_includes.py"
        return
    for number, line in enumerate((source / path).read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        fault = match and fault_of(source, path, *match.groups())
        if fault:
            yield f"{path}:{number}: {fault}"


def main():
    top = pathlib.Path(__file__).resolve().parent.parent
    source = pathlib.Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else top / "source"
    files = sorted(p.relative_to(source).as_posix() for p in source.rglob("*") if p.suffix in (".h", ".cpp"))
    if not files:
        print(f"no sources in {source}")
        return 1
    faults = [fault for path in files for fault in faults_of(source, path)]
    print("\n".join(faults) if faults else f"{len(files)} files, no upward include")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
