"""What is read from windows of samples. Levels are in dB, frequencies are bins of a WINDOW unless Hz is said."""

import numpy

from .signals import RATE, WINDOW, decibels, hertz

AUDIBLE = int(20000 * WINDOW / RATE)  # the last bin that counts as heard
LOWEST = int(20 * WINDOW / RATE)


def amplitudes(window):
    """Of each bin's tone, from 0 Hz to half the rate."""
    return numpy.abs(numpy.fft.rfft(window.astype(float))) * 2 / len(window)


def strangers(window, tones, spacing):
    """Everything below 20 kHz that is no multiple of `spacing` bins, in sum, relative to the tones, in sum."""
    power = amplitudes(window)[: AUDIBLE + 1] ** 2
    reference = sum(power[k] for k in tones)
    power[::spacing] = 0
    return 0.5 * decibels(numpy.sum(power) / reference)


def harmonics(window, bins, orders):
    """Relative to the tone of that bin."""
    heights = amplitudes(window)
    return [decibels(heights[n * bins] / heights[bins]) for n in orders]


def residue(window, bins):
    """Everything but one tone and 0 Hz, in sum, relative to a sine of full scale."""
    power = amplitudes(window) ** 2
    power[[0, bins]] = 0
    return 0.5 * decibels(numpy.sum(power))


class Response:
    """What a system does to an impulse: gain, phase and delay of each bin."""

    def __init__(self, output, height):
        """`output` is what comes of signals.impulse (height)."""
        self.samples = output.astype(float) / height
        spectrum = numpy.fft.rfft(numpy.roll(self.samples, -(WINDOW // 2)))
        self.gain = decibels(numpy.abs(spectrum))
        self.phase = numpy.unwrap(numpy.angle(spectrum))  # radians
        self.delay = -numpy.gradient(self.phase) * WINDOW / (2 * numpy.pi)  # samples

    def heard(self, values):
        """Those between 20 Hz and 20 kHz."""
        return values[LOWEST : AUDIBLE + 1]

    def at(self, values, hz):
        return float(values[round(hz * WINDOW / RATE)])

    def edge(self, db):
        """The first frequency, in Hz, with that gain or less."""
        below = numpy.nonzero(self.gain <= db)[0]
        return hertz(below[0]) if len(below) else None

    def reach(self, db):
        """How long before and after the middle something is louder than that, relative to the highest sample; in
        samples."""
        loud = numpy.nonzero(numpy.abs(self.samples) > numpy.max(numpy.abs(self.samples)) * 10 ** (db / 20))[0]
        return WINDOW // 2 - loud[0], loud[-1] - WINDOW // 2


def true_peak(samples, factor=16):
    """The highest point of the wave between the samples, by the Fourier transform; without 200 samples at either end,
    since to the transform the one follows the other."""
    spectrum = numpy.fft.rfft(samples.astype(float))
    fine = numpy.fft.irfft(spectrum, len(samples) * factor) * factor
    return numpy.max(numpy.abs(fine[200 * factor : -200 * factor]))
