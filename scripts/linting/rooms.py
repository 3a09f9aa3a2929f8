"""Which room may include which. The build writes the table (rooms.json) from what the rooms' libraries link."""
import json
import os
import re

from linting import source

_INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"\n]+)"', re.M)
_SOURCES = (".cpp", ".h", ".mm")
_OUTSIDE = ("Tests/", "Benchmarks/", "cmake/")  # these may look into every room


class Table:
    def __init__(self, rooms):
        self.links = {room["room"]: room["links"] for room in rooms}

    @staticmethod
    def load(build):
        with open(os.path.join(build, "rooms.json"), encoding="utf-8") as file:
            return Table(json.load(file))

    def room_of(self, path):
        """The innermost room that the file lies in, or None."""
        folder = os.path.dirname(path)
        while folder:
            if folder in self.links:
                return folder
            folder = os.path.dirname(folder)
        return None

    def circle(self):
        """Rooms that need each other, as a path back to its beginning; empty when there are none."""
        state = {}

        def visit(room, path):
            if state.get(room) == "left":
                return []
            if room in path:
                return path[path.index(room):] + [room]
            for link in self.links.get(room, []):
                found = visit(link, path + [room])
                if found:
                    return found
            state[room] = "left"
            return []

        for room in self.links:
            found = visit(room, [])
            if found:
                return found
        return []


def _included(path, name, tracked):
    """The included file as a path from the root; a header that the build writes has a path of that kind already."""
    beside = os.path.normpath(os.path.join(os.path.dirname(path), name))
    return beside if beside in tracked else name


def check(table, files, read, report):
    """Reports every include that leaves its room without a link. `files` are the repository's paths, `read` gives a
    file's text. Returns a summary."""
    circle = table.circle()
    if circle:
        report("rooms need each other: " + " -> ".join(circle))
    tracked = set(files)
    used = {room: set() for room in table.links}
    arrows = 0
    for path in files:
        if not path.endswith(_SOURCES) or path.startswith(_OUTSIDE):
            continue
        room = table.room_of(path)
        if room is None:
            report(f"{path}: lies in no room: name its folder in CMake (cmake/Rooms.cmake)")
            continue
        text = read(path)
        for match in _INCLUDE.finditer(text):
            target = table.room_of(_included(path, match[1], tracked))
            if target in (None, room):
                continue
            arrows += 1
            used[room].add(target)
            if target not in table.links[room]:
                line = source.line_of(text, match.start(1))
                links = ", ".join(table.links[room]) or "nothing"
                report(f"{path}:{line}: {room} may not include {match[1]}; it links {links}")
    for room, links in table.links.items():
        for target in links:
            if target not in used[room]:
                report(f"{room} links {target}, but includes nothing of it: take the link off")
    return f"{len(table.links)} rooms, {arrows} includes from one to another"
