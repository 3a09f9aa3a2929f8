#!/usr/bin/python3
"""What scripts/check-macos remembers.

usage: macos_memory_test.py CHECK_MACOS BUILD_FOLDER
"""
import os
import subprocess
import sys
import tempfile
import unittest

CHECK, BUILD = os.path.realpath(sys.argv.pop(1)), sys.argv.pop(1)
ROOT = os.path.dirname(os.path.dirname(CHECK))


class Remembering(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.cache = temporary.name

    def check(self, path):
        run = subprocess.run([CHECK, "--build", BUILD, path], capture_output=True, text=True, timeout=240,
                             env=os.environ | {"XDG_CACHE_HOME": self.cache})
        return run.returncode, run.stdout.splitlines()[-1] if run.stdout else run.stderr

    def test_what_passed_is_left_out_until_it_changes(self):
        with tempfile.NamedTemporaryFile("w", suffix=".cpp", dir=BUILD, prefix="check-") as file:
            path = os.path.relpath(file.name, ROOT)
            file.write("int f();\n")
            file.flush()
            self.assertEqual(self.check(path), (0, "check-macos: 0 of 1 files refused, 0 unchanged since they passed"))
            self.assertEqual(self.check(path), (0, "check-macos: 0 of 1 files refused, 1 unchanged since they passed"))
            file.write("int g() { return h(); }\n")
            file.flush()
            self.assertEqual(self.check(path), (1, "check-macos: 1 of 1 files refused, 0 unchanged since they passed"))
            self.assertEqual(self.check(path)[0], 1, "a refusal is not remembered")


if __name__ == "__main__":
    unittest.main()
