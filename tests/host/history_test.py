#!/usr/bin/env python3
"""Undo, redo, A and B, with real events: history_test.py ORVO-HOST [TEST]"""

import sys
import unittest

from window_test import AWAY, WIDTH, WindowTest, in_panel, knob_of, text_of

UNDO, REDO, TO_A, TO_B, COPY = "ctrl+z", "ctrl+shift+z", "ctrl+1", "ctrl+2", "ctrl+c"
THRESHOLD, SHAPE = (knob_of("mid_band", name) for name in ("threshold", "shape"))
LINK = in_panel("mid_band", 94, 25)
MARK = (WIDTH - 45, 774, 28, 22)  # the letter in the strip at the bottom
BOX = (365, 11, 120, 16)  # the preset's name
NEXT, SETTINGS, BROWSER = (595, 19), (721, 19), (345, 19)


class HistoryTest(WindowTest):
    def setUp(self):
        super().setUp()
        self.host.click(AWAY)  # for the keyboard

    def threshold(self):
        return float(self.host.text("threshold_mid_band").removesuffix("dB"))

    def await_threshold(self, value):
        self.host.await_text("threshold_mid_band", f"{value:.1f}dB")

    def turn_threshold(self, value):
        """By the wheel."""
        notches = round((value - self.threshold()) / 0.5)
        self.host.pointer(THRESHOLD, *[f"click {4 if notches > 0 else 5}"] * abs(notches))
        self.await_threshold(value)

    def stays(self, *keys):
        """The keys change nothing, of which the host is told."""
        self.host.ask("window")
        self.host.events.clear()
        self.host.key(*keys)
        self.host.await_still(text_of(THRESHOLD))
        self.host.ask("window")
        self.assertEqual(self.host.events, [])

    def test_what_the_user_did_is_taken_back_step_by_step(self):
        self.host.pointer(THRESHOLD, "mousedown 1", (THRESHOLD[0], THRESHOLD[1] + 30), (THRESHOLD[0], THRESHOLD[1] + 60),
                          "mouseup 1")
        self.host.await_that(lambda: ("end", "threshold_mid_band") in (self.host.text("enable"), self.host.events)[1],
                             "the drag is over")
        dragged = self.threshold()
        self.assertLess(dragged, -3)
        self.host.pointer(SHAPE, "click 4", "click 4", "click 4")
        self.host.await_text("shape_mid_band", "3%")
        self.host.click(LINK)
        self.host.await_text("link_mid_band", "Linked")
        self.host.ask("set gain_mid_band=5")  # by the host, as everything behind these words

        self.host.events.clear()
        self.host.key(UNDO)
        self.assert_gesture("link_mid_band", [0.0])
        self.host.key(UNDO)
        self.host.await_text("shape_mid_band", "0%")
        self.host.ask("set threshold_mid_band=-1")
        self.host.key(UNDO)
        self.await_threshold(0)
        self.stays(UNDO)
        for _ in range(3):
            self.host.key(REDO)
        self.host.await_text("link_mid_band", "Linked")
        self.assertEqual((self.threshold(), self.host.text("shape_mid_band")), (dragged, "3%"))
        self.stays(REDO)
        self.assertEqual(self.host.text("gain_mid_band"), "5.0dB")

    def test_the_menu_of_a_control_offers_both(self):
        def choose(item, and_line):
            x, y = SHAPE
            self.host.pointer(SHAPE)
            self.host.await_still((x - 60, y, 120, 50), 0.1)
            self.choose(SHAPE, 3, (x + 40, y + 12 + 22 * item + and_line), (x + 12, y + 4, 48, 16))

        self.turn_threshold(-6)
        choose(2, 6)
        self.await_threshold(0)
        choose(3, 6)
        self.await_threshold(-6)

    def test_presets_come_and_go_and_a_hosts_state_ends_the_history(self):
        self.turn_threshold(-6)
        self.host.pointer(AWAY)
        changed = self.host.await_still(BOX)
        self.host.ask(f"save {self.folder}/state")
        self.host.click(NEXT)
        self.await_threshold(0)
        self.host.pointer(AWAY)
        loaded = self.host.await_still(BOX)
        for key, look, value in ((UNDO, changed, -6), (REDO, loaded, 0), (UNDO, changed, -6)):
            self.host.key(key)
            self.await_threshold(value)
            self.host.await_that(lambda: self.host.look(*BOX) == look, "the box shows the preset")

        self.host.click(BROWSER)  # from which presets are loaded, too
        self.host.key(UNDO)
        self.await_threshold(0)
        self.host.key(REDO)
        self.await_threshold(-6)
        self.host.key("Escape")

        self.host.ask(f"load {self.folder}/state")
        self.stays(UNDO)
        self.stays(REDO)

    def test_a_dialog_keeps_the_keys_from_what_it_covers(self):
        self.turn_threshold(-6)
        covered = self.host.await_still((384, 310, 300, 40))
        self.host.click(SETTINGS)
        self.host.await_other((384, 310, 300, 40), covered)
        self.stays(UNDO)
        self.host.key("Escape")
        self.host.await_that(lambda: self.host.look(384, 310, 300, 40) == covered, "the dialog is gone")
        self.host.key(UNDO)
        self.await_threshold(0)

    def test_two_states_are_compared(self):
        plain = self.host.look(*MARK)
        shows_mark = lambda: self.host.look(*MARK) != plain
        self.turn_threshold(-6)
        self.host.key(TO_B)
        self.host.await_that(shows_mark, "B is told of")
        self.await_threshold(-6)
        self.turn_threshold(-3)
        for key, value, is_b in ((TO_A, -6, False), (TO_B, -3, True), (TO_B, -3, True)):
            self.host.key(key)
            self.await_threshold(value)
            self.host.await_that(lambda: shows_mark() == is_b, f"{key}: the letter")

        self.host.reopen()
        self.host.await_that(shows_mark, "a new window tells, too")
        self.host.click(AWAY)
        self.host.key(UNDO)  # of B's own history
        self.await_threshold(-6)
        self.host.key(REDO)
        self.await_threshold(-3)
        self.host.key(COPY)  # of A, over what is heard
        self.await_threshold(-6)
        self.host.key(UNDO)
        self.await_threshold(-3)
        self.host.key(TO_A)
        self.await_threshold(-6)
        self.turn_threshold(-9)
        self.host.key(COPY)
        self.stays(COPY)
        self.host.key(TO_B)
        self.await_threshold(-9)
        self.host.key(UNDO)
        self.await_threshold(-3)


class LargeHistoryTest(HistoryTest):
    scale = 1.5


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[2:], verbosity=2)
