#!/usr/bin/env python3
"""Turns the output of `orvo-bench --costs`, read from standard input, into the tables of docs/performance.md
(standard output) and a picture (the file named as the only argument)."""

import csv
import math
import sys

from sound.plot import Axis, Panel, picture, table

KINDS = {"block size": "samples", "sample rate": "Hz", "instances": "in one process"}
LABELLED = {"block size": 3, "sample rate": 2}  # every third and every second, so that the texts have room


def read(lines):
    """kind -> setting -> [(place, ns)]"""
    costs = {}
    for kind, setting, place, cost in csv.reader(lines):
        costs.setdefault(kind, {}).setdefault(setting, []).append((float(place), float(cost)))
    return costs


def rows(kind, series):
    lines = ([f"{line[0][0]:g}", *(f"{cost:.0f}" for _, cost in line)] for line in zip(*series.values()))
    return "\n".join(table([kind, *series], lines))


def panel(kind, series):
    """Both axes are logarithmic."""
    places = [place for place, _ in next(iter(series.values()))]
    costs = [cost for line in series.values() for _, cost in line]
    low, high = math.floor(math.log10(min(costs))), math.ceil(math.log10(max(costs)))
    step = LABELLED.get(kind, 1)
    texts = [(place, f"{place / 1000:g}k" if kind == "sample rate" else f"{place:g}") for place in places]
    return Panel(f"{kind} ({KINDS[kind]})", Axis(min(places), max(places), texts[step - 1 :: step], True),
                 Axis(10**low, 10**high, [10**power for power in range(low, high + 1)], True), list(series.values()))


def main():
    costs = read(sys.stdin)
    if not costs or len(sys.argv) != 2:
        sys.exit("usage: orvo-bench --costs | plot_costs.py FILE.svg")
    with open(sys.argv[1], "w", encoding="utf-8") as file:
        panels = [panel(kind, series) for kind, series in costs.items()]
        file.write("\n".join(picture(panels, list(next(iter(costs.values()))))) + "\n")
    print("\n\n".join(rows(kind, series) for kind, series in costs.items()))


if __name__ == "__main__":
    main()
