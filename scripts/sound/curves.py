"""The five curves in double precision, from their formulas; nothing of the plug-in's code is used. Thresholds are in
dB, `shape` is the control from 0 to 1."""

import numpy


def hard(x, threshold, _shape):
    limit = 10 ** (threshold / 20)
    return numpy.clip(x, -limit, limit)


def soft_one(x, threshold, shape):
    """Gain in dB: 0 below the knee, a parabola within it, down to the threshold above it."""
    level, knee = 20 * numpy.log10(numpy.maximum(numpy.abs(x), 1e-5)), 9 * shape
    change = numpy.where(level > threshold, threshold - level, 0.0)
    if knee > 0:
        t = (level - (threshold - knee)) / knee
        change = numpy.where((t > 0) & (t < 2), -knee * t * t / 4, change)
    return x * 10 ** (change / 20)


def soft_two(x, threshold, _shape):
    """a - a^n / n up to full scale, where it is flat at the threshold."""
    height = 10 ** (threshold / 20)
    a = numpy.minimum(numpy.abs(x), 1.0)
    if height == 1.0:
        return numpy.copysign(a, x)
    n = 1 / (1 - height)
    return numpy.copysign(a - a**n / n, x)


def pressure(x, threshold, shape):
    """A quartic that lifts up to the threshold, a parabola that falls to 0 above it."""
    height = 10 ** (threshold / 20)
    a, end = numpy.abs(x) / height, 2 + shape / 2
    lifted = (1 + shape) * a + (1 - 2 * shape) * a**2 + (shape - 1) * a**3
    lifted -= (1 - shape) ** 2 / 4 * (a * (1 - a)) ** 2
    falling = 1 - ((a - 1) / (end - 1)) ** 2
    return numpy.copysign(height * numpy.where(a > end, 0.0, numpy.where(a > 1, falling, lifted)), x)


def boost(x, threshold, shape):
    """(a - a^n / n) n / (n - 1), n from 50 down to 3."""
    height = 10 ** (threshold / 20)
    a, n = numpy.minimum(numpy.abs(x) / height, 1.0), 3 + 47 * (1 - shape) ** (1 / 0.35)
    return numpy.copysign(height * (a - a**n / n) * n / (n - 1), x)


CURVES = {"Hard": hard, "Soft I": soft_one, "Soft II": soft_two, "Pressure": pressure, "Boost": boost}
