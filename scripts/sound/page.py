"""Measures the built module and brings the figures to docs/sound.md, and the pictures beside it.

usage: python3 -m sound.page ORVO-HOST MODULE PAGE"""

import re
import sys
from pathlib import Path

from . import aliasing, bands, ceiling, checks, exactness, harmonics, loudness, response, statements
from .render import Orvo

SMALL_PROCESSOR = ["qemu-x86_64", "-cpu", "Nehalem"]  # has no AVX2


def measure_all(program, module):
    """(part, its figures), one after another."""
    orvo = Orvo(program, module)
    for part in (aliasing, response, harmonics, bands, ceiling, loudness, statements):
        print(f"measuring: {part.__name__.split('.')[-1]}", flush=True)
        yield part, part.measure(orvo)
    if " avx2 " not in Path("/proc/cpuinfo").read_text():
        sys.exit("error: this processor has no AVX2, so half of the figures cannot be measured")
    print("measuring: exactness", flush=True)
    yield exactness, {"AVX2": exactness.measure(orvo),
                      "SSE2": exactness.measure(Orvo(program, module, SMALL_PROCESSOR))}


def replaced(page, name, lines):
    """The page with other lines between the marks of that name."""
    marks = re.compile(rf"(<!-- {name} -->\n).*?(<!-- end -->)", re.DOTALL)
    if len(marks.findall(page)) != 1:
        sys.exit(f"error: the page has no place, or more than one, for the table {name}")
    return marks.sub(lambda match: match[1] + "\n".join(lines) + "\n" + match[2], page)


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    program, module, path = map(Path, sys.argv[1:])
    print(f"analyses that agree with known systems: {checks.run()}")
    page, pictures = path.read_text(encoding="utf-8"), path.parent / "images" / "sound"
    pictures.mkdir(parents=True, exist_ok=True)
    for part, figures in measure_all(program, module):
        for name, lines in part.tables(figures):
            lines = list(lines)
            page = replaced(page, name, lines)
            print("\n".join(lines) + "\n")
        for name, lines in part.pictures(figures) if hasattr(part, "pictures") else ():
            (pictures / name).write_text("\n".join(lines) + "\n", encoding="utf-8")
    path.write_text(page, encoding="utf-8")


if __name__ == "__main__":
    main()
