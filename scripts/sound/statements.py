"""What README and manual say of the sound, word for word, each with what was measured. What does not hold, or is not
said any more, ends the program."""

import re
from pathlib import Path

import numpy

from . import bands
from .plot import table
from .render import ALONE, FACTORS
from .signals import decibels, gain, noise

ROOT = Path(__file__).parents[2]
RATES = (44100, 48000)


def texts():
    """The words of README and manual, with single blanks between them."""
    return " ".join((ROOT / name).read_text(encoding="utf-8") for name in ("README.md", "docs/manual/manual.adoc"))


def _gain_at(orvo, db, mode, shape=0.0):
    """In dB, of a sample of that level; the threshold is at -6 dB."""
    settings = {**ALONE, "threshold_single": -6, "mode_single": mode, "shape_single": shape}
    return float(decibels(abs(float(orvo.play(numpy.full(64, gain(db)), settings)[0][-1]))) - db)


def _silent_from(orvo, shape):
    """In dB over the threshold, of "Pressure"."""
    levels = numpy.arange(0, 12, 0.01)
    settings = {**ALONE, "threshold_single": -6, "mode_single": "Pressure", "shape_single": shape}
    return float(levels[numpy.nonzero(orvo.play(gain(levels - 6), settings)[0] == 0)[0][0]])


def curves(orvo):
    """(words, what is measured, what they say, how far it may be off); dB"""
    yield "At the threshold itself the widest knee takes 2.25 dB away", -_gain_at(orvo, -6, "Soft I", 1), 2.25, 0.005
    yield "the knee reaches from 9 dB below the threshold", _gain_at(orvo, -15.1, "Soft I", 1), 0, 1e-6
    yield "to 9 dB above it", _gain_at(orvo, 3.1, "Soft I", 1) + 9.1, 0, 1e-5
    yield "The quietest sound passes unchanged", _gain_at(orvo, -90, "Soft II"), 0, 0.01
    yield "At 100 % quiet sound gets 6 dB more", _gain_at(orvo, -90, "Pressure", 1), 6, 0.05
    yield "at 0 % the quietest sound keeps its level", _gain_at(orvo, -90, "Pressure"), 0, 0.01
    yield "from 6 dB above the threshold on with *Pressure* at 0 %", _silent_from(orvo, 0), 6, 0.05
    yield "and from 8 dB at 100 %", _silent_from(orvo, 1), 8, 0.05
    yield "quiet sound gets 0.2 dB more at 0 %", _gain_at(orvo, -90, "Boost"), 0.2, 0.05
    yield "and 3.5 dB at 100 %", _gain_at(orvo, -90, "Boost", 1), 3.5, 0.05
    yield "filters of 24 dB per octave", -bands.slope(orvo), 24, 0.5


def latencies(orvo):
    """In samples, as the manual's table has them with the milliseconds, and as README has the least and the most."""
    samples, rows = noise(4096) * 0.05, {}
    for factor in FACTORS:
        rows[factor] = [int(orvo.play(samples, {"oversampling": factor}, rate)[1]["latency"]) for rate in RATES]
        times = [f"{1000 * n / rate:.2f}" if n else "0" for n, rate in zip(rows[factor], RATES)]
        words = f"|{factor} |{rows[factor][0]} samples |{times[0]} ms |{times[1]} ms"
        yield words, rows[factor][1], rows[factor][0], 0
    least, most = rows["2x"][0], rows["16x"][0]
    yield f"a latency of whole samples ({least} to {most})", most, max(map(max, rows.values())), 0


def measure(orvo):
    return [*curves(orvo), *latencies(orvo)]


def check(figures):
    said_anywhere = re.sub(r"\s+", " ", texts())
    for words, value, said, tolerance in figures:
        if words not in said_anywhere:
            raise SystemExit(f'error: neither README nor manual say "{words}", which was measured')
        if not abs(value - said) <= tolerance:
            raise SystemExit(f'error: "{words}" is wrong: measured {value}')


def tables(figures):
    check(figures)
    levels = [row for row in figures if not row[0].startswith(("|", "a latency"))]
    yield "statements", table(["said", "measured"], [
        [words, f"{value:.2f} dB".replace("-0.00", "0.00")] for words, value, _, _ in levels])
