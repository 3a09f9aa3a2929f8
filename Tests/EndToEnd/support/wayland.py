"""A Wayland desktop that nobody sees: the compositor sway without a screen, driven by its own command line."""
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from .polling import eventually
from .process import Process

CONFIGURATION = """
xwayland disable
output HEADLESS-1 resolution 1280x800
"""
WITHOUT_HARDWARE = {"WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"}
LONG = 3_600_000  # milliseconds: longer than any test
ACCOUNT = 61744  # nobody's: of those that systemd gives to passing services
AS_THE_ACCOUNT = ["setpriv", f"--reuid={ACCOUNT}", f"--regid={ACCOUNT}", "--clear-groups", "--no-new-privs"]


class Compositor:
    """Stands from construction to stop(), in a virtual desktop without a display."""

    def __init__(self, desktop, folder):
        self._desktop, self._keyboard = desktop, None
        as_a_person = self._person()
        # A folder of its own, which the account of the compositor can use.
        self._runtime = pathlib.Path(tempfile.mkdtemp(prefix="veranox-wayland-"))
        configuration = self._runtime / "sway.conf"
        configuration.write_text(CONFIGURATION)
        if as_a_person:
            os.chown(self._runtime, ACCOUNT, ACCOUNT)
        surroundings = {"HOME": str(self._runtime), "XDG_RUNTIME_DIR": str(self._runtime)}
        self._sway = Process([*as_a_person, "sway", "--config", configuration],
                             desktop.environment | WITHOUT_HARDWARE | surroundings, folder / "sway.log")
        try:
            display, control = eventually(self._sockets, "the compositor's sockets")[0]
        except BaseException:
            self.stop()
            raise
        # For whatever is started there from now on.
        desktop.environment |= {"WAYLAND_DISPLAY": str(display), "SWAYSOCK": str(control)}
        # A keyboard that nobody touches: a program listens to the one of its desktop only once it has heard of it.
        self._keyboard = Process(["wtype", "-s", str(LONG), "-k", "F1"], desktop.environment, folder / "keyboard.log")
        eventually(lambda: "keyboard" in desktop.ask("swaymsg", "--raw", "-t", "get_inputs"), "a keyboard")

    @staticmethod
    def _person():
        """The words that start a program as somebody else: sway does not start as root."""
        if os.geteuid() != 0:
            return []
        tried = subprocess.run([*AS_THE_ACCOUNT, "true"], capture_output=True, text=True)
        if tried.returncode != 0:
            raise unittest.SkipTest(
                f"the compositor does not run as root, and root runs nothing as another here: {tried.stderr.strip()}")
        return AS_THE_ACCOUNT

    def _sockets(self):
        if not self._sway.running:
            raise AssertionError(f"sway ended with {self._sway.popen.returncode}:\n{self._sway.output()}")
        displays = [path for path in self._runtime.glob("wayland-*") if path.suffix != ".lock"]
        return list(zip(displays, self._runtime.glob("sway-ipc.*.sock")))

    def command(self, words):
        """What the configuration file can say, at once."""
        self._desktop.ask("swaymsg", words)

    def windows(self):
        """What the compositor knows of each window: `app_id`, `name`, `type`, `rect`, `focused` and more."""
        return list(self._windows_in(json.loads(self._desktop.ask("swaymsg", "--raw", "-t", "get_tree"))))

    def await_window(self):
        """The only window, once it has the keyboard."""
        return eventually(lambda: [window for window in self.windows() if window["focused"]], "a window")[0]

    def await_no_window(self):
        eventually(lambda: not self.windows(), "no window")

    def press(self, key):
        self._desktop.ask("wtype", "-k", key)

    def screenshot(self, file):
        self._desktop.ask("grim", file)

    def stop(self):
        if self._keyboard:
            self._keyboard.kill()
        self._sway.kill()
        shutil.rmtree(self._runtime, ignore_errors=True)

    @classmethod
    def _windows_in(cls, node):
        if node.get("app_id") is not None:
            yield node
        for child in node["nodes"] + node["floating_nodes"]:
            yield from cls._windows_in(child)
