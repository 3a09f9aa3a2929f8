"""The two kinds of panel that an icon can stand in."""
import re
import subprocess
import threading

from .paths import STATUS_NOTIFIER_HOST
from .polling import eventually
from .process import Process


class StatusNotifierHost:
    """A panel that speaks StatusNotifier, commanded line by line."""

    def __init__(self, desktop, log, *arguments):
        self._lock = threading.Lock()
        self._errors = open(log, "ab")
        self._host = subprocess.Popen(
            [STATUS_NOTIFIER_HOST, *arguments], env=desktop.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=self._errors, text=True, bufsize=1)
        first = self._host.stdout.readline().strip()
        if first != "READY":
            raise AssertionError(f"no StatusNotifier host came up: {first!r}")

    def ask(self, command):
        """The answer to a command, without the word that leads it."""
        with self._lock:
            self._host.stdin.write(command + "\n")
            answer = self._host.stdout.readline().rstrip("\n")
        head, _, rest = answer.partition(" ")
        if not answer or head == "ERROR":
            raise AssertionError(f"{command}: {answer!r}")
        return rest

    def items(self):
        return self.ask("items").split()

    def await_item(self, within=10.0):
        eventually(self.items, "an item on the StatusNotifier host", within)

    def tool_tip(self):
        return self.ask("tooltip")

    def accessible_name(self):
        return self.ask("property IconAccessibleDesc")

    def icon(self):
        """The pictures of the item, each as size and hash of its pixels."""
        return self.ask("icon")

    def dump_icon(self, file):
        self.ask(f"dump {file}")

    def menu(self):
        """The labels of the menu that the panel draws, each with the number that chooses it."""
        rows = re.findall(r"(\d+)=([^|]*)", self.ask("menu"))
        return {label: int(number) for number, label in rows}

    def choose(self, label):
        self.ask(f"choose {self.menu()[label]}")

    def counts(self):
        """How often the item has told of a change, by signal."""
        return self.ask("counts")

    def set_host(self, on):
        """Whether the watcher says that something shows its items."""
        self.ask("host on" if on else "host off")

    def click(self, point=(640, 20)):
        self.ask(f"click {point[0]} {point[1]}")

    def secondary_click(self, point=(640, 20)):
        self.ask(f"context {point[0]} {point[1]}")

    def stop(self):
        """Harmless when it has stopped."""
        self._host.stdin.close()
        self._host.wait(10)
        self._host.stdout.close()
        self._errors.close()


class XEmbedTray:
    """A panel that takes icon windows in."""

    def __init__(self, desktop, log):
        self._desktop = desktop
        self._panel = Process(
            ["trayer", "--edge", "top", "--align", "right", "--widthtype", "request", "--heighttype", "pixel",
             "--height", "28", "--SetDockType", "true", "--transparent", "false", "--tint", "0xe0e0e0"],
            desktop.environment, log)
        eventually(lambda: desktop.windows("trayer"), "the XEmbed tray")

    def icons(self, class_name):
        """The windows of a program that stand inside the panel."""
        panels = {panel.id for panel in self._desktop.windows("trayer")}
        return [window for window in self._desktop.windows(class_name) if not panels.isdisjoint(window.parents)]

    def await_icon(self, class_name="veranox-menu", within=10.0):
        """The icon, once it is on the screen."""
        return eventually(lambda: self.icons(class_name), f"an icon of {class_name} in the XEmbed tray", within)[0]

    def stop(self):
        self._panel.kill()
