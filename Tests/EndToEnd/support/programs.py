"""The application and the service, as a person would start them."""
import http.client
import json
import os
import pathlib
import signal

from .paths import LABS, MENU, SERVICE
from .polling import eventually
from .process import Process

PORT = 43200  # where the application looks for the service
POPOVER_WIDTH = 796
QUIT_PANEL_WIDTH = 420
STOP_BOUND = 5.0  # seconds that a quit may take while the service answers
HANGING_STOP_BOUND = 20.0  # and while it does not: 12 for the request, 2 for the child's end, then the same


class Service(Process):
    """`veranox gui serve`, up and answering. `lab` is "demo" or the name of a file in Tests/EndToEnd/labs."""

    def __init__(self, desktop, log, lab="demo", port=PORT):
        self.port = port
        network = lab if lab == "demo" else LABS / f"{lab}.json"
        super().__init__(
            [SERVICE, "gui", "serve", "--listen", f"127.0.0.1:{port}", "--lab", network], desktop.environment, log)
        try:
            eventually(self._is_up, "the service's first answer", 15)
        except BaseException:
            self.kill()
            raise

    def get(self, path):
        """The JSON that the service answers."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=5)
        try:
            connection.request("GET", path)
            answer = connection.getresponse()
            body = answer.read()
        finally:
            connection.close()
        if answer.status != 200:
            raise AssertionError(f"GET {path}: {answer.status} {body!r}")
        return json.loads(body)

    def _is_up(self):
        if not self.running:
            raise AssertionError(f"the service ended with {self.popen.returncode}:\n{self.output()}")
        try:
            self.get("/api/health")
        except OSError:
            return False
        return True


def status(desktop):
    """What `veranox-menu --status` prints, as lines; empty while nothing answers."""
    answer = desktop.run(MENU, "--status")
    return answer.stdout.splitlines() if answer.returncode == 0 else []


def service_state(desktop):
    """The state of the service as the running application sees it; empty while none answers."""
    lines = status(desktop)
    return lines[0].split()[2] if lines else ""


class Application(Process):
    """`veranox-menu` without an option."""

    def __init__(self, desktop, log, program=MENU, **environment):
        self._desktop = desktop
        super().__init__([program], desktop.environment | environment, log)

    def own_services(self):
        """The process ids of the services that the application has started itself."""
        children = pathlib.Path(f"/proc/{self.pid}/task/{self.pid}/children")
        try:
            return [int(word) for word in children.read_text().split()]
        except (FileNotFoundError, ProcessLookupError):
            return []

    def kill(self):
        """Ends it at once, and the services that it has started."""
        if self.running:
            self.signal(signal.SIGSTOP)  # so that it starts none meanwhile
            services = self.own_services()
            super().kill()
            for pid in services:
                os.kill(pid, signal.SIGKILL)

    def await_state(self, state, within=10.0):
        def reached():
            if not self.running:
                raise AssertionError(f"the application ended with {self.popen.returncode}:\n{self.output()}")
            return service_state(self._desktop) == state
        eventually(reached, f"service state {state!r}", within)

    def await_settled(self, within=10.0):
        """Online, and every profile has said where it ended up: from here on the schedule is the slow one."""
        def settled():
            service, *others = status(self._desktop) or [""]
            profiles = [line.split() for line in others if line.startswith("profile ")]
            return service.split()[2:] == ["online"] and profiles and all(
                profile[2] not in ("unknown", "NoState", "Starting") for profile in profiles)
        eventually(settled, "online and settled", within)

    def menus(self):
        """The menus of the application that are open on the screen."""
        return [window for window in self._desktop.windows("veranox-menu") if window.is_menu]

    def await_menu(self, within=3.0):
        return eventually(self.menus, "a menu of the application", within)[0]

    def windows(self, width):
        """The windows of the application that are that wide, menus left out."""
        return [window for window in self._desktop.windows("veranox-menu")
                if not window.is_menu and window.width == width]

    def popovers(self):
        return self.windows(POPOVER_WIDTH)

    def await_popover(self, within=5.0):
        """The popover, once it has the keyboard."""
        return self._await_focused(POPOVER_WIDTH, "the popover", within)

    def await_no_popover(self, within=3.0):
        eventually(lambda: not self.popovers(), "the popover closes", within)

    def close_popover(self):
        """By keyboard, so that the next click on the icon opens it."""
        self.await_popover()
        self._desktop.press("Escape")
        self.await_no_popover()

    def quit_panels(self):
        return self.windows(QUIT_PANEL_WIDTH)

    def await_quit_panel(self, within=5.0):
        return self._await_focused(QUIT_PANEL_WIDTH, "the panel that asks before quitting", within)

    def confirm_quit(self):
        """Says yes to the panel that asks, by keyboard."""
        self.await_quit_panel()
        self._desktop.press("Return")

    def _await_focused(self, width, what, within):
        return eventually(
            lambda: [w for w in self.windows(width) if w.id == self._desktop.focused_window()], what, within)[0]
