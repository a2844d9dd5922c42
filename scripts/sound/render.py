"""The built module, played through orvo-host, as a function of samples."""

import os
import re
import struct
import subprocess
import tempfile
from pathlib import Path

import numpy

FACTORS = ["Off", "2x", "4x", "8x", "16x"]
MODES = ["Hard", "Soft I", "Soft II", "Pressure", "Boost"]

# Between the two ends of the signal's road, nothing but the section that is measured.
ALONE = {"enable_post": "Off"}
NOTHING = {"enable_single": "Off", "enable_post": "Off"}


def write_wav(path, samples, rate):
    """32-bit float. `samples` has a column per channel, or is mono."""
    data = numpy.ascontiguousarray(samples, dtype="<f4")
    channels = 1 if data.ndim == 1 else data.shape[1]
    form = struct.pack("<HHIIHH", 3, channels, rate, rate * channels * 4, channels * 4, 32)
    body = data.tobytes()
    path.write_bytes(struct.pack("<4sI4s4sI", b"RIFF", 36 + len(body), b"WAVE", b"fmt ", len(form)) + form
                     + struct.pack("<4sI", b"data", len(body)) + body)


def read_wav(path):
    """The samples of a 32-bit float file, as they are, with a column per channel."""
    data = path.read_bytes()
    position, channels = 12, 0
    while position < len(data):
        name, size = struct.unpack_from("<4sI", data, position)
        if name == b"fmt ":
            channels = struct.unpack_from("<H", data, position + 10)[0]
        if name == b"data":
            return numpy.frombuffer(data, "<f4", size // 4, position + 8).reshape(-1, channels)
        position += 8 + size + size % 2
    raise ValueError(f"{path}: no samples")


class Orvo:
    """One module; every rendering is a process of its own, with settings that are no user's."""

    def __init__(self, program, module, prefix=()):
        self.program, self.module, self.prefix = program, module, list(prefix)
        self.folder = tempfile.TemporaryDirectory(prefix="orvo-sound-")
        self.calls = 0

    def run(self, *arguments, module=True):
        """What orvo-host prints. Commands that work on files alone take no module."""
        arguments += ("--plugin", str(self.module)) if module else ()
        environment = {**os.environ, "XDG_CONFIG_HOME": self.folder.name, "HOME": self.folder.name}
        done = subprocess.run([*self.prefix, str(self.program), *arguments], env=environment,
                              capture_output=True, text=True)
        if done.returncode != 0:
            raise RuntimeError(f"orvo-host {' '.join(arguments)}: {done.stderr}")
        self.calls += 1
        return done.stdout

    def play(self, samples, settings, rate=48000):
        """What comes out, lined up with what went in, and the program's line about it by its columns' names."""
        before, after = (Path(self.folder.name) / name for name in ("in.wav", "out.wav"))
        write_wav(before, samples, rate)
        chosen = [word for name, value in settings.items() for word in ("--set", f"{name}={value}")]
        head, line = self.run("render", str(before), str(after), "--force", *chosen).splitlines()[:2]
        output = read_wav(after)
        columns = re.split(r"\s{2,}", head.replace(" rate", "  rate").strip())
        return (output[:, 0] if samples.ndim == 1 else output), dict(zip(columns, re.split(r"\s{2,}", line.strip())))
