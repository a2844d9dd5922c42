"""How much comes back below 20 kHz of harmonics that lie above half the rate."""

import numpy

from .plot import Axis, Panel, frequency_axis, picture, table
from .render import ALONE, FACTORS, MODES
from .signals import decibels, gain, hertz, periods, tones, windows
from .spectrum import amplitudes, strangers

THRESHOLD = -6  # dB; far enough below the ceiling that it has nothing to do
OVER = 12  # dB over the threshold
SINE = periods(5000)
APART = periods(1000)  # bins between all products of the two tones, at five and six times that
SWEEP = [periods(hz) for hz in numpy.geomspace(200, 15000, 40)]


ROOMS = [("Hard", 0), ("Hard", 1), ("Hard", 2), ("Hard", 3), ("Soft I", 0), ("Soft I", 3)]  # dB below the ceiling


def clipper(mode, factor, threshold=THRESHOLD):
    return {**ALONE, "mode_single": mode, "shape_single": 0.5, "threshold_single": threshold, "oversampling": factor}


def _driven(orvo, settings, over=OVER):
    """One sine, two tones and the sweep, their peaks `over` dB above the threshold: a level for each."""
    peak = gain(settings["threshold_single"] + over)
    pair = [5 * APART, 6 * APART]
    signals = [[SINE], pair] + [[k] for k in SWEEP]
    played = windows(orvo.play(numpy.concatenate([tones(bins, peak) for bins in signals]), settings)[0])
    spacings = [SINE, APART] + SWEEP
    return [strangers(*each) for each in zip(played, signals, spacings)], played[0]


def measure(orvo):
    levels, spectra = {}, {}
    for factor in FACTORS:
        for mode in MODES:
            levels[mode, factor], window = _driven(orvo, clipper(mode, factor))
            if mode == "Hard":
                spectra[factor] = window
        levels["Pressure, gently", factor], _ = _driven(orvo, clipper("Pressure", factor), 0)
        for mode, room in ROOMS:
            levels[f"{mode}, {room}", factor], _ = _driven(orvo, clipper(mode, factor, -room))
    return {"levels": levels, "spectra": spectra}


def tables(figures):
    levels = figures["levels"]
    rows = [(mode, mode) for mode in MODES] + [("Pressure, peaks at the threshold", "Pressure, gently")]
    for name, index in (("sine", 0), ("pair", 1)):
        yield f"aliasing-{name}", table(
            ["", *FACTORS], [[text, *(f"{levels[key, f][index]:.0f}" for f in FACTORS)] for text, key in rows])
    low = min(range(len(SWEEP)), key=lambda n: abs(hertz(SWEEP[n]) - 1000)) + 2
    yield "aliasing-ceiling", table(
        ["", "room", "tone", *FACTORS],
        [[mode, f"{room} dB", hz, *(f"{levels[f'{mode}, {room}', f][index]:.0f}" for f in FACTORS)]
         for mode, room in ROOMS for hz, index in (("1 kHz", low), ("5 kHz", 0))])


def pictures(figures):
    levels, spectra = figures["levels"], figures["spectra"]
    x = frequency_axis(200, 15000, [200, 500, 1000, 2000, 5000, 10000])
    y = Axis(-140, 10, [-140, -120, -100, -80, -60, -40, -20, 0])
    titles = [(mode, mode) for mode in MODES] + [("Hard, with the ceiling at its threshold", "Hard, 0")]
    panels = [Panel(title, x, y, [list(zip(map(hertz, SWEEP), levels[key, f][2:])) for f in FACTORS],
                    "tone (Hz), aliases below 20 kHz (dB)") for title, key in titles]
    yield "aliasing.svg", picture(panels, FACTORS)
    yield "aliasing-spectra.svg", picture([_spectrum(f, spectra[f]) for f in ("Off", "4x", "16x")],
                                          ["belongs there", "does not"], colours=["#1b6ca8", "#b3362e"])


def _spectrum(factor, window):
    heights = decibels(amplitudes(window))
    loud = [k for k in range(1, len(heights)) if heights[k] > -119]
    groups = [[(hertz(k) / 1000, heights[k]) for k in loud if (k % SINE == 0) == belongs] for belongs in (True, False)]
    return Panel(f"Hard, {factor}", Axis(0, 24, [0, 5, 10, 15, 20]),
                 Axis(-120, 0, [-120, -100, -80, -60, -40, -20, 0]), groups,
                 "frequency (kHz), level (dBFS)", stems=True)
