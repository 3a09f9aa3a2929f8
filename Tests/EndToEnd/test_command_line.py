"""What a terminal gets from veranox-menu, no application running and no display needed."""
import re
import unittest

from support.case import EndToEndTestCase
from support.paths import MENU


class CommandLine(EndToEndTestCase):
    desktop_options = ("--no-x",)

    def test_version_is_one_line_with_a_number(self):
        answer = self.desktop.run(MENU, "--version")
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        self.assertRegex(answer.stdout, r"^veranox-menu \d+\.\d+\.\d+\n$")

    def test_help_names_every_option(self):
        answer = self.desktop.run(MENU, "--help")
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        self.assertEqual({"--status", "--version", "--help"}, set(re.findall(r"^  (--\w+)", answer.stdout, re.MULTILINE)))

    def test_an_unknown_option_is_refused_in_one_line(self):
        for arguments in (["--nonsense"], ["--version", "--help"], ["file"], ["-x"], [""], ["--status\n"], ["--version", "a\nb"], ["--\x1b[31m"]):
            with self.subTest(arguments):
                answer = self.desktop.run(MENU, *arguments)
                self.assertEqual((answer.returncode, answer.stdout), (2, ""))
                self.assertEqual(answer.stderr.strip().count("\n"), 0, answer.stderr)
                self.assertTrue(answer.stderr.startswith("veranox-menu: "), answer.stderr)

    def test_status_without_a_running_application_says_so(self):
        answer = self.desktop.run(MENU, "--status")
        self.assertEqual((answer.returncode, answer.stdout), (1, ""))
        self.assertRegex(answer.stderr, r"^veranox-menu: no running application answers\..*\n$")


class CommandLineWithoutBus(EndToEndTestCase):
    desktop_options = ("--no-x", "--no-bus")

    def test_status_without_a_bus_says_so(self):
        answer = self.desktop.run(MENU, "--status")
        self.assertEqual((answer.returncode, answer.stdout), (1, ""))
        self.assertRegex(answer.stderr, r"^veranox-menu: no running application answers\..*\n$")


if __name__ == "__main__":
    unittest.main()
