#!/usr/bin/env python3
"""Drives the built module's window in orvo-host with real pointer and key events: window_test.py ORVO-HOST

Expects a screen with a window manager, as scripts/lib/with_screen.sh gives. Effects are read from what the module
tells its host and from the window's pixels.
"""

import math
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import wave

from window_host import Host

WIDTH, HEIGHT = 1068, 800  # of the first window
PANEL_TOP, PANEL_ROW = 308, 462  # in "Multi Band"
PANELS = {"low_band": 140, "mid_band": 297, "high_band": 454, "post": 611}  # their left edges
PANEL_WIDTH = 157
BANDS = ("low_band", "mid_band", "high_band")

# The plot of the band editor, and the whole decades from 17 Hz to 22.05 kHz that it shows.
PLOT_X, PLOT_Y, PLOT_WIDTH, PLOT_HEIGHT = 20, 228, 1028, 60
LOWEST = 17
DECADES = math.log10(22050 // LOWEST)

AWAY = (980, 340)  # the title of the output strip, where nothing is hovered
BESIDE_PLOT = (500, 215)  # in the band editor, which forgets there what was hovered
STRIP = (0, 772, 1040, 26)  # the tooltip strip, without the corner that resizes


def bar_of(frequency):
    return int(PLOT_X + PLOT_WIDTH / DECADES * math.log10(frequency / LOWEST))


def frequency_at(x):
    return LOWEST * 10 ** ((x - PLOT_X) / (PLOT_WIDTH / DECADES))


def band_buttons(low=160.0, high=3500.0):
    """The centres of mute, solo and enable of each band, with the bars at these frequencies."""
    edges = [PLOT_X, bar_of(low), bar_of(high), PLOT_X + PLOT_WIDTH]
    places = {}
    for index, band in enumerate(BANDS):
        centre = edges[index] + (edges[index + 1] - edges[index] - 20) // 2 + 10
        for step, kind in ((-25, "mute"), (0, "solo"), (25, "enable")):
            places[kind, band] = (centre + step, PLOT_Y + 20)
    return places


def inside(position):
    """The area within a round button, where nothing shines through when it is filled."""
    return position[0] - 6, position[1] - 6, 12, 12


def in_panel(section, x, y):
    return PANELS[section] + x, PANEL_TOP + y


def knob_of(section, name):
    """The centre of a knob of a narrow panel."""
    return in_panel(section, PANEL_WIDTH // 2, {"threshold": 170, "shape": 275, "gain": 380}[name])


def name_of(knob):
    return knob[0], knob[1] + 42


def text_of(knob):
    """The area of a knob's value."""
    return knob[0] - 30, knob[1] + 46, 60, 16


class WindowTest(unittest.TestCase):
    layout = "Multi Band"
    scale = 1.0
    is_silent = True  # so that only the waveform's place moves

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="orvo-window-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.temporary, self.users = self.folder / "temporary", self.folder / "users"
        for variable, place in (("TMPDIR", self.temporary), ("XDG_CONFIG_HOME", self.users)):
            place.mkdir()
            os.environ[variable] = str(place)

        self.options = ["--set", "layout=" + self.layout]
        if self.is_silent:
            silence = self.folder / "silence.wav"
            with wave.open(str(silence), "wb") as file:
                file.setparams((2, 2, 48000, 0, "NONE", ""))
                file.writeframes(bytes(4 * 48000))
            self.options += ["--play", str(silence)]

        self.host = self.open_host()

    def open_host(self, *options):
        """With its window on top and at rest."""
        host = Host(sys.argv[1], *self.options, *options, scale=self.scale)
        self.addCleanup(host.process.kill)
        host.pointer(AWAY)
        host.await_still((0, PANEL_TOP, WIDTH if self.is_silent else 760, 60))
        return host

    def tearDown(self):
        if self.host.process.poll() is None:
            self.host.quit()
        self.assertEqual(os.listdir(self.temporary), [], "the program left files behind")
        self.assertEqual(os.listdir(self.users), [], "what the user has stays alone")

    def assert_gesture(self, parameter, values=None):
        """The module told its host of one gesture, with values in it and nothing around; returns the last."""
        events = self.host.await_gesture(parameter)
        self.assertEqual(events[0], ("begin", parameter))
        self.assertEqual(events[-1], ("end", parameter))
        told = [event for event in events[1:-1] if event[:2] == ("value", parameter)]
        self.assertEqual(told, events[1:-1])
        self.assertGreater(len(told), 0)
        if values is not None:
            self.assertEqual([float(event[2]) for event in told], values)
        return float(told[-1][2])

    def choose(self, opener, button, item, changing):
        """A click that opens a menu, which covers the area `changing`, and one on its item."""
        before = self.host.look(*changing)

        def opens():
            self.host.click(opener, button)
            # Too busy a machine takes the button's release for a choice, and the menu is gone, perhaps unseen.
            return (self.host.comes(lambda: self.host.look(*changing) != before, seconds=2)
                    and self.host.await_still(changing) != before)

        self.host.await_that(opens, "the menu opens")
        self.host.pointer(item)
        opened = self.host.await_still(changing)
        self.host.click(item)
        # A pointer that leaves at once is outside before the click is heard, and the menu takes that for a refusal.
        self.host.await_other(changing, opened)


class BandEditorTest(WindowTest):
    def test_a_bar_follows_the_pointer(self):
        def bar(x):
            return self.host.look(x - 1, PLOT_Y + 2, 2, PLOT_HEIGHT - 4)

        for parameter, old, new in (("crossover_low", bar_of(160), 300), ("crossover_high", bar_of(3500), 900)):
            self.host.pointer((old, 280))
            plain = bar(new)
            self.host.pointer("mousedown 1", (old + 5, 270), (new, 260), "mouseup 1")
            told = self.assert_gesture(parameter)
            lowest, highest = (60, 1000) if parameter == "crossover_low" else (2000, 10000)
            self.assertAlmostEqual(
                float(self.host.text(parameter).removesuffix("Hz")), frequency_at(new), delta=0.06)
            self.assertAlmostEqual(told, (frequency_at(new) - lowest) / (highest - lowest), places=4)
            self.host.pointer(BESIDE_PLOT)  # or the frequency is shown where the bar was
            self.host.await_that(lambda: bar(new) != plain, "the bar is where the pointer left it")
            self.host.await_that(lambda: bar(old) == self.host.look(old - 3, PLOT_Y + 2, 2, PLOT_HEIGHT - 4),
                                 "no bar is where it was")

    def test_mute_and_enable_of_each_band(self):
        places = band_buttons()
        for kind, filled, words in (("mute", 1, ("Unmuted", "Muted")), ("enable", 0, ("Off", "On"))):
            for band in BANDS:
                position = places[kind, band]
                before = self.host.look(*inside(position))
                self.host.click(position)
                self.assert_gesture(f"{kind}_{band}", [float(filled)])
                self.assertEqual(self.host.text(f"{kind}_{band}"), words[filled])
                self.host.pointer(AWAY)
                self.host.await_other(inside(position), before)

            # Where they are filled, nothing of their bands shines through.
            for band in BANDS if kind == "enable" else ():
                self.host.click(places[kind, band])
                self.assert_gesture(f"{kind}_{band}", [1.0])
            self.host.pointer(BESIDE_PLOT)
            self.host.await_that(
                lambda: len({self.host.look(*inside(places[kind, band])) for band in BANDS}) == 1,
                f"all {kind} buttons are filled")

    def test_solo_goes_from_band_to_band_and_off(self):
        places = band_buttons()
        mutes = [inside(places["mute", band]) for band in BANDS]
        free = [self.host.look(*area) for area in mutes]
        self.assertEqual(self.host.text("solo_band"), "None")

        for index, (band, name) in enumerate(zip(BANDS, ("Low", "Mid", "High"))):
            self.host.click(places["solo", band])
            self.assertAlmostEqual(self.assert_gesture("solo_band"), index / 3, places=5)
            self.assertEqual(self.host.text("solo_band"), name)
            for area, look in zip(mutes, free):
                self.host.await_other(area, look)

        self.host.click(places["solo", "high_band"])
        self.assert_gesture("solo_band", [1.0])
        self.assertEqual(self.host.text("solo_band"), "None")
        self.host.pointer(BESIDE_PLOT)
        self.host.await_that(lambda: [self.host.look(*area) for area in mutes] == free, "all mutes are free again")


class SectionPanelTest(WindowTest):
    def test_the_menu_sets_the_mode_and_the_shape_knob_follows(self):
        for section in PANELS:
            box = in_panel(section, PANEL_WIDTH // 2, 117)
            knob = knob_of(section, "shape")
            label = (knob[0] - 30, knob[1] + 34, 60, 15)
            shape = self.host.look(*label)
            looks = {"Soft I": shape}

            # Headings take a row of the menu too, and a line between them less.
            for index, mode, below in ((4, "Boost", 158), (3, "Pressure", 136), (0, "Hard", 43), (1, "Soft I", 65)):
                self.choose(box, 1, (box[0], box[1] + below), (box[0] - 50, box[1] + 14, 100, 30))
                self.assert_gesture("mode_" + section, [index / 4])
                self.assertEqual(self.host.text("mode_" + section), mode)
                self.host.pointer(AWAY)
                if mode != "Soft I":
                    looks[mode] = self.host.await_still(label)
            self.host.await_that(lambda: self.host.look(*label) == shape, "the shape knob is back")
            self.assertEqual(len(set(looks.values())), 4, "Shape, Pressure, Boost and nothing")

    def test_link_and_enable_grey_out_the_knobs(self):
        for section in PANELS:
            makeup, threshold = (
                (knob[0] - 25, knob[1] - 25, 50, 50) for knob in (knob_of(section, "gain"), knob_of(section, "threshold")))
            before = self.host.look(*makeup), self.host.look(*threshold)
            for kind, x, off in (("link", 94, 0.0), ("enable", 124, 1.0)):
                button = in_panel(section, x, 25)
                self.host.click(button)
                self.assert_gesture(f"{kind}_{section}", [1.0 - off])
                self.host.await_other(makeup, before[0])
                if kind == "enable":
                    self.host.await_other(threshold, before[1])
                self.host.click(button)
                self.assert_gesture(f"{kind}_{section}", [off])
                self.host.await_that(
                    lambda: (self.host.look(*makeup), self.host.look(*threshold)) == before, "the knobs are back")

    def test_a_right_click_on_the_curve_shows_amplitudes_and_decibels(self):
        for section in PANELS:
            curve = in_panel(section, PANEL_WIDTH // 2, 78)
            graph = (curve[0] - 17, curve[1] - 17, 15, 34)
            decibels = self.host.look(*graph)
            side = 1 if curve[0] < WIDTH / 2 else -1  # of the pointer on which the menu has room
            for item, mode in ((34, 1), (12, 0)):
                self.choose(curve, 3, (curve[0] + 40 * side, curve[1] + item),
                            (curve[0] + 40 * side - 30, curve[1] + 5, 60, 30))
                self.host.pointer(AWAY)
                self.host.await_that(lambda: (self.host.look(*graph) != decibels) == bool(mode), f"view {mode}")
                self.host.ask(f"save {self.folder}/state")
                self.assertIn(f'clipper_{section}="{mode}"'.encode(), (self.folder / "state").read_bytes())
        self.assertEqual(self.host.events, [], "a view is no parameter")

    def test_a_drag_on_a_knob_shows_its_value_and_a_double_click_resets_it(self):
        for parameter in ("threshold_mid_band", "shape_high_band", "gain_post"):
            name, section = parameter.split("_", 1)
            knob = knob_of(section, name)
            before, default = self.host.look(*text_of(knob)), self.host.text(parameter)
            number = lambda: float(re.match(r"-?[0-9.]+", self.host.text(parameter)).group())
            start = number()
            path = [(knob[0], knob[1] - (step if name != "threshold" else -step)) for step in range(2, 60, 4)]

            self.host.pointer(knob, "keydown ctrl mousedown 1", *path, "mouseup 1 keyup ctrl")
            self.assert_gesture(parameter)
            fine = abs(number() - start)
            self.host.pointer(knob, "click --repeat 2 --delay 20 1")
            self.host.await_text(parameter, default)
            self.host.await_that(lambda: self.host.look(*text_of(knob)) == before, "the default is shown")
            self.host.await_gesture(parameter)
            self.host.events.clear()

            self.host.pointer(knob, "mousedown 1", *path)
            during = self.host.await_other(text_of(knob), before)
            self.assertNotEqual(self.host.text(parameter), default)
            self.assertNotIn(("end", parameter), self.host.events)
            self.host.pointer("mouseup 1")
            self.assert_gesture(parameter)
            self.assertNotEqual(during, before)
            self.assertLess(fine, abs(number() - start) / 4, "Ctrl makes it fine")

            self.host.pointer(knob, "click --repeat 2 --delay 20 1")
            self.host.await_text(parameter, default)
            self.host.await_that(lambda: self.host.look(*text_of(knob)) == before, "the default is shown")
            self.host.await_gesture(parameter)
            self.host.events.clear()

    def test_a_restored_state_shows(self):
        panels = (0, PLOT_Y - 20, WIDTH - 300, HEIGHT - PLOT_Y + 20 - 32)
        before = self.host.look(*panels)
        self.host.ask(f"save {self.folder}/state")

        for setting in ("mode_low_band=Boost", "threshold_mid_band=-12", "link_high_band=Linked", "solo_band=Low",
                        "crossover_low=700", "oversampling=8x", "layout=Left / Right"):
            self.host.ask("set " + setting)
        self.host.await_other(panels, before)
        self.host.ask(f"load {self.folder}/state")
        self.host.await_that(lambda: self.host.look(*panels) == before, "everything shows the state")


class TooltipTest(WindowTest):
    """The strip has one picture for each text, and the same one wherever the text is the same."""

    def places(self):
        texts = {
            "threshold": "Threshold: Values above this will be clipped",
            "shape": "Shape: The shape of the clipper",
            "gain": "Makeup: Gain to apply to the output of the clipper",
        }
        for section in PANELS:
            for name, text in texts.items():
                knob = knob_of(section, name)
                for position in (knob, name_of(knob), (knob[0], knob[1] + 54)):
                    yield position, text
            yield in_panel(section, 78, 78), "Clipper Shape: Preview the shape and current level. Right click ..."
            yield in_panel(section, 78, 117), "Mode: Set the clipper mode"
            yield in_panel(section, 124, 25), "Enable: Enable the clipper section"
            yield in_panel(section, 94, 25), "Link: Boost makeup gain to compensation for the threshold"
            yield in_panel(section, 40, 25), None

        for (kind, band), position in band_buttons().items():
            yield position, f"{band} {kind}"
        yield (bar_of(160), 280), "Low/Mid Crossover: Drag to adjust the crossover frequency ..."
        yield (bar_of(3500), 280), "Mid/High Crossover: Drag to adjust the crossover frequency ..."
        yield (500, 270), "Band Editor: Change band frequencies by dragging the vertical bars"
        yield BESIDE_PLOT, "Band Editor: Change band frequencies by dragging the vertical bars"
        yield (500, 120), "Waveform Graph: The filled waveform is the input to the plugin, and ..."

        for row in range(4):
            yield (70, PANEL_TOP + 90 + 20 * row), None
        for row, text in enumerate(("Single Band: Two clippers in series", "Multi Band: Three clppers ...",
                                    "Mid/Side: A clipper ...", "Left/Right: A clipper ...", "Oversampling: 16x")):
            yield (70, PANEL_TOP + 223 + 20 * row), text
        gain = (70, PANEL_TOP + 380)
        for position in (gain, name_of(gain), (gain[0], gain[1] + 54)):
            yield position, "In Gain: Apply gain adjustment before entering the clipping stage"

        for row, text in ((368, "Difference: The difference in LUFS between the input and output"),
                          (413, "Short Term In: The short-term LUFS value of the output"), (458, None),
                          (615, "Peak In: The max peak value of the input"),
                          (660, "Peak Out: The The max peak value of the output"),
                          (705, "Difference: The difference in dB between the input and output max peak")):
            yield (833, row + 22), text
        for x, text in ((898, "L in"), (924, "R in"), (1002, "L out"), (1028, "R out")):
            yield (x, 600), f"Meter {text}"

    def test_every_control_shows_its_text(self):
        places = list(self.places())
        looks = {None: self.host.await_still(STRIP)}

        for position, text in places:
            self.host.pointer(position)
            if text in looks:
                self.host.await_that(lambda: self.host.look(*STRIP) == looks[text], f"{position} shows: {text}")
            else:
                self.host.await_that(lambda: self.host.look(*STRIP) not in looks.values(), f"{position} shows: {text}")
                looks[text] = self.host.look(*STRIP)

        # The other way round, so that no picture was one of a moment.
        for position, text in reversed(places):
            self.host.pointer(position)
            self.host.await_that(lambda: self.host.look(*STRIP) == looks[text], f"{position} shows again: {text}")
        self.assertEqual(self.host.events, [])


class StripsTest(WindowTest):
    is_silent = False

    def test_a_click_on_a_readout_clears_them_all(self):
        values = [(790, row + 16, 86, 18) for row in (368, 413, 615, 660)]
        with_numbers = (790, 631, 86, 18)
        places = [(833, row + 22) for row in (368, 413, 458, 615, 660, 705)] + [(898, 385), (1028, 385)]
        dash = None

        for place in places:
            self.host.ask("start")
            self.host.await_that(
                lambda: len({self.host.look(*area) for area in values[::2]}) == 2
                and self.host.look(*with_numbers) != dash, "the readouts show numbers")
            self.host.ask("stop")
            self.host.await_still((788, PANEL_TOP, 280, PANEL_ROW))
            self.host.click(place)
            self.host.await_that(lambda: len({self.host.look(*area) for area in values}) == 1, f"{place} clears")
            dash = self.host.look(*with_numbers)
        self.assertEqual(self.host.events, [])

    def test_the_buttons_of_the_input_strip(self):
        panels = (140, PANEL_TOP, 600, 60)
        for row, text in ((0, "Single Band"), (2, "Mid / Side"), (3, "Left / Right"), (1, "Multi Band")):
            before = self.host.look(*panels)
            self.host.click((70, PANEL_TOP + 90 + 20 * row))
            self.assert_gesture("layout", [round(row / 3, 6)])
            self.assertEqual(self.host.text("layout"), text)
            self.host.await_other(panels, before)
        for row, text in ((3, "8x"), (0, "Off")):
            self.host.click((70, PANEL_TOP + 223 + 20 * row))
            self.assert_gesture("oversampling", [row / 4])
            self.assertEqual(self.host.text("oversampling"), text)


class FrameTest(WindowTest):
    def test_the_corner_resizes_and_a_reopened_window_keeps_its_size(self):
        corner = (WIDTH - 5, HEIGHT - 5)
        self.host.pointer(corner, "mousedown 1", (corner[0] + 50, corner[1] + 20), (corner[0] + 132, corner[1] + 100),
                          "mouseup 1")
        self.host.await_that(lambda: self.host.size() == "1200x900", "the corner follows the pointer")
        self.host.reopen()
        self.host.await_that(lambda: self.host.size() == "1200x900", "the size is kept")

    def test_a_window_that_closes_in_mid_drag_ends_the_gesture_and_the_next_one_hears_the_mouse(self):
        panels = (0, PLOT_Y - 20, 760, 300)
        for parameter, default, (x, y) in (("threshold_mid_band", "0", knob_of("mid_band", "threshold")),
                                           ("crossover_low", "160", (bar_of(160), 280))):
            for is_released_first in (True, False):
                drag = [(x, y), "mousedown 1", (x + 3, y + 5), (x + 8, y + 10)]
                self.host.pointer(*drag)
                self.host.await_that(lambda: self.host.text(parameter) and ("begin", parameter) in self.host.events,
                                     "the drag begins")
                release = lambda: self.host.pointer("mouseup 1")
                self.host.reopen(release if is_released_first else lambda: None)
                if not is_released_first:
                    release()
                self.assert_gesture(parameter)

                self.host.ask(f"set {parameter}={default}")
                self.host.await_still(panels)
                self.host.events.clear()
                self.host.pointer(*drag)
                release()
                self.assert_gesture(parameter)
                self.host.ask(f"set {parameter}={default}")
                self.host.await_still(panels)
                self.host.events.clear()

    def test_keys_go_to_the_field_that_was_clicked_last(self):
        dialog, save_button = (384, 120, 340, 240), (621, 19)
        fields = ((384, 190), (384, 240), (384, 290), (564, 290))
        closed = self.host.look(*dialog)

        self.choose(in_panel("post", 78, 117), 1, in_panel("post", 78, 117), (640, 440, 80, 30))
        self.host.click(knob_of("mid_band", "threshold"))
        self.host.click(save_button)
        self.host.await_other(dialog, closed)
        self.host.await_still((384, 330, 340, 20))

        def first_letters():
            return {self.host.look(x + 4, y + 2, 12, 16) for x, y in fields}

        empty = first_letters()
        for x, y in fields:
            self.host.click((x + 80, y + 10))
            self.host.type("words")
        self.host.await_that(lambda: len(first_letters()) == 1 and first_letters() != empty, "all fields have the word")

        self.host.key("Escape")
        self.host.await_that(lambda: self.host.look(*dialog) == closed, "the dialog is closed")

    def test_closing_the_window_ends_the_program(self):
        def has_ended():
            self.host.key("alt+F4")
            return self.host.process.poll() is not None

        self.host.click(AWAY)
        self.host.await_that(has_ended, "the program ends with its window")
        self.assertEqual(self.host.process.returncode, 0)

    def test_it_opens_resizes_and_closes_at_any_moment_of_automation(self):
        self.host.ask("automate")
        for turn in range(int(os.environ.get("ORVO_WINDOW_TURNS", 10))):
            for size in ("2000x1500", "977x800", f"{1000 + turn}x{900 + turn % 7}"):
                self.host.ask("size " + size)
            self.host.reopen()

    def test_a_picture_has_the_size_and_scale_that_were_asked_for(self):
        picture = self.folder / "picture.png"
        for size, scale, status in (("977x800", "2", 0), ("2000x1500", "0.5", 0), ("976x800", "1", 1)):
            words = ["open", "--screenshot", str(picture), "--force", "--size", size, "--scale", scale]
            run = subprocess.run([sys.argv[1], *words], capture_output=True)
            self.assertEqual(run.returncode, status, run.stderr)
            if status == 0:
                shown = struct.unpack(">II", picture.read_bytes()[16:24])
                self.assertEqual(shown, tuple(int(float(scale) * int(edge)) for edge in size.split("x")))


def values_in(preset_or_state):
    pairs = re.findall(rb'<PARAM id="(\w+)" value="([^"]+)"', preset_or_state)
    return {name: float(value) for name, value in pairs}


class PresetsTest(WindowTest):
    layout = "Single Band"
    box = (365, 11, 140, 16)  # the text of the preset box
    content = (300, 320, 440, 440)  # below the waveform, which moves

    def config(self, name=""):
        return next(self.temporary.rglob("Presets")).parent / name

    def restart_with(self, program, script, *options):
        """The host once more, which finds this program of the desktop's before any other."""
        folder = self.folder / "bin"
        folder.mkdir()
        (folder / program).write_text("#!/bin/sh\n" + script)
        (folder / program).chmod(0o755)
        before = os.environ["PATH"]
        self.addCleanup(os.environ.__setitem__, "PATH", before)
        os.environ["PATH"] = f"{folder}:{before}"
        self.host.quit()
        self.host = self.open_host(*options)

    def loaded_values(self):
        """Of the parameters that are in every preset."""
        self.host.ask(f"save {self.folder}/state")
        return values_in((self.folder / "state").read_bytes())

    def test_presets_are_stepped_through_browsed_and_filtered(self):
        previous, following, browser = (570, 19), (595, 19), (345, 19)
        second_row = (400, 99)
        initial = self.host.look(*self.box)
        params = [f"{name}_{section}" for name in ("threshold", "gain", "mode") for section in ("single", "post")]
        values = lambda: [self.host.text(name) for name in params] + [self.host.text("in_gain"), self.host.text("layout")]
        defaults = values()
        self.host.ask(f"save {self.folder}/state")

        self.host.click(previous)  # greyed out on the first one
        self.host.click(following)
        stepped = self.host.await_other(self.box, initial)
        self.host.await_that(lambda: values() != defaults, "the preset's values arrive")
        loaded = values()
        self.host.ask(f"load {self.folder}/state")
        self.host.await_that(lambda: self.host.look(*self.box) == initial, "a restore shows its preset")
        self.host.click(following)
        self.host.await_that(lambda: self.host.look(*self.box) == stepped and values() == loaded, "and steps from there")
        self.host.click(previous)
        self.host.await_that(lambda: self.host.look(*self.box) == initial and values() == defaults, "back at the start")

        closed = self.host.look(*self.content)
        self.host.click(browser)
        table = self.host.await_other(self.content, closed)
        self.host.click(second_row)
        self.host.await_that(lambda: self.host.look(*self.box) == stepped and values() == loaded, "a row loads its preset")
        self.host.key("Up")
        self.host.await_that(lambda: self.host.look(*self.box) == initial, "so does the row above")

        self.host.await_still(self.content)
        table = self.host.look(*self.content)
        badge = (307, 731)
        self.host.click(badge)
        self.host.await_other(self.content, table)
        self.host.click(badge, 3)

        def click_random():
            self.host.click((95, 755))
            return self.host.look(*self.box) != initial

        self.host.await_that(click_random, "a preset is chosen at random")
        self.host.key("Home")
        self.host.await_that(lambda: self.host.look(*self.box) == initial, "and the first one by a key")
        self.host.pointer((430, 500))
        self.host.key("Escape")
        self.host.await_that(lambda: self.host.look(*self.content) == closed, "the browser is closed")

    def test_a_preset_is_saved_and_a_failure_keeps_the_dialog(self):
        chosen, words = self.folder / "chosen", self.folder / "words"
        self.restart_with(
            "zenity", f'[ "$1" = --version ] && echo 3.44.0 || {{ cat "{chosen}"; echo "$@" > "{words}"; }}\n',
            "--set", "in_gain=3")

        user = self.config("Presets/User")
        dialog, name, save, open_dialog = (364, 102, 380, 268), (550, 200), (660, 340), (621, 19)
        closed = self.host.await_still(dialog)
        initial = self.host.look(*self.box)
        self.host.click(open_dialog)
        self.host.await_other(dialog, closed)
        self.host.click(name)
        self.host.type("Mine")

        chosen.write_text("/nonexistent/Mine.tpre\n")
        self.host.click(save)
        toast = (20, 25, 200, 40)
        self.host.await_that(lambda: "Couldn't save preset!" in self.config("log.log").read_text(), "the failure is told")
        self.host.await_still(toast)
        self.host.click((1020, 45))  # dismisses it
        self.assertNotEqual(self.host.look(*dialog), closed)

        chosen.write_text(f"{user}/Mine.tpre\n")
        self.host.click(save)
        self.host.await_that((user / "Mine.tpre").exists, "the file is there")
        self.assertIn('id="in_gain" value="3.0"', (user / "Mine.tpre").read_text())
        self.host.await_that(lambda: "Preset saved" in self.config("log.log").read_text(), "the user is told")
        self.host.await_still(toast)
        self.host.click((1020, 45))
        self.host.pointer(AWAY)
        self.host.await_that(lambda: self.host.look(*dialog) == closed and self.host.look(*self.box) != initial,
                             "the box shows it")

        self.assertEqual(self.host.text("in_gain"), "3.0dB")
        self.host.ask("set in_gain=5")
        self.host.click(open_dialog)
        self.host.await_other(dialog, closed)
        self.host.click(name)
        self.host.type("Mine")
        for answer, kept in (("", "3.0"), (f"{user}/Mine.tpre\n", "5.0")):
            words.unlink()
            chosen.write_text(answer)
            self.host.click(save)
            self.host.await_that(
                lambda: words.exists() and "Mine.tpre" in words.read_text()
                and f'id="in_gain" value="{kept}"' in (user / "Mine.tpre").read_text(),
                "a refusal keeps the file, and a choice replaces it")
            self.assertIn("--confirm-overwrite", words.read_text())

    def test_two_categories_are_shown_or_hidden_together_or_each(self):
        show, hide, match_all, match_any = (131, 729), (173, 729), (217, 729), (253, 729)
        factory = self.config("Presets/Factory")
        files = sorted(factory.rglob("*.tpre"), key=lambda file: (file.parent.name.lower(), file.name.lower()))
        categories = {
            file: set(re.search(r'categories="([^"]*)"', file.read_text()).group(1).split(",")) for file in files}
        wanted = {"Bands", "Bass"}

        self.host.click((345, 19))
        for badge in ((307, 731), (360, 729)):
            self.host.click(badge)
        for toggles, is_shown in (
                ((show, match_all), lambda own: wanted <= own),
                ((show, match_any), lambda own: bool(wanted & own)),
                ((hide, match_any), lambda own: not wanted & own),
                ((hide, match_all), lambda own: not wanted <= own)):
            for toggle in toggles:
                self.host.click(toggle)
            shown = [file for file in files if is_shown(categories[file])]
            first = ["Home"] if not is_shown({"Tools"}) else ["Home", "Down"]  # below "Initial Patch", which has no file
            for keys, file in ((["End"], shown[-1]), (first, shown[0])):
                for key in keys:
                    self.host.key(key)
                expected = values_in(file.read_bytes())
                self.host.await_that(
                    lambda: expected.items() <= self.loaded_values().items(), f"{keys[-1]} loads {file.name}")

    def test_a_row_reveals_its_file(self):
        opened, row = self.folder / "opened", (400, 117)
        self.restart_with("xdg-open", f'echo "$@" > "{opened}"\n')
        self.host.click((345, 19))
        self.host.await_still(self.content)
        self.choose(row, 3, (row[0] + 40, row[1] + 12), (row[0] + 5, row[1] + 5, 60, 15))
        self.host.await_that(opened.exists, "the desktop is asked")
        self.host.await_that(
            lambda: opened.read_text().strip() == str(self.config("Presets/Factory/Bass")), "for the preset's folder")

    def test_settings_reach_the_window_from_its_dialog_and_from_other_processes(self):
        scale_box = (649, 180)
        following, its_settings = self.host, self.config("settings.settings")
        self.host = self.open_host()
        own_settings = next(
            file for path in self.temporary.rglob("Presets") if (file := path.with_name(its_settings.name)) != its_settings)
        its_settings.symlink_to(own_settings)

        self.host.click((721, 19))
        self.host.await_still((364, 102, 380, 160))
        self.choose(scale_box, 1, (scale_box[0], scale_box[1] + 120), (scale_box[0] - 70, scale_box[1] + 30, 100, 60))
        self.host.await_that(lambda: self.host.size() == "1602x1200", "the window is half as large again")
        self.host.await_that(lambda: 'val="1.5"' in own_settings.read_text(), "the choice is saved")
        self.host.await_that(lambda: following.size() == "1602x1200", "the other process follows")
        following.quit()

    def test_the_tenth_click_on_the_name_brings_the_next_theme(self):
        corner = (990, 2, 20, 34)
        before = self.host.look(*corner)
        for _ in range(9):
            self.host.click((60, 19))
        self.assertEqual(self.host.await_still(corner), before)
        self.host.click((60, 19))
        self.host.await_other(corner, before)

    def test_the_manual_in_the_bundle_is_opened(self):
        maps = pathlib.Path(f"/proc/{self.host.process.pid}/maps").read_text()
        library = pathlib.Path(re.search(r"(/.*/Orvo\.so)$", maps, re.MULTILINE).group(1))
        bundle, opened = self.folder / "Orvo.vst3", self.folder / "opened"
        shutil.copytree(library.parents[2], bundle)
        manual = bundle / "Contents/Resources/Orvo Manual 1.0.1.pdf"
        manual.write_text("manual")
        self.restart_with("xdg-open", f'echo "$@" > "{opened}"\n', "--plugin", str(bundle))
        self.host.click((659, 19))
        self.host.await_that(opened.exists, "the desktop is asked")
        self.host.await_that(lambda: opened.read_text().strip() == str(manual), "for the manual")

    def test_a_missing_manual_is_told(self):
        self.host.click((659, 19))
        self.host.await_that(lambda: "we can't find the manual" in self.config("log.log").read_text(), "the toast is up")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[2:], verbosity=2)
