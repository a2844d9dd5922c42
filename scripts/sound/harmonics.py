"""Which harmonics each curve makes, against how far a sine is driven over the threshold."""

import numpy

from . import aliasing
from .curves import CURVES
from .plot import Axis, Panel, picture, table
from .render import MODES
from .signals import gain, periods, tones, windows
from .spectrum import harmonics

TONE = periods(997)
DRIVES = [half / 2 for half in range(-12, 49)]  # dB over the threshold
ORDERS = list(range(2, 10))


def measure(orvo):
    """factor, or "formula" -> mode -> for each of DRIVES the levels of ORDERS."""
    fine = numpy.sin(2 * numpy.pi * numpy.arange(1 << 17) / (1 << 17))
    peaks = [gain(aliasing.THRESHOLD + drive) for drive in DRIVES]
    signal = numpy.concatenate([tones([TONE], peak) for peak in peaks])
    figures = {"16x": {}, "Off": {}, "formula": {}}
    for mode in MODES:
        for factor in ("16x", "Off"):
            played = windows(orvo.play(signal, aliasing.clipper(mode, factor))[0])
            figures[factor][mode] = [harmonics(row, TONE, ORDERS) for row in played]
        shaped = [CURVES[mode](peak * fine, aliasing.THRESHOLD, 0.5) for peak in peaks]
        figures["formula"][mode] = [harmonics(row, 1, ORDERS) for row in shaped]
    return figures


def even(figures):
    """The loudest even harmonic of all, in dB relative to the tone."""
    return max(row[n] for factor in ("16x", "Off") for rows in figures[factor].values() for row in rows
               for n in range(0, len(ORDERS), 2))


def departure(figures, factor):
    """The greatest difference to the formula in dB, of harmonics above -80 dB."""
    pairs = ((played, expected) for mode in MODES
             for rows in zip(figures[factor][mode], figures["formula"][mode]) for played, expected in zip(*rows))
    return max(abs(played - expected) for played, expected in pairs if expected > -80)


def tables(figures):
    rows = [[mode, f"{drive:g} dB", *(f"{level:.1f}" if level > -120 else "-"
                                    for level in figures["16x"][mode][DRIVES.index(drive)][1::2])]
            for mode in MODES for drive in (0, 3, 6, 12, 24)]
    yield "harmonics", table(["", "over the threshold", "H3", "H5", "H7", "H9"], rows)
    yield "harmonics-checks", table(["", "dB"], [
        ["the loudest of H2, H4, H6 and H8, of all curves and drives", f"{even(figures):.0f}"],
        ["the greatest difference to the formulas without oversampling, of all harmonics above -80 dB",
         f"{departure(figures, 'Off'):.4f}"]])


def pictures(figures):
    x, y = Axis(-6, 24, [-6, 0, 6, 12, 18, 24]), Axis(-100, 0, [-100, -80, -60, -40, -20, 0])
    yield "harmonics.svg", picture(
        [Panel(mode, x, y, [[(d, row[n]) for d, row in zip(DRIVES, figures["16x"][mode])] for n in (1, 3, 5, 7)],
               "peak over the threshold (dB)") for mode in MODES], ["H3", "H5", "H7", "H9"])
