"""Line pictures as SVG, in the style of the pages in docs: panels side by side, one legend below all of them."""

import math
from dataclasses import dataclass, field

COLOURS = ["#1b6ca8", "#3a9d5d", "#d98324", "#b3362e", "#6b4c9a"]
WIDTH, HEIGHT, LEFT, RIGHT, TOP, BOTTOM = 360, 300, 50, 20, 30, 60  # of a panel, and its margins, in pixels


@dataclass
class Axis:
    """`ticks` are values, or pairs of a value and its text. A logarithmic axis has no place for 0 and less."""

    low: float
    high: float
    ticks: list
    logarithmic: bool = False

    def fraction(self, value):
        """0 at the low end, 1 at the high one."""
        scale = math.log if self.logarithmic else float
        return (scale(value) - scale(self.low)) / (scale(self.high) - scale(self.low))

    def labels(self):
        return [tick if isinstance(tick, tuple) else (tick, f"{tick:g}") for tick in self.ticks]


@dataclass
class Panel:
    """`lines` has a list of points, or none, for each name of the legend. Stems stand on the lower edge."""

    title: str
    x: Axis
    y: Axis
    lines: list
    caption: str = ""
    stems: bool = False
    dots: list = field(default_factory=list)


def frequency_axis(low, high, ticks):
    """In Hz, logarithmic."""
    return Axis(low, high, [(hz, f"{hz / 1000:g}k" if hz >= 1000 else f"{hz:g}") for hz in ticks], True)


def _frame(panel, place):
    yield f'<text x="{place(0.5, 0)[0]:.1f}" y="{place(0, 1)[1] - 12:.1f}" text-anchor="middle">{panel.title}</text>'
    for value, text in panel.y.labels():
        (left, y), (right, _) = place(0, panel.y.fraction(value)), place(1, 0)
        yield f'<line x1="{left:.0f}" x2="{right:.0f}" y1="{y:.1f}" y2="{y:.1f}" stroke="#ccc"/>'
        yield f'<text x="{left - 6:.0f}" y="{y + 4:.1f}" text-anchor="end">{text}</text>'
    for value, text in panel.x.labels():
        x, y = place(panel.x.fraction(value), 0)
        yield f'<text x="{x:.1f}" y="{y + 18:.0f}" text-anchor="middle">{text}</text>'
    if panel.caption:
        x, y = place(0.5, 0)
        yield f'<text x="{x:.1f}" y="{y + 34:.0f}" text-anchor="middle" fill="#555">{panel.caption}</text>'


def _thinned(places):
    """Without points that would be drawn on the last one."""
    last = None
    for place in places:
        text = f"{place[0]:.1f},{place[1]:.1f}"
        if text != last:
            yield text
        last = text


def _content(panel, place, colours):
    for colour, line in zip(colours, panel.lines):
        places = [place(panel.x.fraction(x), panel.y.fraction(y)) for x, y in line]
        if panel.stems:
            floor = place(0, 0)[1]
            path = "".join(f"M{x:.1f} {floor:.0f}V{y:.1f}" for x, y in places)
            yield f'<path d="{path}" stroke="{colour}" stroke-width="1.2"/>'
        elif places:
            yield f'<polyline points="{" ".join(_thinned(places))}" fill="none" stroke="{colour}" stroke-width="2"/>'


def picture(panels, names, columns=3, colours=None):
    """The lines of the file; `names` is the legend."""
    colours = colours or COLOURS
    rows = -(-len(panels) // columns)
    columns = min(columns, len(panels))
    wide, high = WIDTH * columns, HEIGHT * rows + 10
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" width="{wide}" height="{high}" '
           'font-family="sans-serif" font-size="12"><rect width="100%" height="100%" fill="white"/>')
    for n, panel in enumerate(panels):
        x0, y0 = WIDTH * (n % columns), HEIGHT * (n // columns)
        inner_width, inner_height = WIDTH - LEFT - RIGHT, HEIGHT - TOP - BOTTOM

        def place(x, y, x0=x0, y0=y0):
            return x0 + LEFT + x * inner_width, y0 + TOP + (1 - y) * inner_height

        yield from _frame(panel, place)
        yield (f'<svg x="{x0 + LEFT}" y="{y0 + TOP}" width="{inner_width}" height="{inner_height}" '
               f'viewBox="{x0 + LEFT} {y0 + TOP} {inner_width} {inner_height}">')
        yield from _content(panel, place, colours)
        yield "</svg>"
    x = LEFT
    for colour, name in zip(colours, names):
        yield f'<rect x="{x}" y="{high - 20}" width="14" height="4" fill="{colour}"/>'
        yield f'<text x="{x + 20}" y="{high - 14}">{name}</text>'
        x += 50 + 7 * len(name)
    yield "</svg>"


def table(head, rows):
    """The lines of a Markdown table."""
    yield "| " + " | ".join(head) + " |"
    yield "|---" * len(head) + "|"
    for row in rows:
        yield "| " + " | ".join(row) + " |"
