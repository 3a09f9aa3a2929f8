"""What a screen reader sees of a program, in a process of its own on the desktop's buses."""
import json
import subprocess

# Answers each line "list" with everything that is shown, and "do NAME ACTION" with whether that could be done.
READER = r"""
import json, sys
import pyatspi

def program(name):
    for child in pyatspi.Registry.getDesktop(0):
        if child and child.name == name:
            return child

def below(item):
    yield item
    for index in range(item.childCount):
        child = item.getChildAtIndex(index)
        if child:
            yield from below(child)

def seen(name):
    found = program(name)
    if not found:
        return []
    found.clearCache()
    return [item for item in below(found) if item.getState().contains(pyatspi.STATE_SHOWING)]

def actions(item):
    try:
        action = item.queryAction()
    except NotImplementedError:
        return None, []
    return action, [action.getName(index) for index in range(action.nActions)]

def describe(item):
    return {"role": item.getRoleName(), "name": item.name, "description": item.description, "actions": actions(item)[1],
            "checked": item.getState().contains(pyatspi.STATE_CHECKED)}

def perform(program_name, name, wanted):
    for item in seen(program_name):
        action, names = actions(item)
        if item.name == name and wanted in names:
            return action.doAction(names.index(wanted))
    return False

for line in sys.stdin:
    command = json.loads(line)
    if command["do"] == "list":
        answer = [describe(item) for item in seen(command["program"])]
    else:
        answer = perform(command["program"], command["name"], command["action"])
    print(json.dumps(answer), flush=True)
"""


class ScreenReader:
    """Reads and uses one program through the accessibility bus. stop() ends it."""

    def __init__(self, desktop, program):
        self._program = program
        self._reader = subprocess.Popen(
            ["/usr/bin/python3", "-c", READER], env=desktop.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            text=True)

    def _ask(self, **command):
        self._reader.stdin.write(json.dumps(command | {"program": self._program}) + "\n")
        self._reader.stdin.flush()
        return json.loads(self._reader.stdout.readline())

    def items(self):
        return self._ask(do="list")

    def names(self, role=None):
        return [item["name"] for item in self.items() if role in (None, item["role"])]

    def perform(self, name, action="Press"):
        return self._ask(do="perform", name=name, action=action)

    def stop(self):
        self._reader.stdin.close()
        self._reader.wait(10)
        self._reader.stdout.close()
