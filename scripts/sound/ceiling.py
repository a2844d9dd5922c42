"""Whether the ceiling holds what is driven 24 dB over it."""

import numpy

from .plot import table
from .render import ALONE, FACTORS, MODES
from .signals import decibels, gain, noise, periods, struck_chords, tones
from .spectrum import true_peak

SIGNALS = {"noise": lambda: noise(1 << 18), "chords": lambda: struck_chords(6)[: 1 << 18]}
CEILINGS = [0, -1, -6]  # dBFS
OVER, IN_GAIN = 24, 18  # dB


def _drive(orvo, samples, db, mode, factor):
    peak = gain(db + OVER - IN_GAIN) / numpy.max(numpy.abs(samples))
    settings = {"in_gain": IN_GAIN, "oversampling": factor, "threshold_post": db, "mode_post": mode}
    return orvo.play(samples * peak, settings)[0]


def _overshoots(orvo):
    """(signal, factor) -> how far the filters carry a wave over the threshold of "Hard", 12 dB below its peaks, in dB;
    the ceiling is out of reach."""
    tone = tones([periods(5000)], 1.0)
    over = {}
    for name, samples in [("sine of 5 kHz", tone), *((name, make()) for name, make in SIGNALS.items())]:
        for factor in FACTORS:
            settings = {**ALONE, "mode_single": "Hard", "threshold_single": -12, "oversampling": factor}
            output = orvo.play(samples / numpy.max(numpy.abs(samples)), settings)[0]
            over[name, factor] = decibels(numpy.max(numpy.abs(output))) + 12
    return over


def measure(orvo):
    """ceiling -> factor -> the largest sample of all signals and modes; (signal, factor) -> highest point between the
    samples over the ceiling of 0 dBFS, in dB, in mode "Hard"."""
    largest, between = {}, {}
    for name, make in SIGNALS.items():
        samples = make()
        for db in CEILINGS:
            for factor in FACTORS:
                for mode in MODES if factor in ("Off", "4x") else ["Hard"]:
                    output = _drive(orvo, samples, db, mode, factor)
                    largest[db, factor] = max(largest.get((db, factor), 0), float(numpy.max(numpy.abs(output))))
                    if mode == "Hard" and db == 0:
                        between[name, factor] = decibels(true_peak(output))
    return {"largest": largest, "between": between, "overshoots": _overshoots(orvo)}


def nearest(db):
    """The single-precision number nearest to that gain."""
    return float(numpy.float32(gain(db)))


def check(figures):
    for (db, factor), largest in figures["largest"].items():
        if largest > nearest(db):
            raise SystemExit(f"error: at {factor} a sample of {largest} is above the ceiling of {db} dBFS")


def tables(figures):
    check(figures)
    rows = [[f"{db} dBFS", f"{nearest(db):.9g}", *(f"{figures['largest'][db, f]:.9g}" for f in FACTORS)]
            for db in CEILINGS]
    yield "ceiling", table(["ceiling", "as a number", *FACTORS], rows)
    yield "ceiling-between", table(["", *FACTORS], [
        [name, *(f"{figures['between'][name, f]:+.1f}" for f in FACTORS)] for name in SIGNALS])
    yield "overshoots", table(["", *FACTORS], [
        [name, *(f"{abs(figures['overshoots'][name, f]):.1f}" for f in FACTORS)]
        for name in ("sine of 5 kHz", *SIGNALS)])
