"""What is played through the plug-in. All values are linear, 1 is full scale; lengths are in samples.

Every tone has a whole number of periods in WINDOW samples. WINDOW is a power of two and the number of periods is odd,
so every harmonic up to the 32768th has a bin of the Fourier transform of its own, also those that fold back at half the
rate: what a bin holds tells whether it belongs there, and no window function smears one into another."""

import numpy

RATE = 48000
WINDOW = 65536  # samples, 1.37 s
SETTLE = 4096  # samples that are played before every window, and after it, since filters look ahead


def gain(db):
    return 10.0 ** (db / 20.0)


def decibels(amplitude):
    return 20.0 * numpy.log10(numpy.maximum(amplitude, 1e-30))


def periods(hz):
    """The prime next to that frequency, in periods per WINDOW."""
    wanted = round(hz * WINDOW / RATE)
    return min((n for n in range(max(3, wanted - 40), wanted + 41) if _is_prime(n)), key=lambda n: abs(n - wanted))


def _is_prime(n):
    return n > 1 and all(n % d for d in range(2, int(n**0.5) + 1))


def hertz(bins):
    return bins * RATE / WINDOW


def tones(bins, peak):
    """A window and what goes on around it. Several tones have the same level and reach `peak` together at most."""
    time = numpy.arange(-SETTLE, WINDOW + SETTLE)
    return sum(peak / len(bins) * numpy.sin(2 * numpy.pi * k * time / WINDOW) for k in bins)


def windows(samples):
    """The windows of several `tones` in a row, one per line."""
    return samples.reshape(-1, WINDOW + 2 * SETTLE)[:, SETTLE:-SETTLE]


def impulse(height):
    """In the middle of a window."""
    samples = numpy.zeros(WINDOW)
    samples[WINDOW // 2] = height
    return samples


def noise(length, seed=1):
    """Normal distribution, deviation 1."""
    return numpy.random.default_rng(seed).standard_normal(length)


def struck_chords(seconds):
    """Chords that decay, each with a burst of noise at its start; peaks near 1."""
    time = numpy.arange(int(seconds * RATE)) / RATE
    struck = time % 0.4
    hiss = 0.3 * noise(len(time), 2) * numpy.exp(-40 * struck)
    notes = sum(numpy.sin(2 * numpy.pi * 55.0 * root * n * time) / n
                for root in (1.0, 1.26, 1.5) for n in range(1, 40))
    samples = notes * numpy.exp(-6 * struck) + hiss
    return samples / numpy.max(numpy.abs(samples))
