#!/usr/bin/env python3
"""Checks what the files in source/ include, to the end of every chain.

A file may reach its own folder and folders of a lower rank, and of JUCE what its folder is given here. Its folder is
the first part of its path; no file has a rank of its own. docs/architecture.md explains the ranks.
"""

import pathlib
import re
import sys

# From the lowest rank to the highest. Folders of one rank know nothing of each other.
RANKS = (
    ("common",),
    ("dsp",),
    ("state",),
    ("settings",),
    ("widgets",),
    ("look", "presets"),
    ("core",),
    ("browser", "dialogs"),
    ("editor", "module"),
)
RANK_OF_FOLDER = {folder: rank for rank, folders in enumerate(RANKS) for folder in folders}

# What a folder's files may name of JUCE and of the resources, themselves or through what they include. What JUCE's
# modules include of each other is not followed.
NUMBERS = {"juce_core", "juce_audio_basics"}
ENGINE = NUMBERS | {"juce_dsp"}
LISTS = NUMBERS | {"juce_data_structures", "juce_events"}
CONTROLS = NUMBERS | {"juce_graphics", "juce_gui_basics"}
DIALOGS = LISTS | CONTROLS | {"juce_audio_processors"}
MODULES = {
    "common": NUMBERS,
    "dsp": ENGINE,
    "state": NUMBERS | {"juce_audio_processors"},
    "settings": LISTS,
    "widgets": CONTROLS | ENGINE | {"juce_audio_processors", "LunaBinary.h"},
    "look": CONTROLS | LISTS | {"juce_audio_utils", "LunaBinary.h"},
    "presets": DIALOGS,
    "core": DIALOGS | ENGINE,
    "browser": DIALOGS,
    "dialogs": DIALOGS,
    "editor": DIALOGS | ENGINE | {"LunaBinary.h"},
    "module": {"juce_audio_plugin_client", "juce_core", "juce_gui_basics"},
}

INCLUDE = re.compile(r'\s*#\s*include\s+(["<])([^">]+)[">]')


def folder_of(path):
    return path.split("/")[0]


class Tree:
    def __init__(self, source):
        self.source = source
        self.known = {}

    def resolve(self, path, name):
        """The path below source/ of a quoted include: beside the file, else from the top. None if in neither."""
        beside = (self.source / path).parent / name
        found = next((p for p in (beside, self.source / name) if p.is_file()), None)
        return found.resolve().relative_to(self.source).as_posix() if found else None

    def includes_of(self, path):
        """Line, target and whether the target is a file, for what the checks are about."""
        if path not in self.known:
            self.known[path] = list(self.read(path))
        return self.known[path]

    def read(self, path):
        for number, line in enumerate((self.source / path).read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            bracket, name = match.groups()
            target = self.resolve(path, name)
            if target or bracket == '"':
                yield number, target or name, target is not None
            elif name.startswith("juce_") or name == "LunaBinary.h":
                yield number, name.split("/")[0], False

    def faults_of(self, path):
        folder = folder_of(path)
        if folder not in RANK_OF_FOLDER:
            yield f"{path}: no rank; add its folder to the tables in scripts/check_includes.py"
            return
        for number, target, is_file in self.includes_of(path):
            for chain, fault in self.walk(folder, target, is_file, ()):
                yield f"{path}:{number}: {fault}" + (f", through {' > '.join(chain)}" if chain else "")

    def walk(self, folder, target, is_file, chain, seen=None):
        """Follows an include out of the folder. Files of the folder itself have their own turn."""
        seen = set() if seen is None else seen
        if target in seen:
            return
        seen.add(target)
        fault = fault_of(folder, target, is_file)
        if fault:
            yield chain, fault
        elif is_file and folder_of(target) != folder:
            for _, further, further_is_file in self.includes_of(target):
                yield from self.walk(folder, further, further_is_file, (*chain, target), seen)


def fault_of(folder, target, is_file):
    """What is wrong if a file of this folder reaches the target, or None."""
    if is_file:
        rank, target_rank = RANK_OF_FOLDER[folder], RANK_OF_FOLDER.get(folder_of(target), len(RANKS))
        is_allowed = folder_of(target) == folder or target_rank < rank
        return None if is_allowed else f"{folder}, of rank {rank}, reaches {target} of rank {target_rank}"
    if target.startswith("juce_") or target == "LunaBinary.h":
        return None if target in MODULES[folder] else f"{folder} reaches {target}"
    return f"includes {target}, which is not in source/"


def main():
    top = pathlib.Path(__file__).resolve().parent.parent
    source = pathlib.Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else top / "source"
    files = sorted(p.relative_to(source).as_posix() for p in source.rglob("*") if p.suffix in (".h", ".cpp"))
    if not files:
        print(f"no sources in {source}")
        return 1
    tree = Tree(source)
    faults = [fault for path in files for fault in tree.faults_of(path)]
    print("\n".join(faults) if faults else f"{len(files)} files, no upward include")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
