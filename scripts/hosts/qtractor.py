#!/usr/bin/python3
"""Drives Qtractor: the session is written as a file, all else is done with mouse and keys. It wants JACK and ALSA's
sequencer; the first is a server without a device, and where a machine has no second, the calls are answered for it."""

import os
import re
import shutil
import xml.etree.ElementTree as xml

import soundfile

import common
import no_sequencer
import rounds
from common import HOME, INPUT, RATE, SECONDS, Failure, Program, wait_for

ROOT = os.environ["ORVO_HOST_PREFIX"].split()[-1]
SESSION = f"{HOME}/session.qtr"
SERVER = "orvo-hosts"
MAIN = r"session\.qtr.* — Qtractor"
EXPORT = "Export Audio Tracks"

# In a main window of this size, from its corner: a track's list of plug-ins, and the next track.
MAIN_SIZE = (1300, 1500)
ENTRY = (178, 180)
TRACK_HEIGHT = 96

# Where a plug-in's window hides no list.
ASIDE = (1350, 100)

# In the export's dialog
SAMPLE_FORMAT, FILE, FIRST_OUTPUT, OKAY = (175, 93), (170, 37), (255, 147), (298, 346)


def add(parent, tag, text=None, /, **attributes):
    element = xml.SubElement(parent, tag, attributes)
    element.text = text
    return element


def write_session(with_plugin):
    """Eight tracks of the same sound, the first audible; the first with_plugin of them have Orvo."""
    session = xml.Element("session", name="session", version="1.5.4")
    properties = add(session, "properties")
    for name, text in (("directory", HOME), ("sample-rate", str(RATE)), ("tempo", "120"), ("ticks-per-beat", "960"),
                       ("beats-per-bar", "4"), ("beat-divisor", "2")):
        add(properties, name, text)
    files = add(add(session, "files"), "audio-list")
    add(files, "file", os.path.basename(INPUT), name="input.wav")
    state = add(session, "state")
    add(state, "loop-start", "0")
    add(state, "loop-end", str(RATE * SECONDS))
    tracks = add(session, "tracks")
    for number in range(8):
        track = add(tracks, "track", name=f"track{number + 1}", type="audio")
        properties = add(track, "properties")
        add(properties, "input-bus", "Master")
        add(properties, "output-bus", "Master")
        add(properties, "plugin-list-latency", "1")  # compensates the plug-ins' latency; off by default
        add(add(track, "state"), "mute", str(int(number > 0)))
        clip = add(add(track, "clips"), "clip", name="input")
        properties = add(clip, "properties")
        for name, text in (("name", "input"), ("start", "0"), ("offset", "0"), ("length", str(RATE * SECONDS))):
            add(properties, name, text)
        add(add(clip, "audio-clip"), "filename", os.path.basename(INPUT))
        plugins = add(track, "plugins")
        if number < with_plugin:
            plugin = add(plugins, "plugin", type="VST3")
            library = f"{HOME}/.vst3/Orvo.vst3/Contents/{os.uname().machine}-linux/Orvo.so"
            for name, text in (("filename", library), ("index", "0"), ("label", "Orvo"), ("activated", "1")):
                add(plugin, name, text)
    xml.ElementTree(session).write(SESSION, encoding="UTF-8", xml_declaration=True)


class Qtractor:
    def __init__(self, programs):
        self.programs = programs
        self.environment = {"JACK_DEFAULT_SERVER": SERVER, "QT_QPA_PLATFORM": "xcb"}
        if not os.path.exists("/dev/snd/seq"):
            no_sequencer.main(f"{ROOT}/usr/bin/qtractor", f"{HOME}/no_sequencer.so")
            self.environment["LD_PRELOAD"] = f"{HOME}/no_sequencer.so"
        # A name for the server, so that one that runs already is left alone.
        programs.append(Program("jackd", "jackd", "--no-realtime", "-n", SERVER, "-d", "dummy", "-r", str(RATE)))
        wait_for(lambda: programs[0].check() and "self-connect-mode" in open(programs[0].log_name).read(), "JACK", 10)

    def start(self):
        self.program = Program("qtractor", "qtractor", SESSION, env=self.environment)
        self.programs.append(self.program)
        self.main = wait_for(lambda: self.program.check() and common.windows(MAIN), "Qtractor's session", 60)[0]
        common.place(self.main, 0, 0, *MAIN_SIZE)
        wait_for(lambda: common.geometry(self.main)[2:] == MAIN_SIZE, "the window's size")

    def keys(self, *names):
        common.focus(self.main)
        common.keys(*names)

    def find(self, track=0):
        return common.windows(rf"^Orvo.* - track{track + 1} — Qtractor")

    def open(self, track=0):
        common.focus(self.main)
        common.click_in(self.main, ENTRY[0], ENTRY[1] + track * TRACK_HEIGHT, times=2)

    def open_whole(self, track=0):
        window = common.ask_until(lambda: self.open(track), lambda: self.program.check() and self.find(track),
                                  f"the window of track {track + 1}")[0]
        wait_for(lambda: self.program.check() and common.painted(window), f"the picture of track {track + 1}")
        common.place(window, *ASIDE, -1, -1)
        return window

    def beside(self, number):
        """A menu, the window of connections and another instance's in turn."""
        if number % 3 == 0:
            self.keys("alt+t")
            common.keys("Escape", "Escape")
        elif number % 3 == 1:
            connections = common.ask_until(lambda: self.keys("F8"),
                                           lambda: self.program.check() and common.windows("^Connections"),
                                           "the window of connections")[0]
            common.close(connections)
            wait_for(lambda: self.program.check() and not common.windows("^Connections"), "the connections to close")
        else:
            common.close(self.open_whole(1))
            wait_for(lambda: self.program.check() and not self.find(1), "the second window to close")

    def export(self, name):
        target = f"{HOME}/{name}.wav"
        self.keys("alt+t")
        common.keys("x")
        common.keys("a")
        dialog = wait_for(lambda: self.program.check() and common.windows(EXPORT), "the export's dialog")[0]
        common.click_in(dialog, *SAMPLE_FORMAT)
        common.run("xdotool", "type", "F")  # "Float  32-Bit"
        common.keys("Return")
        common.click_in(dialog, *FILE, times=3)
        common.run("xdotool", "type", target)
        common.click_in(dialog, *FIRST_OUTPUT)
        common.picture("export-dialog", dialog)
        common.click_in(dialog, *OKAY)
        wait_for(lambda: self.program.check() and not common.windows(EXPORT), "the export's end", 60)
        sound, rate = soundfile.read(target, always_2d=True)
        shutil.move(target, f"{common.OUT}/{name}.wav")
        if rate != RATE:
            raise Failure(f"exported at {rate} Hz")
        return sound

    def save(self):
        common.ask_until(lambda: self.keys("ctrl+s"), lambda: self.program.check() and not common.windows(r"\[modified\]"),
                         "the session to be saved")

    def quit(self):
        """It may ask again whether to save, if anything changed since; the first answer saves."""
        common.close(self.main)
        wait_for(lambda: self.program.process.poll() is not None or common.windows("^Warning — Qtractor"), "the end")
        if self.program.process.poll() is None:
            common.keys("Return")
        self.program.quit_cleanly()


def drive(result, programs):
    result.version = re.search(r"\d+\.\d+\.\d+", common.run(*common.PREFIX, "dpkg-query", "-W", "qtractor")).group()
    write_session(with_plugin=8)
    host = Qtractor(programs)
    host.start()
    result.did("load with eight instances")
    host.keys("space")

    window = host.open_whole()
    rounds.first_look(window, result)
    common.close(window)
    wait_for(lambda: not host.find(), "the window to close")
    rounds.turn(host.program, host.find, host.open, common.close, host.beside, result)

    opened = [host.open_whole(track) for track in range(8)]
    common.picture("eight")
    for window in opened:
        common.close(window)
    wait_for(lambda: host.program.check() and not common.windows("^Orvo"), "eight windows to close")
    result.did("eight windows")
    host.keys("space")
    host.save()
    host.quit()
    result.did("save and quit")

    host.start()
    common.close(host.open_whole())
    sound = host.export("export")
    largest = common.difference(sound, common.reference("expected", "oversampling=4x"), "export")
    result.did("load and export")
    result.saw(f"sound as orvo-host's but for {largest:.2g}")
    host.save()
    host.quit()


if __name__ == "__main__":
    common.main("Qtractor", drive)
