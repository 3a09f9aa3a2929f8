"""What a screen reader knows of the application, and what it can do to it."""
import dataclasses
import json
import pathlib
import subprocess

from .polling import eventually

INSIDE = pathlib.Path(__file__).with_name("screen_reader_inside.py")
APPLICATION = "veranox-menu"


class Gone(Exception):
    """The tree has changed while it was looked at."""


@dataclasses.dataclass(frozen=True)
class Node:
    """An item as it was at one look."""

    number: int
    role: str
    name: str
    description: str
    states: frozenset
    actions: tuple
    children: tuple

    @classmethod
    def of(cls, told):
        return cls(**told | {"states": frozenset(told["states"]), "actions": tuple(told["actions"]),
                             "children": tuple(cls.of(child) for child in told["children"])})

    def walk(self):
        """The node and all below it, in reading order."""
        yield self
        for child in self.children:
            yield from child.walk()

    def showing(self):
        """Those of walk() that are on the screen."""
        return [node for node in self.walk() if "showing" in node.states]

    def find(self, role, name, description=None):
        """The only one on the screen with these; null when there is none."""
        found = [node for node in self.showing()
                 if (node.role, node.name) == (role, name) and description in (None, node.description)]
        if len(found) > 1:
            raise AssertionError(f"{len(found)} items are a {role} with the name {name!r}")
        return found[0] if found else None

    @property
    def focused(self):
        """The innermost with the keyboard."""
        holders = [node for node in self.walk() if "focused" in node.states]
        return holders[-1] if holders else None

    @property
    def is_checked(self):
        return "checked" in self.states

    @property
    def is_enabled(self):
        return "enabled" in self.states


class ScreenReader:
    """Runs from construction to stop() in the desktop."""

    def __init__(self, desktop, log):
        self._errors = open(log, "ab")
        self._inside = subprocess.Popen(
            ["/usr/bin/python3", INSIDE], env=desktop.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=self._errors, text=True, bufsize=1)
        self._answer()

    def stop(self):
        self._inside.stdin.close()
        self._inside.wait(10)
        self._inside.stdout.close()
        self._errors.close()

    # ---- Reading

    def application(self):
        """What the accessibility bus tells of the application now; null while it tells nothing."""
        try:
            told = self._ask("tree", APPLICATION)
        except Gone:
            return None
        return Node.of(told) if told else None

    def await_window(self, name, within=10.0):
        """The window of that name, once it is on the screen."""
        def look():
            application = self.application()
            return application and application.find("frame", name)
        return eventually(look, f"a window {name!r} on the accessibility bus", within)

    def await_node(self, role, name, description=None, where=lambda node: True, within=10.0):
        """The item on the screen with these, once `where` is true of it."""
        def look():
            application = self.application()
            node = application and application.find(role, name, description)
            return node if node and where(node) else None
        return eventually(look, f"{role} {name!r} as wanted on the accessibility bus", within)

    def await_focus(self, where, what, within=5.0):
        def look():
            application = self.application()
            node = application and application.focused
            return node if node and where(node) else None
        return eventually(look, f"the keyboard on {what}", within)

    # ---- Doing

    def act(self, action, role, name, description=None):
        """Does it to the item on the screen with these, once it is there and can be used."""
        def done():
            application = self.application()
            node = application and application.find(role, name, description)
            try:
                return node and node.is_enabled and self._ask("act", node.number, action)
            except Gone:
                return False
        eventually(done, f"{action} on {role} {name!r}")

    def focus(self, node):
        if not self._ask("focus", node.number):
            raise AssertionError(f"{node.role} {node.name!r} does not take the keyboard")

    def press(self, keysym):
        self._ask("press", keysym)

    # ----

    def _ask(self, command, *arguments):
        self._inside.stdin.write(json.dumps([command, arguments]) + "\n")
        return self._answer()

    def _answer(self):
        line = self._inside.stdout.readline()
        if not line:
            raise AssertionError(f"the screen reader ended with {self._inside.wait(10)}, see {self._errors.name}")
        told = json.loads(line)
        if "problem" in told:
            raise Gone(told["problem"])
        return told["answer"]
