"""orvo-host with the plug-in's window open, driven over its standard streams and with xdotool's real events."""

import queue
import subprocess
import threading
import time

PATIENCE = 60.0  # seconds until something that should happen is given up, for sanitizers on a busy machine too


class Host:
    """One running program. Positions are pixels of the plug-in's view, which fills the window, before it is scaled."""

    def __init__(self, program, *options, scale=1.0):
        self.scale = scale
        self.process = subprocess.Popen(
            [program, "open", "--script", "--scale", str(scale), *options],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        self.lines = queue.Queue()
        self.events = []  # what the module told its host since `forget`
        threading.Thread(target=self._read, daemon=True).start()
        self.window = self._await("ready").split()[1]

    def _read(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip("\n"))
        self.lines.put(None)

    def _next(self, deadline):
        try:
            line = self.lines.get(timeout=max(0.0, deadline - time.monotonic()))
        except queue.Empty:
            raise AssertionError(f"nothing more came; so far: {self.events}") from None
        if line is None:
            raise AssertionError(f"the host ended with status {self.process.wait()}")
        return line

    def _await(self, *words):
        """The next line that begins with one of the words. Events on the way are kept."""
        deadline = time.monotonic() + PATIENCE
        while True:
            line = self._next(deadline)
            if line.split(" ")[0] in words:
                return line
            self.events.append(tuple(line.split(" ")))

    def ask(self, command):
        self.process.stdin.write(command + "\n")
        answer = self._await("ok", "failed")
        if answer.startswith("failed"):
            raise AssertionError(f"{command}: {answer}")
        return answer[3:]

    def reopen(self, while_closing=lambda: None):
        self.ask("close")
        while_closing()
        self._await("closed")
        self.ask("open")
        self.window = self.ask("window").split()[0]

    def size(self):
        return self.ask("window").split()[1]

    def text(self, parameter):
        """The parameter's value as its host shows it."""
        return self.ask("get " + parameter).split(" ", 1)[1]

    def await_text(self, parameter, expected):
        self.await_that(lambda: self.text(parameter) == expected, f"{parameter} is {expected}")

    def look(self, x, y, width, height):
        """Equal for equal pixels in the area, and for no others."""
        return self.ask("look " + " ".join(str(round(edge * self.scale)) for edge in (x, y, width, height)))

    def comes(self, condition, seconds=PATIENCE):
        """Whether the condition holds within that time, or sooner."""
        deadline = time.monotonic() + seconds
        while not condition():
            if time.monotonic() >= deadline:
                return False
        return True

    def await_that(self, condition, what):
        assert self.comes(condition), "never: " + what

    def await_other(self, area, old):
        """The area's look once it is not `old`."""
        self.await_that(lambda: self.look(*area) != old, f"the pixels of {area} change")
        return self.look(*area)

    def await_still(self, area, seconds=0.4):
        """The area's look once it has stood for so long: longer than between two frames, and than a new menu
        takes a click for a slip."""
        deadline = time.monotonic() + PATIENCE
        look, since = None, 0.0
        while look is None or time.monotonic() < since + seconds:
            now = self.look(*area)
            if now != look:
                look, since = now, time.monotonic()
            assert time.monotonic() < deadline, f"never: the pixels of {area} come to rest"
        return look

    def await_gesture(self, parameter):
        """What the module told its host up to the end of a gesture on the parameter, and forgets it."""
        deadline = time.monotonic() + PATIENCE
        while ("end", parameter) not in self.events:
            self.events.append(tuple(self._next(deadline).split(" ")))
        events, self.events = self.events, []
        return events

    def pointer(self, *actions):
        """A pair moves the pointer there; everything else is a word of xdotool's."""
        words = []
        for action in actions:
            if isinstance(action, tuple):
                words += ["mousemove", "--window", self.window, *(str(round(place * self.scale)) for place in action)]
            else:
                words += action.split(" ")
        subprocess.run(["xdotool", *words], check=True)

    def click(self, position, button=1):
        self.pointer(position, f"click {button}")

    def type(self, text):
        subprocess.run(["xdotool", "type", "--delay", "5", "--", text], check=True)

    def key(self, *names):
        subprocess.run(["xdotool", "key", "--delay", "2", *names], check=True)

    def pointer_place(self):
        """On the screen."""
        shown = subprocess.run(["xdotool", "getmouselocation"], check=True, capture_output=True, text=True).stdout
        return tuple(int(part.split(":")[1]) for part in shown.split()[:2])

    def quit(self):
        self.ask("quit")
        status = self.process.wait(PATIENCE)
        assert status == 0, f"the host ended with status {status}"
