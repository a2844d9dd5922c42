"""What oversampling itself does to a signal that nothing clips."""

import numpy

from .plot import Axis, Panel, frequency_axis, picture, table
from .render import FACTORS, NOTHING
from .signals import RATE, WINDOW, gain, hertz, impulse, periods, tones, windows
from .spectrum import Response, residue

HEIGHT = 0.5
DELAYS = (1000, 5000, 10000, 15000, 20000)  # Hz
TONE = periods(997)


def measure(orvo):
    figures = {}
    for factor in FACTORS:
        settings = {**NOTHING, "oversampling": factor}
        output, line = orvo.play(impulse(HEIGHT), settings)
        tone = orvo.play(tones([TONE], gain(-1)), settings)[0]
        figures[factor] = {"response": Response(output, HEIGHT), "latency": int(line["latency"]),
                           "residue": residue(windows(tone)[0], TONE)}
    return figures


def ripple(response):
    """The lowest and the highest gain between 20 Hz and 20 kHz, in dB."""
    heard = response.heard(response.gain)
    low, high = (f"{level:.3f}".replace("-0.000", "0").replace("0.000", "0") for level in (min(heard), max(heard)))
    return f"{low} to {high}" if low != high else low


def _delay(response, hz):
    """In samples; less than half a thousandth counts as none."""
    delay = response.at(response.delay, hz)
    return f"{delay:+.3f}" if abs(delay) >= 0.0005 else "0"


def tables(figures):
    rows = []
    for factor in FACTORS:
        response, latency = figures[factor]["response"], figures[factor]["latency"]
        edge = response.edge(-0.1)
        rows.append([factor, str(latency), ripple(response),
                     f"{edge / 1000:.1f} kHz" if edge else "-", f"{response.at(response.gain, 22000):.1f}",
                     f"{response.at(response.gain, 20000 * RATE / 44100):.2f}"])
    yield "response-gain", table(["", "latency, samples", "gain from 20 Hz to 20 kHz, dB", "0.1 dB down at",
                                  "gain at 22 kHz, dB", "gain at 20 kHz if the rate is 44.1 kHz, dB"], rows)

    rows = []
    for factor in FACTORS:
        response = figures[factor]["response"]
        before, after = response.reach(-60)
        rows.append([factor, *(_delay(response, hz) for hz in DELAYS),
                     f"{before}, {after}", f"{figures[factor]['residue']:.0f}"])
    yield "response-delay", table(["", *(f"{hz / 1000:g} kHz" for hz in DELAYS),
                                   "samples above -60 dB before and after an impulse", "residue, dBFS"], rows)


def _curve(values, step=40):
    return [(hertz(k), values[k]) for k in range(step, WINDOW // 2, step)]


def pictures(figures):
    used = [f for f in FACTORS if f != "Off"]
    responses = [figures[f]["response"] for f in used]
    x = frequency_axis(1000, 24000, [1000, 2000, 5000, 10000, 20000])
    gains = Panel("Gain (dB)", x, Axis(-0.1, 0.02, [-0.1, -0.08, -0.06, -0.04, -0.02, 0, 0.02]),
                  [_curve(r.gain) for r in responses], "frequency (Hz)")
    delays = Panel("Delay beyond the latency (samples)", x, Axis(-1, 1, [-1, -0.5, 0, 0.5, 1]),
                   [_curve(r.delay) for r in responses], "frequency (Hz)")
    around = numpy.arange(-40, 41)
    heights = [20 * numpy.log10(numpy.maximum(numpy.abs(r.samples[WINDOW // 2 + around]), 1e-9)) for r in responses]
    rings = Panel("An impulse (dB)", Axis(-40, 40, [-40, -20, 0, 20, 40]), Axis(-100, 0, [-100, -80, -60, -40, -20, 0]),
                  [list(zip(around, h)) for h in heights], "samples from its place")
    yield "response.svg", picture([gains, delays, rings], used, colours=["#1b6ca8", "#b3362e", "#3a9d5d", "#d98324"])
