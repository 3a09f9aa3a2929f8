#!/usr/bin/python3
"""`scripts/lint rooms` must refuse every include that leaves its room without a link, and let a clean tree pass.

usage: rooms_test.py SCRIPTS_LINT

Each test plants a small tree in a repository of its own, with the table that a build would have left beside it.
"""
import json
import os
import subprocess
import sys
import tempfile
import unittest

LINT = ""


class Rooms(unittest.TestCase):
    """House links Cellar; Attic links both. Each test changes one thing."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.root = os.path.realpath(temporary.name)
        subprocess.run(["git", "init", "-q", self.root], check=True)
        self.links = {"Cellar": [], "House": ["Cellar"], "Attic": ["House", "Cellar"]}
        self.plant("Cellar/Wine.h", "#pragma once\n")
        self.plant("House/Door.h", '#pragma once\n#include "Cellar/Wine.h"\n#include <vector>\n')
        self.plant("House/Door.cpp", '#include "House/Door.h"\n#include "Window.h"\n')
        self.plant("House/Window.h", '#pragma once\n#include "of_no_room.h"\n')
        self.plant("Attic/Box.h", '#pragma once\n#include "House/Door.h"\n  #  include "../Cellar/Wine.h"\n')

    def plant(self, name, text):
        path = os.path.join(self.root, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        subprocess.run(["git", "-C", self.root, "add", "-f", name], check=True)

    def lint(self, configured=True):
        if configured:
            build = os.path.join(self.root, "build", "debug")
            os.makedirs(build)
            table = [{"room": room, "links": links} for room, links in self.links.items()]
            for name, content in (("rooms.json", table), ("compile_commands.json", [])):
                with open(os.path.join(build, name), "w", encoding="utf-8") as file:
                    json.dump(content, file)
        run = subprocess.run([LINT, "--root", self.root, "rooms"], capture_output=True, text=True, timeout=60)
        return run.returncode, (run.stdout + run.stderr).splitlines()

    def assert_refused(self, *sentences):
        """These sentences and no others."""
        code, lines = self.lint()
        self.assertEqual(code, 1, lines)
        self.assertEqual(sorted(lines[:-1]), sorted(sentences))
        self.assertIn("lint: rooms: refused", lines[-1])

    def assert_passes(self, summary):
        code, lines = self.lint()
        self.assertEqual((code, lines), (0, [f"lint: rooms: ok ({summary})"]))

    def test_a_tree_that_keeps_to_its_links_passes(self):
        self.assert_passes("3 rooms, 3 includes from one to another")

    def test_an_include_that_is_not_linked(self):
        self.plant("House/Door.cpp", '#include "House/Door.h"\n\n#include "Attic/Box.h"\n')
        self.assert_refused("House/Door.cpp:3: House may not include Attic/Box.h; it links Cellar")

    def test_an_include_of_a_room_that_links_nothing(self):
        self.plant("Cellar/Wine.h", '#pragma once\n#include "House/Window.h"\n')
        self.assert_refused("Cellar/Wine.h:2: Cellar may not include House/Window.h; it links nothing")

    def test_an_include_by_a_path_from_the_file(self):
        self.plant("House/Window.h", '#pragma once\n#include "../Attic/Box.h"\n')
        self.assert_refused("House/Window.h:2: House may not include ../Attic/Box.h; it links Cellar")

    def test_a_file_of_objective_c_is_looked_at_too(self):
        self.plant("House/Light.mm", '#include "Attic/Box.h"\n')
        self.assert_refused("House/Light.mm:1: House may not include Attic/Box.h; it links Cellar")

    def test_every_wrong_include_is_told(self):
        self.plant("House/Door.cpp", '#include "Attic/Box.h"\n#include "Attic/Box.h"\n')
        self.assert_refused("House/Door.cpp:1: House may not include Attic/Box.h; it links Cellar",
                            "House/Door.cpp:2: House may not include Attic/Box.h; it links Cellar")

    def test_what_a_linked_room_links_is_not_linked(self):
        self.links["Attic"] = ["House"]
        self.assert_refused("Attic/Box.h:3: Attic may not include ../Cellar/Wine.h; it links House")

    def test_the_innermost_room_counts(self):
        self.links["House/Bath"] = []
        self.plant("House/Bath/Tap.cpp", '#include "House/Window.h"\n')
        self.assert_refused("House/Bath/Tap.cpp:1: House/Bath may not include House/Window.h; it links nothing")

    def test_a_folder_of_a_room_belongs_to_it(self):
        self.plant("House/Kitchen/Oven.cpp", '#include "House/Window.h"\n#include "Attic/Box.h"\n')
        self.assert_refused("House/Kitchen/Oven.cpp:2: House may not include Attic/Box.h; it links Cellar")

    def test_a_header_that_the_build_writes_belongs_to_its_room(self):
        self.plant("Cellar/Wine.h", '#pragma once\n#include "House/Generated.h"\n')  # git does not track it
        self.assert_refused("Cellar/Wine.h:2: Cellar may not include House/Generated.h; it links nothing")

    def test_a_circle_of_two(self):
        self.links["Cellar"] = ["House"]
        self.plant("Cellar/Wine.h", '#pragma once\n#include "House/Window.h"\n')
        self.assert_refused("rooms need each other: Cellar -> House -> Cellar")

    def test_a_circle_of_three(self):
        self.links["Cellar"] = ["Attic"]
        self.links["Attic"] = ["House"]
        self.plant("Cellar/Wine.h", '#pragma once\n#include "Attic/Box.h"\n')
        self.plant("Attic/Box.h", '#pragma once\n#include "House/Door.h"\n')
        self.assert_refused("rooms need each other: Cellar -> Attic -> House -> Cellar")

    def test_a_circle_that_begins_behind_the_first_room_and_goes_through_second_links(self):
        self.links = {"Attic": ["Cellar", "House"], "House": ["Cellar", "Shed"], "Shed": ["Cellar", "House"], "Cellar": []}
        self.plant("House/Window.h", '#pragma once\n#include "Shed/Rake.h"\n')
        self.plant("Shed/Rake.h", '#pragma once\n#include "House/Window.h"\n#include "Cellar/Wine.h"\n')
        self.assert_refused("rooms need each other: House -> Shed -> House")

    def test_a_file_in_no_room(self):
        self.plant("Garden/Tree.cpp", "int tree();\n")
        self.assert_refused("Garden/Tree.cpp: lies in no room: name its folder in CMake (cmake/Rooms.cmake)")

    def test_a_file_above_all_rooms(self):
        self.plant("Roof.h", "#pragma once\n")
        self.assert_refused("Roof.h: lies in no room: name its folder in CMake (cmake/Rooms.cmake)")

    def test_tests_and_benchmarks_may_look_into_every_room_and_need_none(self):
        self.plant("Tests/Look.cpp", '#include "Attic/Box.h"\n')
        self.plant("Benchmarks/Look.cpp", '#include "House/Door.h"\n')
        self.plant("cmake/Look.h", '#include "House/Door.h"\n')
        self.assert_passes("3 rooms, 3 includes from one to another")

    def test_what_is_no_source_needs_no_room(self):
        self.plant("Garden/Tree.txt", '#include "Attic/Box.h"\n')
        self.assert_passes("3 rooms, 3 includes from one to another")

    def test_a_link_that_nothing_uses(self):
        self.links["House"] = []
        self.plant("House/Door.h", "#pragma once\n")
        self.links["Attic"] = ["House", "Cellar"]
        self.plant("Attic/Box.h", '#pragma once\n#include "House/Door.h"\n')
        self.assert_refused("Attic links Cellar, but includes nothing of it: take the link off")

    def test_without_a_table_it_says_what_to_run(self):
        code, lines = self.lint(configured=False)
        self.assertEqual(code, 1)
        self.assertEqual(lines[0], "no table of the rooms: run cmake --preset debug (or release) first")


if __name__ == "__main__":
    LINT = os.path.realpath(sys.argv.pop(1))
    unittest.main()
