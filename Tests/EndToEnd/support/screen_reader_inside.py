"""A screen reader without a voice, run inside a desktop: answers each line of JSON on its input with one on its output.

Everything that it knows of an application, and all that it does to one, goes over the accessibility bus.
"""
import json
import sys

import pyatspi
from gi.repository import GLib


class ScreenReader:
    def __init__(self):
        self._seen = {}  # what the last look at the tree has numbered

    def tree(self, application):
        """The application and all below it; null while the bus does not know it."""
        self._seen.clear()
        desktop = pyatspi.Registry.getDesktop(0)
        desktop.clear_cache()
        for found in desktop:
            if found and found.name == application:
                found.clear_cache()
                return self._describe(found)
        return None

    def act(self, number, action):
        actions = self._seen[number].queryAction()
        names = [actions.getName(index) for index in range(actions.nActions)]
        return actions.doAction(names.index(action))

    def focus(self, number):
        return self._seen[number].queryComponent().grabFocus()

    @staticmethod
    def press(keysym):
        """A key, as the on-screen keyboard types it."""
        return pyatspi.Registry.generateKeyboardEvent(keysym, None, pyatspi.KEY_SYM)

    def _describe(self, node):
        number = len(self._seen)
        self._seen[number] = node
        return {
            "number": number, "role": node.getRoleName(), "name": node.name, "description": node.description,
            "states": sorted(map(pyatspi.stateToString, node.getState().getStates())),
            "actions": self._actions(node),
            "children": [self._describe(child) for child in node if child],
        }

    @staticmethod
    def _actions(node):
        if "Action" not in node.get_interfaces():
            return []
        actions = node.queryAction()
        return [actions.getName(index) for index in range(actions.nActions)]


def main():
    reader = ScreenReader()
    print(json.dumps({"answer": "ready"}), flush=True)
    for line in sys.stdin:
        command, arguments = json.loads(line)
        try:
            answer = {"answer": getattr(reader, command)(*arguments)}
        except (GLib.Error, LookupError, NotImplementedError, ValueError) as problem:
            answer = {"problem": f"{type(problem).__name__}: {problem}"}  # such as an item that has gone meanwhile
            print(line.strip(), answer, file=sys.stderr, flush=True)
        print(json.dumps(answer), flush=True)


if __name__ == "__main__":
    main()
