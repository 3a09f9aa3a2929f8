"""A desktop of its own: display, window manager, session bus, private folders; with a hand on mouse and keyboard."""
import contextlib
import json
import re
import subprocess

from .paths import VIRTUAL_DESKTOP
from .screen import Screen

# Runs inside: tells its surroundings, then holds the desktop open until the other end of the pipe is closed.
HOLDER = "import json, os, sys; print(json.dumps(dict(os.environ)), flush=True); sys.stdin.read()"


class VirtualDesktop:
    """Stands from construction to stop(). `options` are those of Tests/Support/virtual-desktop."""

    def __init__(self, *options):
        self._holder = subprocess.Popen(
            [VIRTUAL_DESKTOP, *options, "--", "/usr/bin/python3", "-c", HOLDER],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        announced = self._holder.stdout.readline()
        if not announced:
            raise AssertionError(f"no virtual desktop came up; exit status {self._holder.wait()}")
        self.environment = json.loads(announced)
        self._screen = Screen(self.environment["DISPLAY"]) if self.has_display else None

    @property
    def has_display(self):
        return "DISPLAY" in self.environment

    def stop(self):
        if self._screen:
            self._screen.close()
        self._holder.stdin.close()
        self._holder.wait(20)
        self._holder.stdout.close()

    def run(self, *command, within=20):
        """Runs a command inside to its end."""
        return subprocess.run(
            [str(word) for word in command], env=self.environment, stdin=subprocess.DEVNULL, capture_output=True,
            text=True, timeout=within)

    def ask(self, *command):
        """What a command that has to succeed prints."""
        answer = self.run(*command)
        if answer.returncode != 0:
            raise AssertionError(f"{command} ended with {answer.returncode}: {answer.stderr}")
        return answer.stdout

    def screenshot(self, file, window=None):
        crop = ["-crop", f"{window.width}x{window.height}+{window.x}+{window.y}", "+repage"] if window else []
        self.ask("import", "-window", "root", *crop, file)

    def colours(self, window):
        """The colours (red, green, blue) on the screen where a window stands."""
        crop = f"{window.width}x{window.height}+{window.x}+{window.y}"
        return self._colours("import", "-window", "root", "-crop", crop, "+repage")

    def file_colours(self, file):
        """The opaque colours of an image file."""
        return self._colours("convert", file)

    def pixel(self, file, x, y):
        """The colour of one pixel of an image file."""
        place = f"%[fx:round(255*p{{{x},{y}}}.r)] %[fx:round(255*p{{{x},{y}}}.g)] %[fx:round(255*p{{{x},{y}}}.b)]"
        return tuple(int(word) for word in self.ask("convert", file, "-format", place, "info:").split())

    def _colours(self, *source):
        histogram = self.ask(*source, "-depth", "8", "-format", "%c", "histogram:info:-")
        return {(int(red), int(green), int(blue))
                for red, green, blue, alpha in re.findall(r"\((\d+),(\d+),(\d+)(?:,(\d+))?\)", histogram)
                if alpha in ("", "255")}

    def click(self, point, button=1):
        self.ask("xdotool", "mousemove", *point, "click", button)

    def press(self, key):
        self.ask("xdotool", "key", key)

    def clipboard(self):
        """The text in the clipboard; empty while it holds none."""
        return self.run("xclip", "-selection", "clipboard", "-out").stdout

    def focused_window(self):
        """The id of the window that has the keyboard; 0 while none has."""
        answer = self.run("xdotool", "getwindowfocus", "-f")
        return int(answer.stdout) if answer.returncode == 0 else 0

    @contextlib.contextmanager
    def held(self, key):
        self.ask("xdotool", "keydown", key)
        try:
            yield
        finally:
            self.ask("xdotool", "keyup", key)

    def windows(self, class_name):
        """The windows of this class that can be seen, those inside other windows included."""
        return self._screen.windows(class_name)
