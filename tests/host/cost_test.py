#!/usr/bin/env python3
"""Has orvo-host judge the built module's window, and checks what cannot be otherwise: cost_test.py ORVO-HOST SANITIZERS

Expects a screen with a window manager, as scripts/lib/with_screen.sh gives. How dear the window is, is nobody's matter
here. SANITIZERS: those of the build, if any, which have allocation functions of their own.
"""

import re
import subprocess
import sys
import unittest

LAYOUTS = ("Single Band", "Multi Band", "Mid / Side", "Left / Right")
SCALES = ("1", "1.5", "2")
STATES = ("large", "automated", "resized", "resized slowly", "hidden", "covered", "at rest", "hidden")


class CostTest(unittest.TestCase):
    def test_every_row_can_be_true(self):
        run = subprocess.run([sys.argv[1], "open", "--measure", "0.15"], capture_output=True, text=True)
        self.assertEqual(run.returncode, 0, run.stderr)
        opening, with_audio, stopped, audio = (block.splitlines() for block in run.stdout.split("\n\n"))

        for row in opening[1:]:
            call, picture, memory = map(float, row.split()[-3:])
            self.assertTrue(0 < call < picture and abs(memory) < 1000, row)
        self.assertEqual(len(opening), 4)

        # Blocks of 512 at 48 kHz, as many as the second has, or fewer on a busy machine.
        for row in audio[1:]:
            blocks, median, most, longest = map(float, row.split()[-4:])
            self.assertTrue(0 < blocks <= 200 and 0 < median <= most <= longest < 1e7, row)
        self.assertEqual(len(audio), 4)

        rows = [re.split("  +", row) for row in with_audio[1:] + stopped[1:]]
        names = [f"{layout}, scale {scale}" for scale in SCALES for layout in LAYOUTS]
        names += [f"Multi Band, {state}" for state in STATES]
        self.assertEqual([row[0].replace("never ", "") for row in rows], names)

        for name, size, *cells in rows:
            share, frames, median, longest, paints, pixels = map(float, cells[:6])
            with self.subTest(name, cells=cells):
                if "scale" in name:
                    scale = float(name.split()[-1])
                    self.assertEqual(size, f"{1068 * scale:.0f}x{800 * scale:.0f}")
                self.assertTrue(0 < share < 100)
                self.assertTrue(0.1 <= median <= longest if frames else median == longest == 0)

                # All turns together are no longer than what the thread took, but for rounding.
                self.assertLessEqual(max(longest * 5, frames * median / 2) * 0.9, share * 10 + 1)

                # What is not on the screen is not painted, and a window with audio has meters.
                is_still = name.endswith(("hidden", "covered", ", at rest"))
                self.assertEqual(paints == pixels == 0, is_still)
                self.assertTrue(is_still or 0 < pixels * 1e6 <= paints * 2136 * 1600 and frames > 0)

        # A larger picture is in new memory.
        allocations = rows[names.index("Multi Band, resized")][-1]
        self.assertTrue(allocations == "-" if sys.argv[2] else float(allocations) > 0, allocations)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
