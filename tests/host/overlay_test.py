#!/usr/bin/env python3
"""Drives what lies over the built module's window, its boxes and its list of presets: overlay_test.py ORVO-HOST

With real pointer and key events, at two scales; see window_test.py.
"""

import sys
import unittest

import window_test
from window_host import Host

BROWSER, BOX, NEXT, SAVE, MANUAL, SETTINGS = ((x, 19) for x in (345, 430, 595, 621, 659, 721))
PARAMETER = "threshold_single"
KNOB = (207, 691)
MODE = (331, 628)
BESIDE = (60, 700)  # beside every dialog


class OverlayTest(window_test.WindowTest):
    layout = "Single Band"
    scale = 1
    whole = (140, 330, 640, 420)  # what is still and lies under dialogs and the browser
    config, restart_with = window_test.PresetsTest.config, window_test.PresetsTest.restart_with
    loaded_values = window_test.PresetsTest.loaded_values

    def open_host(self, *options):
        host = Host(sys.argv[1], *self.options, *options, scale=self.scale)
        self.addCleanup(host.process.kill)
        host.pointer(window_test.AWAY)
        host.await_still(self.whole)
        return host

    def assert_no_gesture(self):
        self.host.await_still(self.whole)
        self.assertEqual(self.host.events, [])

    def test_the_keyboard_stays_with_what_lies_on_top_and_comes_back(self):
        value = window_test.text_of(KNOB)
        plain = self.host.look(*value)
        self.host.click(window_test.AWAY)

        def reaches_knob():
            self.host.key("Tab")
            return self.host.comes(lambda: self.host.look(*value) != plain, seconds=0.3)

        self.host.await_that(reaches_knob, "the tab key reaches the knob")
        for opener, keys, closing in ((MANUAL, ["Tab", "Up", "Tab", "Down"], ["Return", "Escape"]),
                                      (MANUAL, ["shift+Tab", "Tab"], ["space", "Return"]),
                                      (SETTINGS, ["Tab"] * 3, ["Escape"]),
                                      (SAVE, ["Tab"] * 8, ["Escape"]),
                                      (BROWSER, ["Tab"] * 5, ["Escape"])):
            before = self.host.await_still(self.whole)
            self.host.click(opener)
            self.host.pointer(window_test.AWAY)
            self.host.await_other(self.whole, before)
            covered = self.host.await_still(self.whole)
            for key in keys + closing:
                self.assertEqual(self.host.events, [])
                self.host.key(key)
            self.host.await_other(self.whole, covered)
            self.host.key("Down")
            self.assert_gesture(PARAMETER)
            self.host.ask(f"set {PARAMETER}=0")

    def test_a_choice_with_the_mouse_leaves_the_keys_to_others(self):
        self.choose(MODE, 1, (MODE[0], MODE[1] + 65), (MODE[0] - 50, MODE[1] + 14, 100, 30))
        self.host.pointer(window_test.AWAY)
        self.host.events.clear()
        for key in ("Up", "Down", "Return"):
            self.host.key(key)
        self.assert_no_gesture()

    def test_the_current_preset_is_chosen_again(self):
        initial = self.host.look(380, 11, 120, 16)
        self.host.click(NEXT)
        self.host.pointer(window_test.AWAY)
        loaded = self.host.await_other((380, 11, 120, 16), initial)
        self.host.await_still(self.whole)
        text = self.host.text(PARAMETER)
        self.host.ask(f"set {PARAMETER}=-17")
        self.host.await_other((380, 11, 120, 16), loaded)  # the mark

        def menu_opens():
            self.host.click(BOX)
            return self.host.comes(lambda: self.host.look(*folders) != before, seconds=2)

        folders, presets = (BOX[0] - 60, 50, 100, 100), (560, 54, 60, 20)
        before = self.host.look(*folders)
        self.host.await_that(menu_opens, "the menu opens")
        self.host.await_still(folders)
        waveform = self.host.look(*presets)
        self.host.pointer((BOX[0], 63))
        self.host.await_other(presets, waveform)
        self.host.await_still(presets)
        self.host.click((590, 63))
        self.host.await_text(PARAMETER, text)
        self.host.pointer(window_test.AWAY)
        self.host.await_that(lambda: self.host.look(380, 11, 120, 16) == loaded, "without the mark")

    def test_a_typed_name_replaces_that_of_the_preset_and_survives_a_click_beside_the_dialog(self):
        words, save = self.folder / "words", (660, 340)
        self.restart_with("zenity", f'[ "$1" = --version ] && echo 3.44.0 || echo "$@" > "{words}"\n')

        def offered():
            words.unlink(missing_ok=True)
            self.host.click(save)
            self.host.await_that(lambda: words.exists() and words.read_text(), "a file dialog opens")
            return words.read_text()

        def open_dialog():
            self.host.click(SAVE)
            self.host.await_that(lambda: self.host.look(*dialog) != closed, "the dialog opens")
            self.host.await_still((384, 330, 340, 20))

        dialog = (384, 150, 340, 200)
        self.host.click(NEXT)
        self.host.pointer(window_test.AWAY)
        closed = self.host.await_still(dialog)
        open_dialog()
        self.host.type("Mine")
        self.assertIn("--filename=Mine.tpre", offered())
        self.host.click(BESIDE)
        self.host.await_that(lambda: self.host.look(*dialog) == closed, "a click beside it closes")
        open_dialog()
        self.assertIn("--filename=Mine.tpre", offered())
        self.host.key("Escape")
        self.host.await_that(lambda: self.host.look(*dialog) == closed, "so does a key")
        open_dialog()
        self.assertNotIn("Mine", offered())

    def test_letters_go_to_a_preset(self):
        files = sorted(self.config("Presets/Factory").rglob("*.tpre"),
                       key=lambda file: (file.parent.name.lower(), file.name.lower()))
        target = files[-1]
        beginning = target.stem.split(" ")[0].lower()
        expected = window_test.values_in(next(f for f in files if f.stem.lower().startswith(beginning)).read_bytes())
        self.host.click(BROWSER)
        self.host.await_still(self.whole)
        self.host.type(beginning)
        self.host.await_that(lambda: expected.items() <= self.loaded_values().items(), f"{beginning} is loaded")


class LargeOverlayTest(OverlayTest):
    scale = 1.5


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[2:], verbosity=2)
