#!/usr/bin/env python3
"""Turns the output of `orvo-bench --costs`, read from standard input, into the tables of docs/performance.md
(standard output) and a picture (the file named as the only argument)."""

import csv
import math
import sys

COLOURS = ["#1b6ca8", "#3a9d5d", "#d98324", "#b3362e"]
KINDS = {"block size": "samples", "sample rate": "Hz", "instances": "in one process"}
WIDTH, HEIGHT, LEFT, BOTTOM = 360, 300, 50, 60


def read(lines):
    """kind -> setting -> [(place, ns)]"""
    costs = {}
    for kind, setting, place, cost in csv.reader(lines):
        costs.setdefault(kind, {}).setdefault(setting, []).append((float(place), float(cost)))
    return costs


def table(kind, series):
    names = list(series)
    yield f"| {kind} | " + " | ".join(names) + " |"
    yield "|---" * (len(names) + 1) + "|"
    for row in zip(*series.values()):
        yield f"| {row[0][0]:g} | " + " | ".join(f"{cost:.0f}" for _, cost in row) + " |"


def panel(kind, series, x0):
    """Both axes are logarithmic."""
    points = [p for line in series.values() for p in line]
    low_x, high_x = (math.log2(f(p[0] for p in points)) for f in (min, max))
    low_y = math.floor(math.log10(min(p[1] for p in points)))
    high_y = math.ceil(math.log10(max(p[1] for p in points)))

    def x_of(value):
        return x0 + LEFT + (math.log2(value) - low_x) / (high_x - low_x) * (WIDTH - LEFT - 20)

    def y_of(value):
        return HEIGHT - BOTTOM - (math.log10(value) - low_y) / (high_y - low_y) * (HEIGHT - BOTTOM - 30)

    yield f'<text x="{x0 + WIDTH / 2}" y="18" text-anchor="middle">{kind} ({KINDS[kind]})</text>'
    for power in range(low_y, high_y + 1):
        y = y_of(10**power)
        yield f'<line x1="{x0 + LEFT}" x2="{x0 + WIDTH - 20}" y1="{y:.1f}" y2="{y:.1f}" stroke="#ccc"/>'
        yield f'<text x="{x0 + LEFT - 6}" y="{y + 4:.1f}" text-anchor="end">{10 ** power:g}</text>'
    first = next(iter(series.values()))
    step = {"block size": 3, "sample rate": 2}.get(kind, 1)  # so that the labels have room
    for n, (place, _) in enumerate(first):
        if n % step == step - 1:
            label = f"{place / 1000:g}k" if kind == "sample rate" else f"{place:g}"
            yield f'<text x="{x_of(place):.1f}" y="{HEIGHT - BOTTOM + 18}" text-anchor="middle">{label}</text>'
    for colour, line in zip(COLOURS, series.values()):
        path = " ".join(f"{x_of(x):.1f},{y_of(y):.1f}" for x, y in line)
        yield f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>'


def picture(costs):
    names = list(next(iter(costs.values())))
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH * len(costs)}" height="{HEIGHT}" '
           'font-family="sans-serif" font-size="12"><rect width="100%" height="100%" fill="white"/>')
    for n, (kind, series) in enumerate(costs.items()):
        yield from panel(kind, series, n * WIDTH)
    for n, (colour, name) in enumerate(zip(COLOURS, names)):
        x = LEFT + n * 220
        yield f'<rect x="{x}" y="{HEIGHT - 20}" width="14" height="4" fill="{colour}"/>'
        yield f'<text x="{x + 20}" y="{HEIGHT - 14}">{name}</text>'
    yield "</svg>"


def main():
    costs = read(sys.stdin)
    if not costs or len(sys.argv) != 2:
        sys.exit("usage: orvo-bench --costs | plot_costs.py FILE.svg")
    with open(sys.argv[1], "w", encoding="utf-8") as file:
        file.write("\n".join(picture(costs)) + "\n")
    print("\n\n".join("\n".join(table(kind, series)) for kind, series in costs.items()))


if __name__ == "__main__":
    main()
