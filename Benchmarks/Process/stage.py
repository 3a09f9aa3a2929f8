"""Where the programs are measured: a private desktop, a panel, and a service whose state is at rest."""
import contextlib
import time

from support.desktop import VirtualDesktop
from support.paths import MENU
from support.polling import eventually
from support.process import Process
from support.programs import Service, service_state
from support.trays import StatusNotifierHost, XEmbedTray

ICON_LIMIT = 30  # seconds that a program may take to show its icon
SETTLING = 20  # seconds from the icon on: what a program does once is over, its first repeated work has been


class Stage(contextlib.ExitStack):
    """tray: "notifier" or "xembed"."""

    def __init__(self, folder, tray):
        super().__init__()
        self._folder = folder
        self._tray = tray

    def __enter__(self):
        super().__enter__()
        self._desktop = VirtualDesktop()
        self.callback(self._desktop.stop)
        self._service = Service(self._desktop, self._folder / "service.log", "settled")
        self.callback(self._service.kill)
        if self._tray == "notifier":
            panel = StatusNotifierHost(self._desktop, self._folder / "panel.log")
            self._icons = lambda _: panel.items()
        else:
            panel = XEmbedTray(self._desktop, self._folder / "trayer.log")
            self._icons = panel.icons
        self.callback(panel.stop)
        return self

    @contextlib.contextmanager
    def running(self, program):
        """The program with its icon up, and the seconds from its start to that."""
        process = Process([program], self._desktop.environment, self._folder / f"{program.name}.log")
        try:
            while not self._icons(program.name):
                if not process.running:
                    raise SystemExit(f"{program} ended with {process.popen.returncode}:\n{process.output()}")
                if time.monotonic() > process.started_at + ICON_LIMIT:
                    raise SystemExit(f"{program} showed no icon within {ICON_LIMIT} s:\n{process.output()}")
                time.sleep(0.0005)
            yield process, time.monotonic() - process.started_at
        finally:
            process.kill()  # the service stays: nobody asked it to end
            eventually(lambda: not self._icons(program.name), f"the icon of {program.name} goes")

    def await_rest(self, process):
        """Returns when the program has nothing left to do but its repeated work."""
        if process.popen.args[0] == str(MENU):
            eventually(lambda: service_state(self._desktop) == "online", "the application is online", 30)
        time.sleep(SETTLING)
