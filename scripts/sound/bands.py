"""What is left of a signal that goes through the three bands and their sum, with every section off."""

import numpy

from .plot import Axis, Panel, frequency_axis, picture, table
from .render import NOTHING
from .signals import RATE, WINDOW, gain, hertz, impulse, periods, tones, windows
from .spectrum import Response, residue

BANDS = {**NOTHING, "layout": "Multi Band", **{f"enable_{band}_band": "Off" for band in ("low", "mid", "high")}}
CROSSOVERS = [(160, 3500), (60, 2000), (1000, 2000), (60, 10000), (1000, 10000)]
FACTORS = {"Off": 1, "4x": 4, "16x": 16}
HEIGHT = 0.5
TONE = periods(997)


def calculated_phase(crossovers, factor):
    """In radians: each crossover leaves an all-pass of the second order, with a Q of the root of a half."""
    bins = numpy.arange(WINDOW // 2 + 1)
    total = numpy.zeros(len(bins))
    for crossover in crossovers:
        s = 1j * numpy.tan(numpy.pi * hertz(bins) / (RATE * factor)) / numpy.tan(numpy.pi * crossover / (RATE * factor))
        total += numpy.unwrap(numpy.angle((s * s - numpy.sqrt(2) * s + 1) / (s * s + numpy.sqrt(2) * s + 1)))
    return total


def _play(orvo, settings):
    return Response(orvo.play(impulse(HEIGHT), settings)[0], HEIGHT)


def measure(orvo):
    figures = {}
    for factor in FACTORS:
        plain = _play(orvo, {**NOTHING, "oversampling": factor})
        for low, high in CROSSOVERS:
            settings = {**BANDS, "crossover_low": low, "crossover_high": high, "oversampling": factor}
            response = _play(orvo, settings)
            tone = orvo.play(tones([TONE], gain(-1)), settings)[0]
            figures[low, high, factor] = {
                "gain": response.gain - plain.gain, "phase": response.phase - plain.phase,
                "delay": response.delay - plain.delay, "residue": residue(windows(tone)[0], TONE)}
    return figures


def slope(orvo):
    """Of the low band above the crossover, in dB per octave, between two octaves above it and three."""
    alone = _play(orvo, {**BANDS, "crossover_low": 160, "solo_band": "Low"})
    return alone.at(alone.gain, 1280) - alone.at(alone.gain, 640)


def _departures(figures, key):
    """The greatest of gain, in dB, and of phase against the calculated one, in degrees, from 20 Hz to 20 kHz."""
    heard = slice(int(20 * WINDOW / RATE), int(20000 * WINDOW / RATE) + 1)
    calculated = calculated_phase(key[:2], FACTORS[key[2]])
    phase = numpy.degrees(figures[key]["phase"] - calculated)
    return numpy.max(numpy.abs(figures[key]["gain"][heard])), numpy.max(numpy.abs(phase[heard]))


def tables(figures):
    rows = []
    for low, high in CROSSOVERS:
        keys = [(low, high, factor) for factor in FACTORS]
        departures = [_departures(figures, key) for key in keys]
        rows.append([f"{low} Hz, {high / 1000:g} kHz", *(f"{d[0]:.6f}" for d in departures),
                     f"{max(d[1] for d in departures):.4f}", *(f"{figures[key]['residue']:.0f}" for key in keys)])
    yield "bands", table(["crossovers", *(f"gain, {f}, dB" for f in FACTORS), "phase, degrees",
                          *(f"residue, {f}, dBFS" for f in FACTORS)], rows)


def pictures(figures):
    x = frequency_axis(20, 20000, [20, 100, 1000, 10000])
    shown = CROSSOVERS[:3]
    bins = sorted({round(hz * WINDOW / RATE) for hz in numpy.geomspace(21, 20000, 250)})

    def lines(what):
        return [[(hertz(k), what(figures[low, high, "Off"], k)) for k in bins] for low, high in shown]

    phases = Panel("Phase of the sum (degrees)", x, Axis(-720, 0, [-720, -540, -360, -180, 0]),
                   lines(lambda f, k: numpy.degrees(f["phase"][k])), "frequency (Hz)")
    delays = Panel("Delay of the sum (ms)", x, Axis(0, 10, [0, 2, 4, 6, 8, 10]),
                   lines(lambda f, k: f["delay"][k] * 1000 / RATE), "frequency (Hz)")
    yield "bands.svg", picture([phases, delays], [f"{low} Hz, {high / 1000:g} kHz" for low, high in shown])
