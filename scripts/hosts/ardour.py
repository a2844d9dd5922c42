#!/usr/bin/python3
"""Drives Ardour. It is told what to do by Lua in its own process, through an action that OSC calls, and has no other
means to open a plug-in's window than the mouse."""

import base64
import os
import re
import sys

import liblo
import numpy
import soundfile

import common
import rounds
from common import HOME, INPUT, RATE, SECONDS, Failure, Program, say, wait_for

MAJOR = sys.argv[1]  # its files are named after its major version
SESSION = f"{HOME}/session"
COMMAND, ANSWER = f"{HOME}/command.lua", f"{HOME}/answer"
CONFIGURATION = f"{HOME}/.config/ardour{MAJOR}"
OSC_PORT = 3819

# Ardour 7.3 corrupts its heap with its own routines for AVX-512, with and without plug-ins, and aborts sooner or later.
if MAJOR == "7":
    os.environ["ARDOUR_FPU_FLAGS"] = "0"

MAIN = r"session - Ardour"

# In the mixer of this size, from the main window's corner: the first entry of a strip's processors, and the next strip.
MAIN_SIZE = (2400, 1500)
ENTRY = (525, 207)
STRIP_WIDTH = 110

# Where a plug-in's window hides no strip.
ASIDE = (1300, 760)

CONFIG = """<?xml version="1.0" encoding="UTF-8"?>
<Ardour><Config>
<Option name="discover-plugins-on-start" value="1"/><Option name="use-vst3" value="1"/>
<Option name="hide-dummy-backend" value="0"/><Option name="try-autostart-engine" value="1"/>
</Config><Extra><AudioMIDISetup><EngineStates>
<State backend="None (Dummy)" driver="Normal Speed" device="Silence" input-device="" output-device="" sample-rate="48000"
 buffer-size="1024" n-periods="0" input-latency="0" output-latency="0" input-channels="0" output-channels="0" active="1"
 use-buffered-io="0" midi-option="None" lm-input="" lm-output=""/>
</EngineStates></AudioMIDISetup></Extra>
<ControlProtocols><Protocol name="Open Sound Control (OSC)" active="1"/></ControlProtocols></Ardour>
"""

# The action runs what stands in a file and writes what it returns into another.
ACTION = f"""return function ()
  local file = io.open ('{COMMAND}')
  local text = file:read ('a')
  file:close ()
  local ok, result = pcall (function () return assert (load (text)) () end)
  local out = io.open ('{ANSWER}.new', 'w')
  out:write (ok and 'ok ' or 'error ', tostring (result))
  out:close ()
  os.rename ('{ANSWER}.new', '{ANSWER}')
end
"""

# A master bus, because Ardour 7 ends with an error at the first OSC message without one.
NEW_SESSION = f"""AudioEngine:set_backend ("None (Dummy)", "", "")
local session = create_session ("{SESSION}", "session", {RATE})
session:add_master_bus (ARDOUR.ChanCount (ARDOUR.DataType ("audio"), 2))
session:save_state ("")
session = nil
close_session ()
quit ()
"""


class Ardour:
    def __init__(self, programs):
        self.programs = programs
        self.messages = 0

    def configure(self):
        os.makedirs(CONFIGURATION, exist_ok=True)
        self.write(f"{CONFIGURATION}/.a{MAJOR}", "")  # else it greets a first user
        self.write(f"{CONFIGURATION}/config", CONFIG)
        # Ardour 8 keeps scripts from files unless told otherwise.
        self.write(f"{CONFIGURATION}/ui_config", '<?xml version="1.0" encoding="UTF-8"?>\n<Ardour><UI><Option '
                   'name="sandbox-all-lua-scripts" value="0"/></UI></Ardour>\n')
        state = f"scripts = {{}} scripts[1] = {{n='Orvo', s='', a={{}}, f=[==[{ACTION}]==]}}"
        self.write(f"{CONFIGURATION}/ui_scripts", '<?xml version="1.0" encoding="UTF-8"?>\n<UIScripts><ActionScript '
                   f'lua="Lua 5.3">{base64.b64encode(state.encode()).decode()}</ActionScript></UIScripts>\n')
        self.write(f"{HOME}/new.lua", NEW_SESSION)
        maker = Program("new-session", f"ardour{MAJOR}-lua", f"{HOME}/new.lua")
        self.programs.append(maker)
        maker.wait_end()

    @staticmethod
    def write(name, text):
        with open(name, "w") as file:
            file.write(text)

    def start(self):
        self.program = Program("ardour", "ardour", "-n", "-a", f"{SESSION}/session.ardour")
        self.programs.append(self.program)
        self.main = wait_for(self.main_window, "Ardour's window", 90)[0]
        wait_for(self.answers, "Ardour's answer to OSC", 60)
        self.lua("action", "Common", "show-mixer")
        common.place(self.main, 0, 0, *MAIN_SIZE)

    def main_window(self):
        self.program.check()
        for message in common.untitled():  # of the limit of locked memory
            common.close(message)
        return common.windows(MAIN)

    def answers(self):
        self.program.check()
        try:
            return self.lua("position", seconds=1)
        except Failure:
            return None

    def lua(self, function, *arguments, seconds=30):
        if os.path.exists(ANSWER):
            os.remove(ANSWER)
        words = ", ".join(f"[[{word}]]" if isinstance(word, str) else str(word) for word in arguments)
        with open(f"{os.path.dirname(os.path.abspath(__file__))}/ardour.lua") as file:
            library = file.read()
        self.write(COMMAND, f"local orvo = (function () {library} end) ()\nreturn orvo.{function} ({words})")
        liblo.send(liblo.Address("127.0.0.1", OSC_PORT), "/access_action", "LuaAction/script-1")
        wait_for(lambda: self.program.check() and os.path.exists(ANSWER), f"Ardour's {function}", seconds)
        with open(ANSWER) as file:
            kind, _, text = file.read().partition(" ")
        if kind != "ok":
            raise Failure(f"{function}: {text}")
        return text

    def find(self, strip=0):
        return common.windows(rf"^{self.tracks[strip]}: .*Orvo")

    def open(self, strip=0):
        for message in common.untitled():  # a busy machine makes Ardour tell that reading lags
            self.messages += 1
            common.close(message)
        common.focus(self.main)
        common.click_in(self.main, ENTRY[0] + strip * STRIP_WIDTH, ENTRY[1], times=2)

    def open_whole(self, strip=0):
        window = common.ask_until(lambda: self.open(strip), lambda: self.program.check() and self.find(strip),
                                  f"the window of strip {strip + 1}")[0]
        wait_for(lambda: self.program.check() and common.painted(window), f"the picture of strip {strip + 1}")
        common.place(window, *ASIDE, -1, -1)
        return window

    def beside(self, number):
        """A menu, a dialog and another instance's window in turn; and the sound goes on."""
        if number % 3 == 0:
            common.click_in(self.main, 55, 33)
            common.keys("Escape")
        elif number % 3 == 1:
            self.lua("action", "Window", "toggle-session-options-editor")
            dialog = wait_for(lambda: self.program.check() and common.windows("Session Properties"), "a dialog")[0]
            common.close(dialog)
            wait_for(lambda: self.program.check() and not common.windows("Session Properties"), "the dialog to close")
        else:
            for shown in self.find():  # a window that came without its place lies over the strips
                common.place(shown, *ASIDE, -1, -1)
            window = self.open_whole(1)
            common.close(window)
            wait_for(lambda: self.program.check() and not self.find(1), "the second window to close")
        if number % 8 == 0:
            self.lua("play")

    def quit(self):
        self.lua("stop")
        self.lua("save")
        liblo.send(liblo.Address("127.0.0.1", OSC_PORT), "/access_action", "Common/Quit")
        self.program.quit_cleanly(60)

    def export(self, name):
        """With Ardour's own program, which loads the saved session and runs faster than real time."""
        target = f"{common.OUT}/{name}.wav"
        program = Program("export", f"ardour{MAJOR}-export", "-b", "float", "-o", target, SESSION, "session")
        self.programs.append(program)
        program.quit_cleanly(120)
        return self.on_time(soundfile.read(target, always_2d=True)[0])

    def on_time(self, sound):
        """The export program of Ardour 8 leaves the tracks' latency at the start; what it cut at the end is silent."""
        late = self.latency if MAJOR == "8" else 0
        return numpy.concatenate([sound[late:], numpy.zeros((late, 2))])


def drive(result, programs):
    host = Ardour(programs)
    text = common.run(*common.PREFIX, "ardour", "--version")
    result.version = (re.search(r"Ardour\s*v?(\d+\.\d+)", text) or re.search(r"(\d+\.\d+)", text)).group(1)
    host.configure()
    host.start()
    result.did("scan")

    for number in range(8):
        copy = f"{HOME}/track{number + 1}.wav"
        os.link(INPUT, copy)
        host.lua("import", copy)
    host.tracks = [f"track{number + 1}" for number in range(8)]
    for track in host.tracks[:2]:
        host.lua("insert", track)
    for track in host.tracks[1:]:
        host.lua("mute", track)
    host.lua("play")
    result.did("insert")

    window = host.open_whole()
    rounds.first_look(window, result)
    common.close(window)
    wait_for(lambda: not host.find(), "the window to close")
    rounds.turn(host.program, host.find, host.open, common.close, host.beside, result)

    for track in host.tracks[2:]:
        host.lua("insert", track)
    opened = [host.open_whole(strip) for strip in range(8)]
    common.picture("eight")
    for window in opened:
        common.close(window)
    wait_for(lambda: host.program.check() and not common.windows("Orvo"), "eight windows to close")
    result.did("eight instances with windows")
    host.latency = int(host.lua("latency", "track1"))
    result.saw(f"latency {host.latency} frames")
    host.quit()
    result.did("save and quit")

    largest = common.difference(host.export("export"), common.reference("expected", "oversampling=4x"), "export")
    result.did("export")
    result.saw(f"sound as orvo-host's but for {largest:.2g}")

    host.start()
    common.close(host.open_whole())
    say(host.lua("automate", "track1", "Input Gain", 0.5, 0.75, RATE * SECONDS // 2))
    host.quit()
    result.did("load")
    check_automation(host, result)
    if host.messages:
        result.saw(f"{host.messages} messages of the host's that were closed")


def check_automation(host, result):
    """Half of the sound without gain and half with; blocks around the change belong to neither."""
    sound = host.export("automated")
    half, edge = RATE * SECONDS // 2, RATE // 10
    quiet = common.reference("expected", "oversampling=4x")
    loud = common.reference("expected-loud", "oversampling=4x", "in_gain=9")
    low = common.difference(sound[:half - edge], quiet[:half - edge], "before the automation's step")
    high = common.difference(sound[half + edge:], loud[half + edge:], "after the automation's step")
    result.did("automation")
    result.saw(f"automated halves as orvo-host's but for {max(low, high):.2g}")


if __name__ == "__main__":
    common.main("Ardour", drive)
