#!/usr/bin/python3
"""What scripts/test says at its end.

usage: summary_test.py SCRIPTS_FOLDER
"""
import os
import subprocess
import sys
import tempfile
import unittest

SUMMARY = os.path.join(os.path.realpath(sys.argv.pop(1)), "testing", "summary.py")
SKIPPED = '<skipped message="SKIP_RETURN_CODE=77"/>'
MISSING = '<skipped message="Unable to find executable"/>'


def case(name, seconds, status="run", inside=""):
    return f'<testcase name="{name}" time="{seconds}" status="{status}">{inside}</testcase>'


class Summary(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = temporary.name
        self.write("steps", "")

    def write(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
            file.write(text)

    def run_of(self, name, *cases):
        self.write(f"{name}.xml", f"<testsuite>{''.join(cases)}</testsuite>")

    def lines(self, *failed_step):
        run = subprocess.run([sys.executable, SUMMARY, self.folder, *failed_step], capture_output=True, text=True, check=True)
        return run.stdout.splitlines()

    def test_the_last_line_counts_every_run(self):
        self.run_of("asan", case("a", 1), case("b", 1, "fail"))
        self.run_of("release", case("a", 1), case("c", 1))
        self.assertEqual(self.lines()[-1], "3 passed, 1 failed")

    def test_without_any_test_it_counts_none(self):
        self.assertEqual(self.lines()[-1], "0 passed, 0 failed")

    def test_a_step_that_failed_counts_unless_its_tests_do(self):
        self.run_of("asan", case("a", 1))
        self.assertEqual(self.lines("release: build")[-2:], ["FAILED: release: build", "1 passed, 1 failed"])
        self.run_of("asan", case("a", 1), case("b", 1, "fail"))
        self.assertEqual(self.lines("asan: tests")[-2:], ["FAILED: b (asan)", "1 passed, 1 failed"])

    def test_a_test_that_skipped_itself_is_told_and_one_that_is_missing_has_failed(self):
        self.run_of("release", case("a", 0, "notrun", SKIPPED), case("b", 0, "notrun", MISSING), case("c", 0, "disabled"))
        lines = self.lines()
        self.assertEqual(lines[-4:], ["skipped: a (release)", "skipped: c (release)", "FAILED: b (release)",
                                      "0 passed, 1 failed"])

    def test_a_file_that_is_cut_has_failed(self):
        self.write("asan.xml", "<testsuite><testcase ")
        self.assertEqual(self.lines()[-1], "0 passed, 1 failed")

    def test_the_ten_slowest_come_first(self):
        self.write("steps", "".join(f"{seconds}\tstep {seconds}\n" for seconds in range(12)))
        self.run_of("release", *[case(f"t{number}", number / 10) for number in range(12)])
        lines = self.lines()
        steps, tests = lines.index("slowest steps:"), lines.index("slowest tests:")
        self.assertEqual([line.split(" s  ")[1] for line in lines[steps + 1:tests]], [f"step {n}" for n in range(11, 1, -1)])
        self.assertEqual([line.split(" s  ")[1] for line in lines[tests + 1:-1]],
                         [f"t{n} (release)" for n in range(11, 1, -1)])


if __name__ == "__main__":
    unittest.main()
