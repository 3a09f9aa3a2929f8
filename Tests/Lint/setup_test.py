#!/usr/bin/python3
"""scripts/setup against a pretended package system.

usage: setup_test.py SCRIPTS_SETUP
"""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

SETUP = ""

FAKE_DPKG_QUERY = """#!/bin/bash
for name in "${@:3}"; do grep -qx "$name" "$STATE/installed" && echo "$name installed"; done
exit 1
"""
# Installs, unless there are more failures to come; writes down how it was called.
FAKE_APT_GET = """#!/bin/bash
echo "$1" >>"$STATE/calls"
[ "$1" = update ] && exit 0
left=$(cat "$STATE/failures")
if [ "$left" -gt 0 ]; then echo $((left - 1)) >"$STATE/failures"; echo "E: no such thing" >&2; exit 100; fi
for name in "$@"; do case "$name" in install | -*) ;; *) echo "$name" >>"$STATE/installed" ;; esac; done
"""


class Setup(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.top = temporary.name
        self.write("scripts/packages.txt", "# tools\nalpha beta\n  # more\n\ngamma\talpha\n")
        shutil.copy(SETUP, os.path.join(self.top, "scripts", "setup"))
        self.write("bin/dpkg-query", FAKE_DPKG_QUERY)
        self.write("bin/apt-get", FAKE_APT_GET)
        self.write("bin/sudo", "#!/bin/bash\nexec \"$@\"\n")
        self.write("state/installed", "")
        self.write("state/calls", "")
        self.write("state/failures", "0\n")

    def write(self, name, text):
        path = os.path.join(self.top, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def read(self, name):
        with open(os.path.join(self.top, name), encoding="utf-8") as file:
            return file.read().split()

    def run_setup(self, path=None):
        environment = {"PATH": path or os.path.join(self.top, "bin") + ":/usr/bin:/bin", "STATE": os.path.join(self.top, "state")}
        run = subprocess.run(["/bin/bash", os.path.join(self.top, "scripts", "setup")], env=environment, capture_output=True, text=True, timeout=60)
        return run.returncode, run.stdout + run.stderr

    def test_installs_what_is_missing_and_nothing_the_second_time(self):
        self.write("state/installed", "beta\n")
        self.assertEqual(self.run_setup()[0], 0)
        self.assertEqual(self.read("state/installed"), ["beta", "alpha", "gamma"])
        self.assertEqual(self.read("state/calls"), ["install"])
        self.assertEqual(self.run_setup(), (0, ""))
        self.assertEqual(self.read("state/calls"), ["install"])

    def test_tries_once_more_with_fresh_lists(self):
        self.write("state/failures", "1\n")
        self.assertEqual(self.run_setup()[0], 0)
        self.assertEqual(self.read("state/calls"), ["install", "update", "install"])

    def test_says_so_when_apt_fails_twice(self):
        self.write("state/failures", "2\n")
        code, output = self.run_setup()
        self.assertEqual(code, 1)
        self.assertIn("setup: apt-get could not install the packages", output)
        self.assertEqual(self.read("state/calls"), ["install", "update", "install"])

    def test_says_so_where_there_is_no_apt(self):
        tools = os.path.join(self.top, "tools")
        os.makedirs(tools)
        for name in ("dirname", "grep"):
            os.symlink(shutil.which(name), os.path.join(tools, name))
        code, output = self.run_setup(path=tools)
        self.assertEqual(code, 1)
        self.assertIn("setup: this needs Debian 12", output)


if __name__ == "__main__":
    SETUP = os.path.realpath(sys.argv.pop(1))
    unittest.main()
