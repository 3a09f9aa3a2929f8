"""A private desktop with a tray, the service on a lab network and the application in it, its popover at hand."""
import contextlib
import time

from display import Area, HandAndEye
from support.desktop import VirtualDesktop
from support.polling import eventually
from support.process import Process
from support.programs import PORT, POPOVER_WIDTH, Application, Service
from support.trays import XEmbedTray

SETTLING = 2.0  # seconds from the first answer of the service on: what follows a start is over
POINTER_REST = 0.1  # seconds between the pointer's arrival and the click
BEHIND_FRONT = 43201  # the service's port while something stands before it
PART_WIDTH = 100  # pixels of the popover that are looked at, over its whole height: the names of the rows
WATCH = 1.0  # seconds after a click
SAME, CHANGED = 0.97, 0.5  # shares of equal pixels: what moves in an open popover is less, what appears is more
SHADOW = 24  # pixels on each side under a compositing manager


class PopoverStage(contextlib.ExitStack):
    """lab: "demo", a name of Tests/EndToEnd/labs or a file. make_front: called with the service's port, begins to answer
    in its place."""

    def __init__(self, folder, lab, is_blended=False, make_front=None):
        super().__init__()
        self._folder, self._lab, self._is_blended, self._make_front = folder, lab, is_blended, make_front
        self._part = None
        self._margin = SHADOW if is_blended else 0
        self._width = POPOVER_WIDTH + 2 * self._margin

    def __enter__(self):
        super().__enter__()
        self.desktop = VirtualDesktop()
        self.callback(self.desktop.stop)
        self.hand = HandAndEye(self.desktop.environment["DISPLAY"])
        self.callback(self.hand.close)
        if self._is_blended:
            manager = Process(["xcompmgr"], self.desktop.environment, self._folder / "xcompmgr.log")
            self.callback(manager.kill)
        self._tray = XEmbedTray(self.desktop, self._folder / "trayer.log")
        self.callback(self._tray.stop)
        service = Service(self.desktop, self._folder / "service.log", self._lab, BEHIND_FRONT if self._make_front else PORT)
        self.callback(service.kill)
        self.front = self._make_front(BEHIND_FRONT) if self._make_front else None
        if self.front:
            self.callback(self.front.stop)
        return self

    @contextlib.contextmanager
    def application(self, **environment):
        """At rest, its popover never opened."""
        application = Application(self.desktop, self._folder / "menu.log", **environment)
        try:
            application.await_state("online", 20)
            self._icon = self._tray.await_icon()
            time.sleep(SETTLING)
            yield application
            if not application.running:
                raise SystemExit(f"the application ended with {application.popen.returncode}:\n{application.output()}")
        finally:
            application.kill()
            eventually(lambda: not self._tray.icons("veranox-menu"), "the icon goes")

    def open(self):
        """Clicks on the icon. Seconds from there to the popover's first picture, as it is to stay."""
        self._rest_on_icon()
        before = self.hand.look(self._part)
        began = self.hand.click()
        looks = self.hand.watch(self._part, WATCH)
        if not looks or looks[-1].likeness(before) > CHANGED:
            raise SystemExit(f"no popover was painted within {WATCH:g} s")
        return next(look.at for look in looks if look.likeness(looks[-1]) > SAME) - began

    def show(self):
        """Clicks on the icon."""
        self._rest_on_icon()
        self.hand.click()

    def find(self, application):
        """Opens and closes the popover once, to learn where it stands."""
        self.show()
        popover = eventually(lambda: application.windows(self._width), "the popover")[0]
        self._part = Area(
            popover.x + popover.width // 8, popover.y + self._margin, PART_WIDTH, popover.height - 2 * self._margin)
        self.close(application)

    def _rest_on_icon(self):
        self.hand.move(self._icon.centre)
        time.sleep(POINTER_REST)

    def close(self, application):
        """By keyboard."""
        self.await_popover(application)
        self.hand.press("Escape")
        eventually(lambda: not application.windows(self._width), "the popover closes")

    def await_popover(self, application):
        """The popover's window, once it has the keyboard."""
        return eventually(lambda: [window for window in application.windows(self._width)
                                   if window.id == self.desktop.focused_window()], "the popover has the keyboard")[0]
