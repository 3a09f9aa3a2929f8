"""The program tunnel_load, which loads a port or stands behind it."""

import contextlib
import os
import subprocess
import sys


class Load:
    def __init__(self, program):
        if not os.access(program, os.X_OK):
            sys.exit(f"{program} is not there: cmake --preset release && ninja -C build/release tunnel_load")
        self._program = program

    def run(self, what, port, clients, seconds):
        """Its figures by name."""
        output = subprocess.run(self._command(what, port, clients, seconds), capture_output=True, text=True, check=False)
        if output.returncode:
            sys.exit(f"{what} at port {port}: {output.stderr}")
        return {name: float(value) for name, value in (word.split("=") for word in output.stdout.split())}

    @contextlib.contextmanager
    def busy(self, what, port, clients, seconds):
        """Meanwhile that load is on the port."""
        process = subprocess.Popen(self._command(what, port, clients, seconds), stdout=subprocess.DEVNULL)
        try:
            yield
        finally:
            process.terminate()
            process.wait()

    @contextlib.contextmanager
    def idle(self, port, count):
        """Meanwhile so many connections are open and have nothing to say."""
        process = subprocess.Popen(
            self._command("idle", port, count, 0), stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        try:
            if process.stdout.readline() != "ready\n":
                sys.exit(f"{count} connections cannot be opened at port {port}")
            yield
        finally:
            process.stdin.close()
            process.wait()
            process.stdout.close()

    @contextlib.contextmanager
    def sink(self):
        """The port of what swallows everything and answers questions."""
        process = subprocess.Popen([self._program, "sink"], stdout=subprocess.PIPE, text=True)
        try:
            yield int(process.stdout.readline())
        finally:
            process.terminate()
            process.wait()
            process.stdout.close()

    def _command(self, what, port, clients, seconds):
        return [self._program, what, str(port), str(clients), str(seconds)]
