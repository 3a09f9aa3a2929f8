#!/usr/bin/python3
"""scripts/test with pretended tools: what it runs, and how it ends.

usage: whole_test.py SCRIPTS_FOLDER
"""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

SCRIPTS = os.path.realpath(sys.argv.pop(1))

FAKE_TOOL = """#!/bin/bash
echo "$(basename "$0") $*" >>"$STATE/calls"
[ "$(basename "$0") $*" != "$FAILS" ]
"""
FAKE_CTEST = """#!/bin/bash
echo "ctest $*" >>"$STATE/calls"
preset=$2
while [ "$1" != --output-junit ]; do shift; done
status=run
[ "$FAILS" != "ctest $preset" ] || status=fail
echo "<testsuite><testcase name='a' time='1' status='run'/><testcase name='b' time='2' status='$status'/></testsuite>" >"$2"
[ "$status" = run ]
"""


class WholeTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.top = temporary.name
        shutil.copytree(SCRIPTS, os.path.join(self.top, "scripts"), ignore=shutil.ignore_patterns("__pycache__"))
        for tool in ("scripts/setup", "scripts/lint", "bin/cmake"):
            self.write(tool, FAKE_TOOL)
        self.write("bin/ctest", FAKE_CTEST)

    def write(self, name, text):
        path = os.path.join(self.top, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def run_test(self, *arguments, fails=""):
        environment = os.environ | {
            "PATH": f"{self.top}/bin:{os.environ['PATH']}", "STATE": self.top, "FAILS": fails}
        self.write("calls", "")
        run = subprocess.run([os.path.join(self.top, "scripts", "test"), *arguments], env=environment, timeout=60,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        with open(os.path.join(self.top, "calls"), encoding="utf-8") as calls:
            return run.returncode, run.stdout.splitlines(), [line.strip() for line in calls]

    def test_the_counts_of_all_runs_are_the_last_line(self):
        status, lines, calls = self.run_test()
        self.assertEqual(status, 0, lines)
        self.assertEqual(lines[-1], "6 passed, 0 failed")
        self.assertTrue(any("release: build" in line for line in lines[lines.index("slowest steps:"):]))
        self.assertIn("cmake --build --preset tsan --target threaded_test_programs", calls)
        tests = [call.split(" -")[1] for call in calls if call.startswith("ctest")]
        self.assertEqual(tests, ["-preset asan", "-preset tsan", "-preset release"])

    def test_a_unit_test_runs_under_the_sanitizers_or_in_the_release_build(self):
        for arguments, leaves_out in (((), True), (("--quick",), False)):
            _, _, calls = self.run_test(*arguments)
            builds = "cmake --build --preset release --target all unit_test_programs" in calls
            runs = [call for call in calls if call.startswith("ctest --preset release")]
            self.assertEqual(len(runs), 1)
            self.assertEqual(("-LE ^unit(-threads)?$" in runs[0], builds), (leaves_out, not leaves_out), arguments)

    def test_quick_leaves_the_sanitizers_out(self):
        status, lines, calls = self.run_test("--quick")
        self.assertEqual((status, lines[-1]), (0, "2 passed, 0 failed"))
        self.assertFalse([call for call in calls if "asan" in call or "tsan" in call])

    def test_a_test_that_fails_ends_it_and_is_counted(self):
        status, lines, calls = self.run_test(fails="ctest asan")
        self.assertNotEqual(status, 0)
        self.assertEqual(lines[-2:], ["FAILED: b (asan)", "1 passed, 1 failed"])
        self.assertFalse([call for call in calls if "tsan" in call])

    def test_a_step_that_fails_ends_it_and_is_counted(self):
        for fails, step in (("lint ", "rules of the sources"), ("cmake --build --preset release", "release: build"),
                            ("cmake --preset release", "release: build"), ("setup ", "packages")):
            status, lines, _ = self.run_test(fails=fails)
            self.assertNotEqual(status, 0, fails)
            self.assertEqual(lines[-2:], [f"FAILED: {step}", "0 passed, 1 failed"], fails)

    def test_the_figures_of_the_last_time_are_forgotten(self):
        self.run_test()
        self.assertEqual(self.run_test("--quick")[1][-1], "2 passed, 0 failed")


if __name__ == "__main__":
    unittest.main()
