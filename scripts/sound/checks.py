"""The analyses against systems whose figures are known, before anything is measured with them."""

import numpy

from .curves import CURVES
from .signals import WINDOW, decibels, impulse, periods, tones, windows
from .spectrum import AUDIBLE, Response, amplitudes, harmonics, residue, strangers, true_peak


def clipped_sine(order, over):
    """The amplitude of an odd harmonic of a sine that is cut at 1, `over` times as high; from its Fourier integral."""
    angle = numpy.arcsin(1 / over)
    if order == 1:
        return 2 / numpy.pi * (over * angle + numpy.cos(angle))
    low, high = order - 1, order + 1
    inside = over * (numpy.sin(low * angle) / low - numpy.sin(high * angle) / high) * 2 / numpy.pi
    return inside + 4 / numpy.pi * numpy.cos(order * angle) / order


def folded(k):
    """The bin at which a sine of that many periods is found, and its sign there."""
    rest = k % WINDOW
    return (rest, 1) if rest < WINDOW / 2 else (WINDOW - rest, -1)


def check_aliases():
    """A sine clipped at the host's rate: every harmonic of the series comes back at the bin where it must."""
    bins, over = periods(5000), 4.0
    heights = numpy.zeros(WINDOW // 2 + 1)
    for order in range(1, 2 * WINDOW, 2):
        place, sign = folded(order * bins)
        heights[place] += sign * clipped_sine(order, over)
    audible = heights[: AUDIBLE + 1] ** 2
    audible[::bins] = 0
    expected = 0.5 * decibels(numpy.sum(audible) / heights[bins] ** 2)
    clipped = numpy.clip(windows(tones([bins], over))[0], -1, 1)
    yield "aliases of a clipped sine", strangers(clipped, [bins], bins), expected, 0.01

    time = numpy.arange(WINDOW) / WINDOW
    pure = sum(clipped_sine(n, over) * numpy.sin(2 * numpy.pi * n * bins * time) for n in (1, 3))
    yield "aliases of a sum of harmonics below", max(strangers(pure, [bins], bins), -200), -200, 0


def check_products():
    """The cube of two tones: four of its products fold back if the tones are high, and none if they are low."""
    for low, expected in ((5, -200), (11, decibels(numpy.sqrt(2 * (0.25**2 + 0.75**2) / 2) / 2.25))):
        apart = periods(1000)
        bins = [low * apart, (low + 1) * apart]
        cubed = windows(tones(bins, 2.0))[0] ** 3
        yield f"products of {low} and {low + 1} kHz", max(strangers(cubed, bins, apart), -200), expected, 0.01


def check_response():
    """A delay by 0.3 samples, made in the frequency domain."""
    turn = numpy.exp(-2j * numpy.pi * 0.3 * numpy.arange(WINDOW // 2 + 1) / WINDOW)
    response = Response(numpy.fft.irfft(numpy.fft.rfft(impulse(0.5)) * turn, WINDOW), 0.5)
    yield "gain of a delay", numpy.max(numpy.abs(response.heard(response.gain))), 0, 1e-6
    yield "samples of a delay", numpy.min(response.heard(response.delay)), 0.3, 1e-6
    yield "samples of a delay", numpy.max(response.heard(response.delay)), 0.3, 1e-6


def check_levels():
    bins = periods(997)
    window = windows(tones([bins], 0.5))[0]
    third = numpy.roll(window, 7) + 0.001 * windows(tones([3 * bins], 1.0))[0]
    yield "a third harmonic", harmonics(third, bins, [3])[0], decibels(0.002), 1e-6
    yield "a residue", residue(third, bins), -60, 1e-6
    yield "amplitude of a tone", amplitudes(window)[bins], 0.5, 1e-9
    yield "a peak between samples", decibels(true_peak(numpy.sin(numpy.pi * (numpy.arange(4096) / 2 + 0.25)))
                                             / numpy.sin(numpy.pi / 4)), decibels(numpy.sqrt(2)), 1e-6
    cut = numpy.sin(numpy.pi * (numpy.arange(4095) / 2 + 0.25)) / numpy.sin(numpy.pi / 4)
    yield "the same where the ends do not meet", decibels(true_peak(cut)), decibels(numpy.sqrt(2)), 0.02
    fine = 4.0 * numpy.sin(2 * numpy.pi * numpy.arange(1 << 20) / (1 << 20))
    for order in (3, 5, 7, 9):
        expected = decibels(abs(clipped_sine(order, 4.0)) / clipped_sine(1, 4.0))
        yield f"H{order} of a clipped sine", harmonics(CURVES["Hard"](fine, 0, 0), 1, [order])[0], expected, 1e-4


def check_curves():
    """Values that follow from the formulas without a computer."""
    half = 20 * numpy.log10(0.5)
    for mode, x, threshold, shape, expected in (
            ("Hard", 0.7, half, 0, 0.5), ("Soft I", 1.0, 0, 1, 10 ** (-2.25 / 20)), ("Soft I", 4.0, 0, 1, 1.0),
            ("Soft II", 0.5, half, 0, 0.375), ("Soft II", -3.0, half, 0, -0.5), ("Pressure", 0.5, half, 0.5, 0.5),
            ("Pressure", 1.125, half, 0.5, 0.0), ("Pressure", 0.8125, half, 0.5, 0.375), ("Boost", 0.5, 0, 1, 0.6875)):
        yield f"{mode} of {x}", float(CURVES[mode](numpy.array([x]), threshold, shape)[0]), expected, 1e-12


def run():
    """Ends the program if an analysis is wrong."""
    count = 0
    for check in (check_aliases, check_products, check_response, check_levels, check_curves):
        for name, value, expected, tolerance in check():
            if not abs(value - expected) <= tolerance:
                raise SystemExit(f"error: the analysis is wrong: {name}: {value} instead of {expected}")
            count += 1
    return count
