"""What every end-to-end test stands on."""
import fcntl
import os
import pathlib
import shutil
import signal
import socket
import sys
import tempfile
import unittest

from .desktop import VirtualDesktop
from .front import CountingFront
from .paths import FAILURES
from .programs import PORT, Application, Service
from .screen_reader import ScreenReader
from .session import Session
from .trays import StatusNotifierHost, XEmbedTray

INSTALLED_SERVICES = ("/opt/homebrew/bin/veranox", "/usr/local/bin/veranox")  # where the application looks as well
BEHIND_FRONT = 43201  # the service's port while a front stands on the application's
ALL_SKIPPED = 77  # what ctest knows as SKIP_RETURN_CODE
FINDINGS = ("ERROR: AddressSanitizer", "ERROR: LeakSanitizer", "WARNING: ThreadSanitizer", "runtime error:",
            "qrc:/")  # a warning about one of the application's QML files


def main():
    """Runs the tests of the file; ctest is told when all of them were skipped."""
    result = unittest.main(exit=False).result
    if result.wasSuccessful() and result.testsRun == len(result.skipped):
        sys.exit(ALL_SKIPPED)
    sys.exit(not result.wasSuccessful())


class EndToEndTestCase(unittest.TestCase):
    """A private desktop for each test. Logs and a screenshot of a failed one are kept in build/PRESET/e2e-failures."""

    desktop_options = ()

    def run(self, result=None):
        result = result or self.defaultTestResult()
        failed_before = len(result.failures) + len(result.errors)
        with tempfile.TemporaryDirectory(prefix="veranox-e2e-") as folder:
            self.folder = pathlib.Path(folder)
            super().run(result)
            if len(result.failures) + len(result.errors) > failed_before:
                kept = FAILURES / self.id().removeprefix("__main__.")
                shutil.rmtree(kept, ignore_errors=True)
                shutil.copytree(folder, kept)
        return result

    def setUp(self):
        self._take_port()
        self.desktop = VirtualDesktop(*self.desktop_options)
        self.addCleanup(self.desktop.stop)

    def tearDown(self):
        if self.desktop.has_display:
            self.desktop.screenshot(self.folder / "screen.png")

    def _take_port(self):
        """The application knows one port only: one test at a time in each network."""
        network = os.stat("/proc/self/ns/net").st_ino
        lock = open(pathlib.Path(tempfile.gettempdir()) / f"veranox-port-{PORT}-{network}.lock", "w")
        self.addCleanup(lock.close)
        fcntl.flock(lock, fcntl.LOCK_EX)
        with socket.socket() as probe:
            if probe.connect_ex(("127.0.0.1", PORT)) == 0:
                self.fail(f"port {PORT} is taken: end the service that runs there")

    def skip_where_a_service_is_installed(self):
        """For tests of an application that has no usable service of its own."""
        installed = [path for path in INSTALLED_SERVICES if os.path.exists(path)]
        if installed:
            self.skipTest(f"the application would take {installed[0]}")

    # ---- What a test starts; all of it ends with the test

    def start_service(self, lab="demo", port=PORT):
        """The service, started by the person: the application finds it there and attaches."""
        service = Service(self.desktop, self.folder / "service.log", lab, port)
        self.addCleanup(service.kill)
        return service

    def start_service_behind_front(self, lab="demo"):
        service = self.start_service(lab, BEHIND_FRONT)
        front = CountingFront(BEHIND_FRONT)
        self.addCleanup(front.stop)
        return service, front

    def start_application(self, **choices):
        """choices: `program`, another file of the application; more variables of its environment."""
        log = self.folder / f"menu-{len(list(self.folder.glob('menu-*')))}.log"
        application = Application(self.desktop, log, **choices)
        self.addCleanup(self._end_application, application)
        return application

    def _end_application(self, application):
        application.kill()
        for finding in FINDINGS:
            self.assertNotIn(finding, application.output())

    def start_panel(self, *arguments):
        """A panel that speaks StatusNotifier."""
        panel = StatusNotifierHost(self.desktop, self.folder / "panel.log", *arguments)
        self.addCleanup(panel.stop)
        return panel

    def start_xembed_tray(self):
        tray = XEmbedTray(self.desktop, self.folder / "trayer.log")
        self.addCleanup(tray.stop)
        return tray

    def start_session(self):
        session = Session(self.desktop)
        self.addCleanup(session.stop)
        return session

    def start_screen_reader(self):
        reader = ScreenReader(self.desktop, self.folder / "screen-reader.log")
        self.addCleanup(reader.stop)
        return reader

    def resume_at_end(self, process):
        """A stopped process is no obstacle to the end of the test."""
        self.addCleanup(lambda: process.running and process.signal(signal.SIGCONT))
