"""How far each curve is from its formula in double precision."""

import numpy

from .curves import CURVES
from .plot import table
from .render import ALONE, MODES
from .signals import decibels

# As parameters they arrive exactly: their place in the range is a whole number of eighths.
THRESHOLDS = [0, -2.25, -4.5, -9, -13.5, -18]  # dB
SHAPES = [0, 0.25, 0.5, 0.75, 1]
SHAPELESS = ("Hard", "Soft II")


def inputs():
    """Evenly spread between -4 and 4, and in decibels from -100 up."""
    random = numpy.random.default_rng(3)
    quiet = 10 ** random.uniform(-5, 0.6, 20000) * random.choice([-1, 1], 20000)
    return numpy.concatenate([random.uniform(-4, 4, 60000), quiet]).astype("<f4")


def measure(orvo):
    """mode -> the greatest error of all thresholds and shapes, and the root mean square"""
    samples = inputs()
    figures = {}
    for mode in MODES:
        errors = []
        for threshold in THRESHOLDS:
            for shape in [0] if mode in SHAPELESS else SHAPES:
                settings = {**ALONE, "mode_single": mode, "threshold_single": threshold, "shape_single": shape}
                exact = CURVES[mode](samples.astype(float), threshold, shape)
                errors.append(numpy.abs(orvo.play(samples, settings)[0] - exact))
        figures[mode] = {"greatest": max(map(numpy.max, errors)),
                         "root mean square": numpy.sqrt(numpy.mean(numpy.concatenate(errors) ** 2))}
    return figures


def tables(figures):
    """`figures` has those of each set of instructions under its name."""
    rows = [[mode, *(f"{values[mode][what]:.1e} ({decibels(values[mode][what]):.0f} dBFS)"
                     for values in figures.values() for what in ("greatest", "root mean square"))] for mode in MODES]
    heads = (f"{what}, {name}" for name in figures for what in ("greatest", "root mean square"))
    yield "exactness", table(["", *heads], rows)
