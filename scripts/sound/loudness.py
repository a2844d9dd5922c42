"""The loudness meters against the published test signals of EBU Tech 3341 and Tech 3342 that can be calculated: stereo
sines of 1 kHz. The standards' other signals are recordings, have five channels, or are for true peaks."""

from pathlib import Path

import numpy

from .plot import table
from .render import write_wav
from .signals import RATE, gain

INTEGRATED, MOMENTARY_END, MOMENTARY, SHORT_END, SHORT, RANGE = range(6)  # columns of `orvo-host loudness`
SILENCE = -400
TOLERANCE = {RANGE: 1.0}  # LU; 0.1 elsewhere


def tone(steps):
    """`steps` are pairs of level in dBFS and seconds; the phase goes on through them."""
    level = numpy.concatenate([numpy.full(round(seconds * RATE), gain(db)) for db, seconds in steps])
    sine = level * numpy.sin(2 * numpy.pi * 1000 * numpy.arange(len(level)) / RATE)
    return numpy.stack([sine, sine], axis=1)


def until(steps, repeats, *ends):
    """The repeated steps, cut at each of the ends in seconds."""
    whole = tone(steps * repeats)
    return [whole[: round(end * RATE)] for end in ends]


def cases():
    """(test, what, what is expected, the signals, the column): one signal or several that all are to read the same."""
    gate = [(-36, 10), (-23, 60), (-36, 10)]
    short, momentary = [(-20, 1.34), (-30, 1.66)], [(-20, 0.18), (-30, 0.22)]
    for number, level in ((1, -23), (2, -33)):
        for name, column in (("momentary", MOMENTARY), ("short-term", SHORT), ("integrated", INTEGRATED)):
            yield f"3341-{number}", name, level, [tone([(level, 20)])], column
    yield "3341-3", "integrated", -23, [tone(gate)], INTEGRATED
    yield "3341-4", "integrated", -23, [tone([(-72, 10), *gate, (-72, 10)])], INTEGRATED
    yield "3341-5", "integrated", -23, [tone([(-26, 20), (-20, 20.1), (-26, 20)])], INTEGRATED
    yield "3341-9", "short-term after 3 s", -23, until(short, 5, 3, 3.77, 4.5, 6.1, 9.9, 15), SHORT_END
    yield "3341-10", "highest short-term", -23, [
        tone([(SILENCE, 0.15 * n), (-23, 3), (SILENCE, 1)]) for n in range(20)], SHORT
    yield "3341-12", "momentary after 1 s", -23, until(momentary, 25, 1, 1.23, 2.05, 4.4, 10), MOMENTARY_END
    yield "3341-13", "highest momentary", -23, [
        tone([(SILENCE, 0.02 * n), (-23, 0.4), (SILENCE, 1)]) for n in range(20)], MOMENTARY
    for number, expected, levels in ((1, 10, (-20, -30)), (2, 5, (-20, -15)), (3, 20, (-40, -20)),
                                     (4, 15, (-50, -35, -20, -35, -50))):
        yield f"3342-{number}", "range", expected, [tone([(level, 20) for level in levels])], RANGE


def read(orvo, signals, column):
    """A number for each signal."""
    paths = [Path(orvo.folder.name) / f"tone{n}.wav" for n in range(len(signals))]
    for path, samples in zip(paths, signals):
        write_wav(path, samples, RATE)
    lines = orvo.run("loudness", *map(str, paths), module=False).splitlines()[1:]
    return [float(line.split()[1 + column]) for line in lines]


def measure(orvo):
    return [(test, what, expected, read(orvo, signals, column), TOLERANCE.get(column, 0.1))
            for test, what, expected, signals, column in cases()]


def tables(figures):
    rows = []
    for test, what, expected, readings, tolerance in figures:
        low, high = min(readings), max(readings)
        within = all(abs(reading - expected) <= tolerance + 1e-9 for reading in readings)
        read_as = f"{low:.2f}" if low == high else f"{low:.2f} to {high:.2f}"
        rows.append([test, what, f"{expected} ± {tolerance:g}", read_as, "yes" if within else "**no**"])
    yield "loudness", table(["test", "reading", "published", "Orvo", "within"], rows)
