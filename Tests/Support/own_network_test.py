#!/usr/bin/python3
"""Tests/Support/own-network: side by side where the system allows it, one after another where it does not."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

OWN_NETWORK = pathlib.Path(__file__).with_name("own-network")
NO_NETWORKS = "this system gives out no network of one's own"

# Binds a port that everyone wants, connects to itself, and waits, as long as one may take to start, for the other.
MEET = """
import os, pathlib, socket, sys, time
folder, me, other = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3]
with socket.create_server(("127.0.0.1", 43209)) as server:
    socket.create_connection(("127.0.0.1", 43209), 5).close()
    (folder / me).touch()
    end = time.monotonic() + 20
    while not (folder / other).exists():
        if time.monotonic() > end: sys.exit("alone")
        time.sleep(0.02)
"""
# Fails when another one is in the middle of it.
ALONE = """
import os, pathlib, sys, time
mark = pathlib.Path(sys.argv[1]) / "busy"
os.close(os.open(mark, os.O_CREAT | os.O_EXCL))
time.sleep(0.3)
mark.unlink()
"""


class OwnNetwork(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.environment = os.environ | {"TMPDIR": str(self.folder)}

    def start(self, *command):
        return subprocess.Popen([OWN_NETWORK, *command], env=self.environment, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True)

    def end(self, process, within=60):
        output, errors = process.communicate(timeout=within)
        return process.returncode, output, errors

    def allow_none(self):
        """As where the system refuses."""
        programs = self.folder / "bin"
        programs.mkdir()
        (programs / "unshare").write_text("#!/bin/sh\necho 'unshare failed: Operation not permitted' >&2\nexit 1\n")
        (programs / "unshare").chmod(0o755)
        self.environment["PATH"] = f"{programs}:{self.environment['PATH']}"

    def test_two_have_the_same_port_at_once(self):
        if NO_NETWORKS in self.end(self.start("true"))[2]:
            self.skipTest(NO_NETWORKS)
        first = self.start(sys.executable, "-c", MEET, self.folder, "a", "b")
        second = self.start(sys.executable, "-c", MEET, self.folder, "b", "a")
        self.assertEqual((self.end(first)[0], self.end(second)[0]), (0, 0))

    def test_where_none_is_given_out_one_waits_for_the_other(self):
        self.allow_none()
        ended = [self.end(process) for process in [self.start(sys.executable, "-c", ALONE, self.folder) for _ in range(4)]]
        self.assertEqual([code for code, _, _ in ended], [0] * 4, ended)
        self.assertIn(NO_NETWORKS, ended[0][2])

    def test_the_commands_words_output_and_status_pass_through(self):
        words = ["a b", "", "$c", "'"]
        command = (sys.executable, "-c", "import sys; print(sys.argv[1:]); sys.exit(7)", *words)
        self.assertEqual(self.end(self.start(*command))[:2], (7, f"{words}\n"))
        self.allow_none()
        self.assertEqual(self.end(self.start(*command))[:2], (7, f"{words}\n"))

    def test_desktops_in_two_networks_have_two_displays(self):
        inside = [OWN_NETWORK.with_name("virtual-desktop"), "--no-wm", "--no-bus", "--", "sh", "-c", "echo $DISPLAY; cat"]
        if NO_NETWORKS in self.end(self.start("true"))[2]:
            self.skipTest(NO_NETWORKS)
        desktops = [subprocess.Popen([OWN_NETWORK, *inside], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
                    for _ in range(2)]
        displays = [desktop.stdout.readline() for desktop in desktops]
        for desktop in desktops:
            desktop.communicate(timeout=60)
        self.assertTrue(all(displays), displays)
        self.assertNotEqual(*displays)

    def test_the_command_runs_as_who_started_it(self):
        self.assertEqual(self.end(self.start("id", "-u"))[1], f"{os.getuid()}\n")


if __name__ == "__main__":
    unittest.main()
