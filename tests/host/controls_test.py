#!/usr/bin/env python3
"""What mouse and keys do on the controls of parameters, with real events: controls_test.py ORVO-HOST [TEST]"""

import re
import sys
import unittest

from window_test import (AWAY, BESIDE_PLOT, PANEL_WIDTH, PLOT_HEIGHT, PLOT_Y, WindowTest, band_buttons, bar_of,
                         frequency_at, in_panel, knob_of, name_of, text_of)

THIRD = 2 ** (1 / 3)  # of an octave, as a ratio
THRESHOLD, SHAPE, GAIN = (knob_of("mid_band", name) for name in ("threshold", "shape", "gain"))
VALUE = (THRESHOLD[0], THRESHOLD[1] + 54)
BAR_Y = PLOT_Y + PLOT_HEIGHT // 2


def on_bar(frequency):
    return bar_of(frequency), BAR_Y


def readout_of(frequency):
    return bar_of(frequency) + 8, PLOT_Y + PLOT_HEIGHT - 20, 60, 16


def shift(*actions):
    return ("keydown shift", *actions, "keyup shift")


# What is set before, what the mouse does there, and the values that the host is told, a gesture each.
MOUSE = (
    # the wheel, on all of a knob, in steps from where it stands
    ("threshold_mid_band=-3.2", (THRESHOLD, "click 5"), [-3.7]),
    ("threshold_mid_band=-3.2", (VALUE, "click 4"), [-2.7]),
    ("threshold_mid_band=-3.2", (name_of(THRESHOLD), "click 4", "click 4"), [-2.7, -2.2]),
    ("threshold_mid_band=-3.2", (VALUE, *shift("click 4")), [-3.15]),
    ("threshold_mid_band=-0.8", (THRESHOLD, "click 4", "click 4", "click 4", "click 5"), [-0.3, 0.0, -0.3]),
    ("shape_mid_band=0.335", (SHAPE, "click 4"), [0.345]),
    ("shape_mid_band=0.335", (SHAPE, *shift("click 5")), [0.334]),
    ("crossover_low=160", (on_bar(160), "click 4", "click 4", "click 5"),
     [160 * THIRD, 160 * THIRD ** 2, 160 * THIRD]),
    ("crossover_high=3500", (on_bar(3500), *shift("click 5")), [3500 / THIRD ** 0.1]),
    # drags, which go 250 pixels from end to end; with Shift, 2500
    ("threshold_mid_band=-9", (VALUE, "mousedown 1", (VALUE[0], VALUE[1] - 26), "mouseup 1"), [-9 + 18 * 26 / 250]),
    ("threshold_mid_band=-9", (VALUE, *shift("mousedown 1", (VALUE[0], VALUE[1] - 26), "mouseup 1")), [-9 + 1.8 * 26 / 250]),
    ("threshold_mid_band=-9", (THRESHOLD, "mousedown 1", (THRESHOLD[0], THRESHOLD[1] - 50),
                               *shift((THRESHOLD[0], THRESHOLD[1])), "mouseup 1"), [-9 + 16.2 * 50 / 250]),
    ("crossover_low=160", ((bar_of(160) + 4, BAR_Y), *shift("mousedown 1", (bar_of(160) + 104, BAR_Y), "mouseup 1")),
     [160 * frequency_at(10) / frequency_at(0)]),
    # double clicks, which begin with two presses
    ("threshold_mid_band=-9", (VALUE, "click --repeat 2 --delay 20 1"), [0.0]),
    ("crossover_high=5000", (on_bar(5000), "click --repeat 2 --delay 20 1"), [3500.0]),
    # the right button turns nothing
    ("threshold_mid_band=-9", (THRESHOLD, "mousedown 3", (THRESHOLD[0], THRESHOLD[1] - 60), "mouseup 3"), []),
    ("crossover_low=160", (on_bar(160), "mousedown 3", (bar_of(160) + 60, BAR_Y), "mouseup 3"), []),
)

# From one place of the tab key to the next: how many times it is pressed, the parameter there, then keys and the value
# that each gesture leaves. What stands in brackets is typed.
TO_BANDS, TO_LOW_BAR, TO_HIGH_BAR, TO_MODE, TO_THRESHOLD = 8, 3, 4, 3 + 10 + 7 + 4, 1
KEYS = (
    (TO_BANDS, "mute_low_band", (("space", 1), ("Return", 0))),
    (1, "solo_band", (("space", 0), ("space", 3))),
    (1, "enable_low_band", (("Return", 0), ("space", 1))),
    (1, "crossover_low", (("Up", 160 * THIRD), ("shift+Left", 160 * THIRD ** 0.9), ("Home", 60), ("End", 1000),
                          ("Next", 1000 / THIRD ** 10), ("Delete", 160), ("[250\n]", 250), ("[0,4 kHz\n]", 400))),
    (TO_HIGH_BAR, "crossover_high", (("[2.5k\n]", 2500), ("[99 kHz\n]", 10000), ("Delete", 3500))),
    (TO_MODE, "mode_mid_band", (("Down", 2), ("Up", 1))),
    (TO_THRESHOLD, "threshold_mid_band",
     (("Down", -0.5), ("shift+Up", -0.45), ("Next", -5.45), ("Prior", -0.45), ("Home", -18), ("End", 0),
      ("[-6,5 dB\n]", -6.5), ("[-inf\n]", -18), ("[4\n]", 0), ("[-7\n]", -7), ("Delete", 0))),
    (1, "shape_mid_band", (("[45\n]", 0.45), ("[12.5 %\n]", 0.125), ("Right", 0.135), ("Home", 0))),
)


class ControlsTest(WindowTest):
    def setUp(self):
        super().setUp()
        self.host.click(AWAY)  # for the keyboard

    def plain(self, parameter, normalised):
        """The value in the parameter's own units."""
        ranges = {"threshold": (-18, 0), "shape": (0, 1), "gain": (-18, 18), "crossover_low": (60, 1000),
                  "crossover_high": (2000, 10000), "mode": (0, 4), "solo": (0, 3), "in": (-18, 18)}
        lowest, highest = ranges.get(parameter, ranges.get(parameter.split("_")[0], (0, 1)))
        return lowest + normalised * (highest - lowest)

    def take_gestures(self, parameter):
        """The last value of each gesture, in the parameter's own units. Presses that move nothing are none."""
        self.host.text(parameter)
        told, self.host.events = self.host.events, []
        gestures, value = [], None
        for index, (kind, name, *number) in enumerate(told):
            self.assertEqual(name, parameter)
            if kind == "value":
                value = float(number[0])
            elif kind == "end" and value is not None:
                gestures.append(self.plain(parameter, value))
                value = None
            self.assertEqual(kind == "begin", index == 0 or told[index - 1][0] == "end", f"one after the other: {told}")
        self.assertIsNone(value, told)
        return gestures

    def assert_gestures(self, parameter, expected, what):
        got = []
        self.host.comes(lambda: (got.extend(self.take_gestures(parameter)), len(got) >= len(expected))[1], seconds=5)
        self.assertEqual(len(got), len(expected), (what, got, expected))
        for value, wanted in zip(got, expected):
            self.assertAlmostEqual(value, wanted, delta=1e-5 * max(1, abs(wanted)), msg=what)

    def test_the_mouse(self):
        for setting, actions, expected in MOUSE:
            parameter = setting.split("=")[0]
            with self.subTest(setting=setting, actions=actions):
                self.host.ask("set " + setting)
                self.host.pointer(AWAY)
                self.host.await_still((0, PLOT_Y - 20, 760, 500), 0.1)
                self.host.events.clear()
                for action in actions:  # each heard before the next
                    self.host.pointer(action)
                    self.host.text(parameter)
                if "mousedown 3" in actions:
                    self.host.await_still((0, PLOT_Y - 20, 760, 500))
                    self.host.key("Escape")
                if expected:
                    self.assert_gestures(parameter, expected, actions)
                else:
                    self.assertEqual((self.host.text(parameter), self.host.events)[1], [], "nor is a gesture begun")

    def test_the_keyboard(self):
        for tabs, parameter, steps in KEYS:
            self.host.key(*["Tab"] * tabs)
            for keys, expected in steps:
                with self.subTest(parameter=parameter, keys=keys):
                    if keys.startswith("["):
                        for character in keys[1:-1]:
                            self.host.key("Return") if character == "\n" else self.host.type(character)
                    else:
                        self.host.key(keys)
                    self.assert_gestures(parameter, [expected], keys)

    def test_the_view_of_a_curve_is_chosen_by_keys(self):
        self.host.key(*["Tab"] * (TO_BANDS + TO_LOW_BAR + TO_HIGH_BAR + 3 + 10 + 3))
        for keys, mode in ((("space", "Down", "Down", "Return"), 1), (("Return", "Down", "Return"), 0)):
            for key in keys:
                self.host.key(key)
                self.host.await_still((0, 308, 760, 200))
            self.host.ask(f"save {self.folder}/state")
            self.assertIn(f'clipper_low_band="{mode}"'.encode(), (self.folder / "state").read_bytes())

    def test_a_drag_goes_on_past_the_edge_of_the_screen(self):
        for parameter, highest, start, way, pixels in (
                ("gain_mid_band", 18, GAIN, (0, 3), 2500), ("crossover_low", 1000, on_bar(1000), (-3, 0), 4000)):
            with self.subTest(parameter=parameter):
                self.host.ask(f"set {parameter}={highest}")
                self.host.pointer(AWAY, start)
                self.host.await_still((0, PLOT_Y - 20, 760, 500), 0.1)
                pressed = self.host.pointer_place()
                self.host.events.clear()
                self.host.pointer("keydown shift mousedown 1")
                moves = []

                def is_at_the_end():
                    # As dense as from a hand, so that some come between the edge and the jump.
                    moves.append(self.host.pointer(" ".join(["mousemove_relative -- %d %d" % way] * 20)))
                    self.host.text(parameter)
                    values = [float(event[2]) for event in self.host.events if event[0] == "value"]
                    return values and values[-1] == 0.0

                self.host.await_that(is_at_the_end, "the end of the range is reached")
                self.host.pointer("mouseup 1 keyup shift")
                events = self.host.await_gesture(parameter)
                values = [1.0] + [float(event[2]) for event in events if event[0] == "value"]
                steps = [before - after for before, after in zip(values, values[1:])]
                self.assertGreater(60 * len(moves), 0.9 * pixels * self.scale, "a tenth of the speed")
                self.assertLess(max(steps), 0.05, "nothing jumps")
                self.assertGreaterEqual(min(steps), 0.0)
                self.host.await_that(lambda: self.host.pointer_place() == pressed, "the pointer is back")

    def test_what_is_no_value_is_refused_where_it_stands(self):
        edge = (THRESHOLD[0] - 34, THRESHOLD[1] + 49, 5, 14)  # of the field, away from its caret
        self.host.pointer(AWAY)
        closed = self.host.await_still(edge)

        def open_field():
            self.choose_from_menu(THRESHOLD, 0)
            self.host.pointer(AWAY)
            return self.host.await_other(edge, closed)

        plain = open_field()
        for text in ("abc", "6 Hz", "1.2.3", "--4", "inf"):
            self.host.type(text)
            self.host.await_that(lambda: self.host.look(*edge) == plain, "it is not marked")
            self.host.key("Return")
            self.host.await_that(lambda: self.host.look(*edge) not in (closed, plain), "it is marked")
        for leaving in (lambda: self.host.key("Escape"), lambda: self.host.click(AWAY), lambda: self.host.key("Tab"),
                        lambda: self.host.click(AWAY, 5)):
            self.host.type("-9")
            leaving()
            self.host.await_that(lambda: self.host.look(*edge) == closed, "the field is gone")
            self.assertEqual(self.take_gestures("threshold_mid_band"), [], "and the value is as it was")
            open_field()
        self.host.type("-9")
        self.host.key("ctrl+1", "ctrl+2", "ctrl+9", "Return")
        self.assert_gestures("threshold_mid_band", [-9.0], "a value is taken there, and no digit of a shortcut")

    def choose_from_menu(self, place, item):
        """By a right click; the items stand below each other at the pointer."""
        x, y = place
        self.host.pointer(place)
        self.host.await_still((x - 60, y, 120, 50), 0.1)
        self.choose(place, 3, (x + 40, y + 12 + 22 * item), (x + 12, y + 4, 48, 16))

    def test_the_menu_of_each_control_sets_the_default(self):
        places = band_buttons()
        for setting, place, item, default in (
                ("threshold_mid_band=-9", VALUE, 1, 0.0), ("crossover_low=400", on_bar(400), 1, 160.0),
                ("mute_mid_band=Muted", places["mute", "mid_band"], 0, 0.0),
                ("solo_band=Low", places["solo", "high_band"], 0, 3.0),
                ("mode_mid_band=Hard", in_panel("mid_band", PANEL_WIDTH // 2, 117), 0, 1.0),
                ("link_mid_band=Linked", in_panel("mid_band", 94, 25), 0, 0.0),
                ("oversampling=8x", (70, 308 + 223), 0, 0.0), ("in_gain=4", (70, 308 + 358), 1, 0.0)):
            parameter = setting.split("=")[0]
            with self.subTest(setting=setting):
                self.host.ask("set " + setting)
                self.host.pointer(AWAY)
                self.host.await_still((0, PLOT_Y - 20, 760, 500), 0.1)
                self.host.events.clear()
                self.choose_from_menu(place, item)
                self.assert_gestures(parameter, [default], "the default")
                self.host.key("Up")  # a menu that has gone keeps no keys
                self.assertEqual(self.take_gestures(parameter), [])

    def test_a_menu_that_is_out_of_date_opens_no_field(self):
        panels = (0, PLOT_Y - 20, 760, 500)
        for way in (lambda: self.host.key("ctrl+z"), lambda: self.host.ask("set layout=Single Band")):
            self.host.pointer(THRESHOLD, "click 5")
            self.host.await_text("threshold_mid_band", "-0.5dB")
            plain = self.host.await_still(panels)
            self.host.click(THRESHOLD, 3)
            self.host.await_other(panels, plain)
            self.host.await_still(panels)
            way()
            self.host.await_still(panels)
            self.host.events.clear()
            for key in ("Down", "Return", "minus", "9", "Return"):
                self.host.key(key)
                self.host.await_still(panels, 0.1)
            self.assertEqual((self.host.text("threshold_mid_band"), self.host.events)[1], [])

    def test_a_bar_shows_its_frequency_under_the_mouse(self):
        for frequency in (160, 3500):
            area = readout_of(frequency)
            self.host.pointer(BESIDE_PLOT)
            hidden = self.host.await_still(area)
            self.host.pointer(on_bar(frequency))
            self.host.await_other(area, hidden)
            self.host.pointer(BESIDE_PLOT)
            self.host.await_that(lambda: self.host.look(*area) == hidden, "it goes with the mouse")


class LargeControlsTest(ControlsTest):
    scale = 1.5


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[2:], verbosity=2)
