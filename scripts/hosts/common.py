"""What the drivers of all hosts share: processes, windows, sounds and the result."""

import glob
import os
import re
import signal
import subprocess
import sys
import time
import traceback

import numpy
import soundfile

HOME = os.environ["HOME"]
OUT = os.environ["ORVO_HOST_OUT"]  # what stays: logs, pictures, sounds, the row of the table
ROUNDS = int(os.environ["ORVO_HOST_ROUNDS"])
RENDER = os.environ["ORVO_HOST_RENDER"]  # the program orvo-host
MODULE = os.environ["ORVO_HOST_MODULE"]
PREFIX = os.environ.get("ORVO_HOST_PREFIX", "").split()  # what enters another system's root, if the host lives there

RATE = 48000
SECONDS = 8
INPUT = f"{HOME}/input.wav"

# The button "4x" in the plug-in's window at its first size.
FOUR_TIMES = (70 / 1068, 570 / 800)
# and the curve's menu
CURVE_MENU = (326 / 1068, 625 / 800)

# A window that shows nothing, or only the host's frame, has far fewer.
LEAST_COLOURS = 150


class Failure(Exception):
    """What makes the run of a host a failure; its text goes into the table."""


class Ended(Failure):
    """A process that should run and does not."""


def say(text):
    print(f"    {time.strftime('%H:%M:%S')} {text}", flush=True)


def wait_for(condition, what, seconds=30):
    """The first true result of the condition."""
    end = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise Failure(f"waited {seconds} s for {what}")
        time.sleep(0.05)


def ask_until(ask, condition, what, tries=4, seconds=5):
    """The condition's first true result, asking again: a host takes a double click soon after another for a triple."""
    for number in range(tries):
        ask()
        try:
            return wait_for(condition, what, seconds if number + 1 < tries else 30)
        except Ended:
            raise
        except Failure:
            if number + 1 == tries:
                raise


def run(*command, check=False, **options):
    return subprocess.run(command, capture_output=True, text=True, check=check, **options).stdout


class Program:
    """A host's process: its log, and whether it still runs."""

    def __init__(self, name, *command, env=None):
        self.name = name
        self.log_name = f"{OUT}/{name}.log"
        self.log = open(self.log_name, "a")
        self.process = subprocess.Popen([*PREFIX, *command], stdout=self.log, stderr=subprocess.STDOUT,
                                        stdin=subprocess.DEVNULL, start_new_session=True,
                                        env={**os.environ, **(env or {})})

    def check(self):
        status = self.process.poll()
        if status is not None:
            raise Ended(f"{self.name} ended by itself, {describe(status)}")
        return True

    def wait_end(self, seconds=30):
        try:
            return self.process.wait(seconds)
        except subprocess.TimeoutExpired:
            raise Failure(f"{self.name} did not quit within {seconds} s") from None

    def quit_cleanly(self, seconds=30):
        status = self.wait_end(seconds)
        if status != 0:
            raise Failure(f"{self.name} quit with {describe(status)}")

    def stop(self):
        for number in (signal.SIGTERM, signal.SIGKILL):
            if self.process.poll() is None:
                os.killpg(self.process.pid, number)
                try:
                    self.process.wait(5)
                except subprocess.TimeoutExpired:
                    pass


def describe(status):
    """An exit status in words; shells add 128 to a signal's number."""
    number = -status if status < 0 else status - 128
    if number > 0:
        return f"killed by {signal.Signals(number).name}"
    return f"exit status {status}"


def x_errors():
    pattern = re.compile(r"Bad(Window|Drawable|Match|Value|Access|Alloc|Pixmap|Atom|Cursor|GC|Length)"
                         r"|X Error|X Window System error|X_\w+ error", re.IGNORECASE)
    return [line.strip() for name in sorted(glob.glob(f"{OUT}/*.log"))
            for line in open(name, errors="replace") if pattern.search(line)]


def leftovers(programs):
    """Processes of this run, known by its home, that nobody ended; not this one, its parents, and what it still runs."""
    own = {program.process.pid for program in programs if program.process.poll() is None}
    process = os.getpid()
    while process > 1:
        own.add(process)
        with open(f"/proc/{process}/stat") as stat:
            process = int(stat.read().rsplit(")", 1)[1].split()[1])
    found = []
    for folder in glob.glob("/proc/[0-9]*"):
        number = int(folder[6:])
        try:
            with open(f"{folder}/environ", "rb") as file:
                ours = f"HOME={HOME}".encode() in file.read().split(b"\0")
            with open(f"{folder}/comm") as file:
                name = file.read().strip()
        except OSError:
            continue
        # The screen and its manager, and the host's message bus, outlast the host by design.
        if ours and number not in own and name not in ("Xvfb", "openbox", "xvfb-run", "dbus-daemon", "dbus-launch"):
            found.append(name)
    return found


# --- windows

def windows(title):
    """The ids of the managed windows whose title matches the pattern."""
    found = []
    for line in run("wmctrl", "-l").splitlines():
        parts = line.split(None, 3)
        if len(parts) == 4 and re.search(title, parts[3]):
            found.append(parts[0])
    return found


def untitled():
    """The ids of the managed windows without a title: messages, in Ardour."""
    return [parts[0] for parts in (line.split(None, 3) for line in run("wmctrl", "-l").splitlines()) if len(parts) == 3]


def geometry(window):
    text = run("xwininfo", "-id", window)
    values = [re.search(rf"{key}:\s+(-?\d+)", text)
              for key in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]
    return tuple(int(value.group(1)) for value in values) if all(values) else None


def place(window, x, y, width, height):
    run("wmctrl", "-ir", window, "-b", "remove,maximized_vert,maximized_horz")
    run("wmctrl", "-ir", window, "-e", f"0,{x},{y},{width},{height}")


def close(window):
    run("wmctrl", "-ic", window)


def focus(window):
    run("wmctrl", "-ia", window)


def keys(*names):
    run("xdotool", "key", *names)


def click(x, y, button=1, times=1):
    run("xdotool", "mousemove", str(int(x)), str(int(y)), "click", "--repeat", str(times), "--delay", "60", str(button))


def click_in(window, x, y, button=1, times=1):
    area = geometry(window)
    if not area:
        raise Failure(f"the window {window} is gone")
    left, top = area[:2]
    click(left + x, top + y, button, times)


def picture(name, window="root"):
    run("import", "-silent", "-window", window, f"{OUT}/{name}.png")
    return f"{OUT}/{name}.png"


def pointer_is_held():
    """Whether a click waits for the window manager: it gets each click first and passes it on, and until then the
    pointer stands still and the program below knows nothing of the click."""
    before = run("xdotool", "getmouselocation")
    run("xdotool", "mousemove_relative", "3", "0", "sleep", "0.2")
    return run("xdotool", "getmouselocation") == before


def scene():
    """What a picture does not show: windows, the focus, the pointer and what lies under it."""
    with open(f"{OUT}/failure.txt", "w") as file:
        file.write(f"The window manager holds a click: {pointer_is_held()}\n")
        for command in (("wmctrl", "-l", "-G"), ("xdotool", "getwindowfocus"), ("xdotool", "getmouselocation"),
                        ("xwininfo", "-root", "-tree")):
            file.write(f"{' '.join(command)}\n{run(*command)}\n")


def colours(window):
    """0 if there is no picture: once the window is gone, import waits for somebody to click on another."""
    try:
        data = subprocess.run(["import", "-silent", "-window", window, "png:-"], capture_output=True, timeout=20).stdout
    except subprocess.TimeoutExpired:
        return 0
    text = subprocess.run(["identify", "-format", "%k", "-"], input=data, capture_output=True, text=False).stdout
    return int(text or 0)


def plugin_area(window):
    """The place on the screen of the plug-in's own X window inside the host's: the lowest that is large enough."""
    best = None
    for match in re.finditer(r"^\s+(0x[0-9a-f]+).*?\s(\d+)x(\d+)\+-?\d+\+-?\d+\s+\+(-?\d+)\+(-?\d+)$",
                             run("xwininfo", "-tree", "-id", window), re.MULTILINE):
        width, height, x, y = (int(value) for value in match.groups()[1:])
        if width >= 500 and height >= 350:
            best = (x, y, width, height)
    return best


def shown():
    """All windows that the screen shows, also menus, which no manager lists. xdotool gives up where one goes meanwhile."""
    for _ in range(20):
        search = subprocess.run(("xdotool", "search", "--onlyvisible", "--name", ".*"), capture_output=True, text=True)
        if search.returncode == 0:
            return set(search.stdout.split())
    raise Failure("xdotool cannot list the windows")


def rest(window):
    """Until the window neither moves nor grows: hosts place it once more when it is there already."""
    looks = []

    def same():
        looks.append(plugin_area(window))
        time.sleep(0.15)
        return len(looks) > 3 and looks[-1] and len(set(looks[-4:])) == 1
    wait_for(same, "the window to rest")


def painted(window):
    return plugin_area(window) and colours(window) > LEAST_COLOURS


def click_in_plugin(window, spot):
    x, y, width, height = plugin_area(window)
    click(x + spot[0] * width, y + spot[1] * height)


# --- sounds

def write_input():
    """Eight seconds of stereo with peaks of 6 dB above full scale, so that Orvo clips as it comes. Both ends are silent,
    because hosts fade their regions."""
    time_line = numpy.arange(RATE * SECONDS) / RATE
    noise = numpy.random.default_rng(1).normal(0, 0.1, (len(time_line), 2))
    swell = 0.2 + 1.6 * (time_line % 1)
    left = swell * numpy.sin(2 * numpy.pi * 110 * time_line)
    right = swell * numpy.sin(2 * numpy.pi * 523.25 * time_line)
    sound = numpy.stack([left, right], 1) + noise
    sound[:RATE // 10] = sound[-RATE // 10:] = 0
    soundfile.write(INPUT, sound, RATE, subtype="FLOAT")


def reference(name, *settings):
    """The input as orvo-host renders it with these settings."""
    target = f"{OUT}/{name}.wav"
    arguments = [word for setting in settings for word in ("--set", setting)]
    subprocess.run([RENDER, "render", INPUT, target, "--plugin", MODULE, "--bits", "float", "--force", *arguments],
                   check=True, stdout=subprocess.DEVNULL)
    return soundfile.read(target, always_2d=True)[0]


def difference(sound, expected, what):
    """The largest difference between the common frames; where the shift is wrong, the right one is named."""
    length = min(len(sound), len(expected))
    if length < len(expected) - RATE // 10:
        raise Failure(f"{what}: {length} of {len(expected)} frames")
    largest = float(numpy.max(numpy.abs(sound[:length] - expected[:length])))
    if largest > 1e-4:
        middle = expected[RATE:2 * RATE, 0]
        shifts = [(numpy.max(numpy.abs(sound[RATE + shift:2 * RATE + shift, 0] - middle)), shift)
                  for shift in range(-2048, 2049) if RATE + shift >= 0 and 2 * RATE + shift <= len(sound)]
        best, shift = min(shifts)
        raise Failure(f"{what}: differs by {largest:.3g}; shifted by {shift} frames by {best:.3g}")
    say(f"{what}: largest difference {largest:.3g}")
    return largest


# --- the result

class Result:
    """A host's row: what was done, what was seen."""

    def __init__(self, host):
        self.host = host
        self.version = "?"
        self.done = []
        self.seen = []
        self.failed = []

    def did(self, text):
        say(f"done: {text}")
        self.done.append(text)

    def saw(self, text):
        self.seen.append(text)

    def write(self):
        if not self.failed:
            self.seen.insert(0, "passed")
        with open(f"{OUT}/row.md", "w") as file:
            seen = [*(f"**{text}**" for text in self.failed), *self.seen]
            cells = (self.host, self.version, "; ".join(self.done), "; ".join(seen))
            file.write("| " + " | ".join(cell.replace("|", "/") for cell in cells) + " |\n")


def main(name, drive):
    """Runs a host's driver, whatever becomes of it, and leaves the row."""
    result = Result(name)
    programs = []
    try:
        write_input()
        drive(result, programs)
    except Failure as failure:
        result.failed.append(str(failure))
    except Exception as error:  # a fault of the driver is a failed run too
        traceback.print_exc()
        result.failed.append(f"the driver failed: {error!r}")
    if result.failed:
        picture("failure")
        scene()
    else:
        try:
            wait_for(lambda: not leftovers(programs), "the host's last process", 10)
        except Failure:
            result.failed.append("left over: " + ", ".join(leftovers(programs)))
    for program in reversed(programs):
        program.stop()
    errors = x_errors()
    if errors:
        result.failed.append(f"X errors: {len(errors)}, the first: {errors[0][:120]}")
    result.write()
    for text in result.failed:
        say(f"FAILED: {text}")
    sys.exit(1 if result.failed else 0)
