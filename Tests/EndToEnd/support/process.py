"""A program under test: started, watched and ended, its output kept in a file."""
import signal
import subprocess
import time

from .polling import eventually


class Process:
    """A running program. Both outputs go to the file `log`."""

    def __init__(self, command, environment, log):
        self.log = log
        self.started_at = time.monotonic()
        with open(log, "ab") as output:
            self.popen = subprocess.Popen(
                [str(word) for word in command], env=environment, stdin=subprocess.DEVNULL, stdout=output, stderr=output)

    @property
    def pid(self):
        return self.popen.pid

    @property
    def running(self):
        return self.popen.poll() is None

    def output(self):
        return self.log.read_text(errors="replace")

    def signal(self, number):
        self.popen.send_signal(number)

    def wait(self, within):
        """The exit status, negative for a signal; AssertionError when it does not come in time."""
        try:
            return self.popen.wait(within)
        except subprocess.TimeoutExpired:
            raise AssertionError(
                f"{self.popen.args[0]} still runs after {within:g} s; its output:\n{self.output()}") from None

    def await_output(self, text, within=10.0):
        eventually(lambda: text in self.output(), f"{text!r} in {self.log.name}", within)

    def kill(self):
        """Ends it at once, whatever its state; harmless when it has ended."""
        if self.running:
            self.popen.send_signal(signal.SIGKILL)
        self.popen.wait()
