#!/usr/bin/python3
"""Drives Bespoke, a modular synthesizer on JUCE: its canvas is one OpenGL picture, so all is done with the mouse. The
sound comes from JACK and is recorded from there, because Bespoke's own recorder starts at no defined frame."""

import json
import os
import re

import numpy
import soundfile

import common
import rounds
from common import HOME, INPUT, RATE, SECONDS, Ended, Failure, Program, say, wait_for

DATA = f"{HOME}/Documents/BespokeSynth"
STATE = f"{HOME}/session.bsk"
SERVER = "orvo-hosts"
MAIN = r"^bespoke synth"
PLUGIN = "^Orvo$"

# From the corner of the main window of this size: the menu of plug-ins and its entries
MAIN_SIZE = (1200, 800)
PLUGINS, MANAGE, FIRST_PLUGIN = (677, 27), (655, 43), (655, 58)
SAVE, SAVE_AS = (218, 9), (260, 9)

# In the manager of plug-ins, the question for folders, and the question for a file
MANAGER_SIZE = (402, 628)
OPTIONS, SCAN_VST3, CLOSE_MANAGER = (48, 609), (150, 806), (381, 17)
SCAN = (260, 386)
FILE_NAME, SAVE_FILE = (300, 436), (545, 475)

# The input's list of channels with its entry "1&2", and where its cable starts; the splitter, where a cable may end.
CHANNELS, STEREO, CABLE = (84, 101), (74, 146), (61, 113)
SPLITTER = (125, 693)

# From where a plug-in was dropped: its title, the button "open", and where its cable starts.
TITLE, OPEN, OUT = (40, 4), (69, 21), (63, 71)

# Where a plug-in's window hides no module.
ASIDE = (1300, 60)


def spot(instance):
    """Where an instance is dropped on the canvas."""
    return 100 + 270 * (instance % 4), 190 + 160 * (instance // 4)


def configure():
    os.makedirs(f"{DATA}/layouts")
    preferences = {"devicetype": "JACK", "audio_output_device": "system", "audio_input_device": "system",
                   "samplerate": RATE, "buffersize": 1024, "width": MAIN_SIZE[0], "height": MAIN_SIZE[1],
                   "set_manual_window_position": True, "position_x": 0, "position_y": 30, "zoom": 1.0, "ui_scale": 1.0,
                   "layout": "layouts/orvo.json", "show_tooltips_on_load": False}
    modules = [{"type": "input", "name": "input", "position": [30, 90]},
               {"type": "splitter", "name": "splitter", "position": [100, 700], "target": "output 1",
                "target2": "output 2"},
               {"type": "output", "name": "output 1", "channels": 0, "position": [50, 760]},
               {"type": "output", "name": "output 2", "channels": 1, "position": [250, 760]},
               {"type": "transport", "name": "transport", "position": [1000, 600]}]
    for name, content in (("userprefs", preferences), ("layouts/orvo", {"modules": modules, "zoomlocations": []})):
        with open(f"{DATA}/{name}.json", "w") as file:
            json.dump(content, file)


def windows(title):
    """The managed windows by title, as JUCE writes it: wmctrl cannot read that."""
    ids = [line.split()[0] for line in common.run("wmctrl", "-l").splitlines()]
    return [window for window in ids if re.search(title, common.run("xdotool", "getwindowname", window).strip())]


class Bespoke:
    def __init__(self, programs):
        self.programs = programs
        self.environment = {"JACK_DEFAULT_SERVER": SERVER}
        # A name for the server, so that one that runs already is left alone.
        self.jack("jackd", "jackd", "--no-realtime", "--sync", "-n", SERVER, "-d", "dummy", "-r", str(RATE))
        wait_for(lambda: programs[0].check() and "self-connect-mode" in open(programs[0].log_name).read(), "JACK", 10)

    def jack(self, name, *command):
        self.programs.append(Program(name, *command, env=self.environment))
        return self.programs[-1]

    def start(self, *state):
        # With its path, because Bespoke starts its scanner from the folder it was started in otherwise.
        self.program = self.jack("bespoke", "/usr/bin/BespokeSynth", *state)
        self.main = self.wait_window(MAIN, 60)
        common.place(self.main, 0, 30, -1, -1)
        wait_for(lambda: self.program.check() and "BespokeSynth:out" in self.ports(), "Bespoke's sound", 60)
        wait_for(lambda: self.program.check() and common.colours(self.main) > 100, "Bespoke's canvas", 60)

    def start_first(self, result):
        """Bespoke crashes now and then as it starts, before it has looked for any plug-in; then it is started again."""
        for tries_left in reversed(range(4)):
            try:
                self.start()
                return
            except Ended as end:
                if tries_left == 0:
                    raise
                result.saw(f"the host crashed as it started: {end}")

    def ports(self):
        return common.run(*common.PREFIX, "jack_lsp", "-s", SERVER)

    def wait_window(self, title, seconds=30):
        return wait_for(lambda: self.program.check() and windows(title), f"the window {title}", seconds)[0]

    def click(self, *place):
        """With a pause under the pointer, because the canvas looks for it only when it draws."""
        x, y = common.geometry(self.main)[:2]
        common.focus(self.main)
        common.run("xdotool", "mousemove", str(x + place[0]), str(y + place[1]), "sleep", "0.6", "click", "1",
                   "sleep", "0.6")

    def drag(self, start, end):
        x, y = common.geometry(self.main)[:2]
        common.run("xdotool", "mousemove", str(x + start[0]), str(y + start[1]), "sleep", "0.6", "mousedown", "1",
                   "sleep", "0.6", "mousemove", str(x + end[0]), str(y + end[1]), "sleep", "0.6", "mouseup", "1",
                   "sleep", "0.6")

    def scan(self):
        def manage():
            self.click(*PLUGINS)
            self.click(*MANAGE)
        common.ask_until(manage, lambda: self.program.check() and windows("^Plugin Manager"), "the manager of plug-ins")
        manager = windows("^Plugin Manager")[0]

        def choose():
            common.place(manager, 0, 0, *MANAGER_SIZE)  # it may come without a size
            common.focus(manager)
            for place in (OPTIONS, SCAN_VST3):
                common.click_in(manager, *place)
                common.run("sleep", "1")
        folders = common.ask_until(choose, lambda: self.program.check() and windows("^Select folders"), "the scan")[0]
        common.ask_until(lambda: common.click_in(folders, *SCAN),
                         lambda: self.program.check() and not windows("^Select folders"), "the scan's start")
        wait_for(lambda: self.program.check() and not windows("^Scanning"), "the scan's end", 60)
        if windows("^Scan complete"):
            raise Failure("the scan ended with errors")
        common.ask_until(lambda: common.click_in(manager, *CLOSE_MANAGER),
                         lambda: self.program.check() and not windows("^Plugin Manager"), "the manager to close")

    def insert(self, instance):
        self.click(*PLUGINS)
        self.click(*FIRST_PLUGIN)
        self.click(*spot(instance))

    def connect(self):
        x, y = spot(0)
        self.click(*CHANNELS)
        self.click(*STEREO)
        self.drag(CABLE, (x + TITLE[0], y + TITLE[1]))
        self.drag((x + OUT[0], y + OUT[1]), SPLITTER)

    def find(self):
        return windows(PLUGIN)

    def open(self, instance=0):
        x, y = spot(instance)
        self.click(x + OPEN[0], y + OPEN[1])

    def open_whole(self, instance=0):
        before = set(self.find())
        new = common.ask_until(lambda: self.open(instance), lambda: self.program.check() and set(self.find()) - before,
                               f"the window of instance {instance + 1}")
        window = new.pop()
        common.place(window, *ASIDE, -1, -1)
        wait_for(lambda: self.program.check() and common.painted(window), f"the picture of instance {instance + 1}")
        return window

    def beside(self, number):
        """A menu of the canvas, the question for a file and another instance's window in turn."""
        if number % 3 == 0:
            self.click(*PLUGINS)
            common.keys("Escape")
            self.click(600, 620)
        elif number % 3 == 1:
            question = common.ask_until(lambda: self.click(*SAVE_AS), lambda: self.program.check() and windows("^Save "),
                                        "the question for a file")[0]
            common.ask_until(lambda: self.escape(question), lambda: self.program.check() and not windows("^Save "),
                             "the question to close")
        else:
            before = set(self.find())
            common.close(self.open_whole(1))
            wait_for(lambda: self.program.check() and set(self.find()) == before, "the second window to close")

    @staticmethod
    def escape(window):
        common.focus(window)
        common.keys("Escape")

    def save(self):
        question = common.ask_until(lambda: self.click(*SAVE_AS), lambda: self.program.check() and windows("^Save "),
                                    "the question for a file")[0]
        common.focus(question)
        common.click_in(question, *FILE_NAME, times=3)
        common.run("xdotool", "type", STATE)
        common.keys("Return")
        common.ask_until(lambda: common.click_in(question, *SAVE_FILE),
                         lambda: self.program.check() and not windows("^Save ") and os.path.exists(STATE), "the file")

    def quit(self):
        common.close(self.main)
        self.program.quit_cleanly()

    def connect_ports(self, *pairs):
        for number, pair in enumerate(pairs):
            self.jack(f"connect-{number + 1}", "jack_connect", *pair).quit_cleanly()

    def play(self):
        """Plays the input over and over in place of a device."""
        player = self.jack("player", "sndfile-jackplay", "-l", "0", INPUT)
        wait_for(lambda: player.check() and "jackplay:out_2" in self.ports(), "the player's ports")
        self.connect_ports(*((f"jackplay:out_{side}", f"BespokeSynth:in_{side}") for side in (1, 2)))
        return player

    def compare(self, result):
        """Everything runs in real time here, and a busy machine loses blocks: then it is recorded again. What counts is
        one recording in which nothing differs."""
        expected = common.reference("expected", "oversampling=4x")
        for number in range(1, 5):
            try:
                largest = common.difference(whole_pass(self.record(f"record-{number}"), expected), expected, "record")
                break
            except Failure as failure:
                say(str(failure))
                if number == 4:
                    raise
        result.saw(f"sound as orvo-host's but for {largest:.2g}")
        if number > 1:
            result.saw(f"recorded {number} times until no block was lost")

    def record(self, name):
        """Long enough that one whole pass of the input is in it."""
        target = f"{common.OUT}/{name}.wav"
        self.jack("recorder", "jack_rec", "-f", target, "-d", str(2 * SECONDS + 2), "-b", "32",
                  "BespokeSynth:out_1", "BespokeSynth:out_2").quit_cleanly(60)
        return soundfile.read(target, always_2d=True)[0]


def whole_pass(sound, expected):
    """From where the sound follows the expected one: nobody knows when the recorder began, nor the ports' delay."""
    size = 1 << (len(sound) + len(expected)).bit_length()
    spectrum = numpy.fft.rfft(sound[:, 0], size) * numpy.conj(numpy.fft.rfft(expected[:, 0], size))
    start = int(numpy.argmax(numpy.fft.irfft(spectrum, size)[:len(sound) - len(expected)]))
    sound = sound[start:start + len(expected)].copy()
    # The recorder writes integers, whose range ends just below +1: that turns into -1 there.
    sound[(sound == -1) & (expected[:len(sound)] >= 1)] = 1
    return sound


def drive(result, programs):
    result.version = re.search(r"\d+\.\d+\.\d+", common.run(*common.PREFIX, "dpkg-query", "-W", "bespokesynth")).group()
    configure()
    host = Bespoke(programs)
    host.start_first(result)
    host.scan()
    result.did("scan")
    for instance in range(8):
        host.insert(instance)
    host.connect()
    common.picture("canvas")
    player = host.play()
    result.did("insert eight")

    window = host.open_whole()
    rounds.first_look(window, result)
    common.close(window)
    wait_for(lambda: not host.find(), "the window to close")
    rounds.turn(host.program, host.find, host.open, common.close, host.beside, result)

    opened = [host.open_whole(instance) for instance in range(8)]
    common.picture("eight")
    for window in opened:
        common.close(window)
    wait_for(lambda: host.program.check() and not host.find(), "eight windows to close")
    result.did("eight windows")
    player.stop()
    host.save()
    host.quit()
    result.did("save and quit")

    host.start(STATE)
    window = host.open_whole()
    common.picture("loaded", window)
    common.close(window)
    wait_for(lambda: not host.find(), "the window to close")
    player = host.play()
    host.compare(result)
    player.stop()
    result.did("load and record")
    host.quit()


if __name__ == "__main__":
    common.main("Bespoke", drive)
