"""A hand on the mouse and keyboard of a display and an eye on what is painted there, without a process in between."""
import dataclasses
import select
import time

from Xlib import X, XK, display
from Xlib.ext import xtest
from Xlib.protocol import event

ALL_PLANES = 0xFFFFFFFF
PING_PAUSE, PING_LIMIT = 0.005, 10  # seconds
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

    def answer_times(self, window, seconds):
        """Seconds that each ping of a window manager took to come back from the program of the window."""
        protocols, ping = (self._display.intern_atom(name) for name in ("WM_PROTOCOLS", "_NET_WM_PING"))
        self._root.change_attributes(event_mask=X.SubstructureNotifyMask)
        deadline, times = time.monotonic() + seconds, []
        while (began := time.monotonic()) < deadline:
            number = len(times) + 1
            message = event.ClientMessage(window=window, client_type=protocols, data=(32, (ping, number, window, 0, 0)))
            self._display.create_resource_object("window", window).send_event(message)
            self._display.flush()
            while not self._has_come_back(protocols, number):
                if not select.select([self._display], [], [], PING_LIMIT)[0]:
                    raise SystemExit(f"the program has not answered for {PING_LIMIT} s")
            times.append(time.monotonic() - began)
            time.sleep(PING_PAUSE)
        self._root.change_attributes(event_mask=X.NoEventMask)
        return times

    def _has_come_back(self, protocols, number):
        come = [self._display.next_event() for _ in range(self._display.pending_events())]
        return any(one.type == X.ClientMessage and one.client_type == protocols and one.data[1][1] == number
                   for one in come)

    def _painted(self):
        come = [self._display.next_event() for _ in range(self._display.pending_events())]
        return [Area(one.area.x, one.area.y, one.area.width, one.area.height)
                for one in come if one.type == self._damage_notify]
