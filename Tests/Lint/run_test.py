#!/usr/bin/python3
"""scripts/run before a port that is taken. Needs a network of its own: see Tests/Support/own-network.

usage: run_test.py SCRIPTS_RUN
"""
import os
import socket
import subprocess
import sys
import unittest

RUN = os.path.realpath(sys.argv.pop(1))
PORT = 43200


class PortTaken(unittest.TestCase):
    def test_it_says_so_and_changes_nothing(self):
        with socket.create_server(("127.0.0.1", PORT)):
            ended = subprocess.run([RUN], capture_output=True, text=True, timeout=60)
        self.assertEqual(ended.returncode, 2, ended.stderr)
        self.assertIn(f"something answers on 127.0.0.1:{PORT} already", ended.stderr)
        self.assertEqual(ended.stdout, "")


if __name__ == "__main__":
    unittest.main()
