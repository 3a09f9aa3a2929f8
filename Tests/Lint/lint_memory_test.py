#!/usr/bin/python3
"""What scripts/lint remembers, and for how long.

usage: lint_memory_test.py SCRIPTS_FOLDER
"""
import os
import sys
import tempfile
import time
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, sys.argv.pop(1))
from linting import memory, tidy  # noqa: E402

DAY = 24 * 3600


def key(number):
    return f"{number:064x}"


class Remembering(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.place = temporary.name
        self.memory = memory.Memory(self.place)

    def add(self, number, days_old=0):
        self.memory.add(key(number), "A.cpp")
        then = time.time() - days_old * DAY
        os.utime(os.path.join(self.place, key(number)), (then, then))

    def test_what_was_added_is_in_it(self):
        self.add(1)
        self.assertIn(key(1), self.memory)
        self.assertNotIn(key(2), self.memory)

    def test_what_was_of_no_use_for_long_is_forgotten(self):
        self.add(1, days_old=29)
        self.add(2, days_old=31)
        self.memory.forget_old()
        self.assertEqual(os.listdir(self.place), [key(1)])

    def test_use_keeps_it(self):
        self.add(1, days_old=31)
        self.assertIn(key(1), self.memory)
        self.memory.forget_old()
        self.assertIn(key(1), self.memory)

    def test_the_oldest_of_too_many_are_forgotten(self):
        for number in range(5):
            self.add(number, days_old=number)
        self.memory.forget_old(most=3)
        self.assertEqual(sorted(os.listdir(self.place)), [key(0), key(1), key(2)])

    def test_files_of_others_stay(self):
        path = os.path.join(self.place, "compile_commands.json")
        with open(path, "w", encoding="utf-8"):
            pass
        os.utime(path, (0, 0))
        self.memory.forget_old(most=0)
        self.assertTrue(os.path.exists(path))


class Place(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.top = temporary.name

    def test_it_is_the_users_cache_folder(self):
        cache, home = os.path.join(self.top, "cache"), os.path.join(self.top, "home")
        self.assertEqual(memory.folder({"XDG_CACHE_HOME": cache, "HOME": home}, "no"), f"{cache}/veranox/lint")
        self.assertEqual(memory.folder({"HOME": home}, "no"), f"{home}/.cache/veranox/lint")
        self.assertTrue(os.path.isdir(f"{cache}/veranox/lint"))

    def test_a_relative_folder_is_none(self):
        home = os.path.join(self.top, "home")
        self.assertEqual(memory.folder({"XDG_CACHE_HOME": "cache", "HOME": home}, "no"), f"{home}/.cache/veranox/lint")
        fallback = os.path.join(self.top, "fallback")
        self.assertEqual(memory.folder({"HOME": "home"}, fallback), fallback)


class Command(unittest.TestCase):
    def test_names_neither_checkout_nor_target(self):
        one = tidy.portable("c++ -DA=\\\"/src/a\\\" -I/src/a/build/debug/x_autogen/include -I/src/a -o x.dir/A.o "
                            "-include /src/a/build/debug/pch.hxx -c /src/a/A.cpp", "/src/a", "/src/a/build/debug")
        other = tidy.portable("c++ -DA=\\\"/b\\\" -I/b/build/release/y_autogen/include -I/b -o y.dir/A.o "
                              "-include /b/build/release/pch.hxx -c /b/A.cpp", "/b", "/b/build/release")
        self.assertEqual(one, other)
        self.assertNotIn("/work", one)

    def test_leaves_a_neighbours_name_alone(self):
        self.assertEqual(tidy.portable("c++ -I/src/a-b -I/src/ab -I/src/a/c", "/src/a", "/src/a/build/debug"),
                         "c++ -I/src/a-b -I/src/ab -I<root>/c")


if __name__ == "__main__":
    unittest.main()
