"""A desktop session that can be ended."""
import queue
import subprocess
import sys
import threading

from . import session_manager


class Session:
    """Programs started with its environment belong to it."""

    def __init__(self, desktop):
        self._manager = subprocess.Popen(
            [sys.executable, session_manager.__file__], env=desktop.environment, stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True)
        self._lines = queue.Queue()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        self.address = self._told()
        if not self.address.startswith("local/"):
            raise AssertionError(f"no session manager came up: {self.address!r}")

    def await_member(self):
        self._await("registered")

    def end(self):
        """Has the programs commit their data, then tells them to go. Returns when they have committed."""
        self._manager.stdin.write("end\n")
        self._manager.stdin.flush()
        self._await("saved")

    def stop(self):
        self._manager.stdin.close()
        self._manager.wait(10)
        self._reader.join()
        self._manager.stdout.close()

    def _await(self, wanted):
        told = self._told()
        if told != wanted:
            raise AssertionError(f"the session manager said {told!r} in place of {wanted!r}")

    def _told(self, within=10):
        try:
            return self._lines.get(timeout=within)
        except queue.Empty:
            return f"nothing within {within} s"

    def _read(self):
        for line in self._manager.stdout:
            self._lines.put(line.strip())
