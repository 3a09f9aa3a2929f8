"""A hand on the mouse and keyboard of a display and an eye on what is painted there, without a process in between."""
import dataclasses
import select
import time

from Xlib import X, XK, display
from Xlib.ext import xtest

ALL_PLANES = 0xFFFFFFFF
EACH_PAINTING = 0  # DamageReportRawRectangles


@dataclasses.dataclass(frozen=True)
class Area:
    x: int
    y: int
    width: int
    height: int

    def meets(self, other):
        return (self.x < other.x + other.width and other.x < self.x + self.width and
                self.y < other.y + other.height and other.y < self.y + self.height)


@dataclasses.dataclass(frozen=True)
class Look:
    at: float  # when the picture had arrived here, so that it was on the screen before
    pixels: memoryview

    def likeness(self, other):
        """The share of pixels that are the same."""
        return sum(map(int.__eq__, self.pixels, other.pixels)) / len(self.pixels)


class HandAndEye:
    """A connection of its own to the display. Times are those of time.monotonic()."""

    def __init__(self, name):
        self._display = display.Display(name)
        self._root = self._display.screen().root
        self._display.damage_query_version()
        self._damage_notify = self._display.extension_event.DamageNotify
        self._root.damage_create(EACH_PAINTING)
        self._display.sync()

    def close(self):
        self._display.close()

    def move(self, point):
        xtest.fake_input(self._display, X.MotionNotify, x=point[0], y=point[1])
        self._display.sync()

    def click(self):
        """Presses and lets go where the pointer is. The time just before."""
        self._display.sync()
        self._painted()
        began = time.monotonic()
        xtest.fake_input(self._display, X.ButtonPress, 1)
        xtest.fake_input(self._display, X.ButtonRelease, 1)
        self._display.flush()
        return began

    def press(self, key):
        code = self._display.keysym_to_keycode(XK.string_to_keysym(key))
        xtest.fake_input(self._display, X.KeyPress, code)
        xtest.fake_input(self._display, X.KeyRelease, code)
        self._display.sync()

    def look(self, area):
        """What stands on the screen there."""
        data = self._root.get_image(area.x, area.y, area.width, area.height, X.ZPixmap, ALL_PLANES).data
        return Look(time.monotonic(), memoryview(data).cast("I"))

    def watch(self, area, seconds):
        """A look whenever something was painted there."""
        deadline, looks = time.monotonic() + seconds, []
        while (left := deadline - time.monotonic()) > 0:
            if not self._display.pending_events():
                select.select([self._display], [], [], left)
            if any(painted.meets(area) for painted in self._painted()):
                looks.append(self.look(area))
        return looks

    def _painted(self):
        come = [self._display.next_event() for _ in range(self._display.pending_events())]
        return [Area(one.area.x, one.area.y, one.area.width, one.area.height)
                for one in come if one.type == self._damage_notify]
