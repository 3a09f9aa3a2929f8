"""The real service on a lab network of its own, and what a test needs around it."""

import json
import os
import signal
import socket
import subprocess
import tempfile
import threading
import time
import unittest
import urllib.request
from pathlib import Path

PROGRAM = os.environ["VERANOX_EXECUTABLE"]
PATIENCE = 20


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def eventually(condition, patience=PATIENCE):
    """The first true value of the condition, or its last value once patience has run out."""
    deadline = time.monotonic() + patience
    while True:
        value = condition()
        if value or time.monotonic() > deadline:
            return value
        time.sleep(0.05)


def answers(port):
    """Whether something accepts connections there."""
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


def lab(tunnels=None, publications=None, hosts=None):
    """A network in which two profiles share one tailnet and everything is up at once."""
    profile = {"tailnet": "net", "config": {"Suffixes": [".tail1.ts.net"]}}
    return {
        "version": 1,
        "tailnets": {"net": {"suffix": ".tail1.ts.net", "hosts": hosts or {}}},
        "profiles": {"p": profile, "q": {"tailnet": "net", "config": {"Hostname": "desk"}}},
        "tunnels": {name: {"config": config} for name, config in (tunnels or {}).items()},
        "publications": {name: {"config": config} for name, config in (publications or {}).items()},
    }


class Service:
    """`veranox gui serve`, listening. `options` are those of subprocess.Popen."""

    def __init__(self, folder, network, variables=None, **options):
        self.home = Path(folder) / "home"
        self.home.mkdir(exist_ok=True)
        file = Path(folder) / "lab.json"
        file.write_text(json.dumps(network))
        keep = {name: os.environ[name] for name in ("PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS") if name in os.environ}
        self.process = subprocess.Popen(
            [PROGRAM, "gui", "serve", "--listen", "127.0.0.1:0", "--lab", str(file)],
            env={"HOME": str(self.home), **keep, **(variables or {})}, stdout=subprocess.PIPE, text=True, **options)
        self.port = self._read_port()
        threading.Thread(target=self.process.stdout.read, daemon=True).start()

    def _read_port(self):
        for line in self.process.stdout:
            if "event_code=service_listening" in line:
                return int(line.split(" address=")[1].split()[0].rsplit(":", 1)[1])
        raise RuntimeError("the service ended without listening")

    @property
    def token(self):
        return (self.home / ".local/share/Veranox/control.token").read_text().strip()

    def ask(self, method, path, body=None):
        request = urllib.request.Request(
            f"http://127.0.0.1:{self.port}{path}", method=method, data=json.dumps(body).encode() if body else None,
            headers={"X-Veranox-Token": self.token, "Content-Type": "application/json"})
        with urllib.request.urlopen(request, timeout=PATIENCE) as answer:
            return json.load(answer)

    def tunnel(self, name):
        return next(tunnel for tunnel in self.ask("GET", "/api/tunnels") if tunnel["Name"] == name)

    def publication(self, name):
        return next(entry for entry in self.ask("GET", "/api/publications") if entry["Name"] == name)

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(PATIENCE)


class PeerTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="veranox-peers-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def start_service(self, network, variables=None, **options):
        service = Service(self.folder, network, variables, **options)
        self.addCleanup(service.process.stdout.close)
        self.addCleanup(lambda: service.process.poll() is None and service.end())
        return service

    def start(self, arguments, **options):
        """Another program, ended with the test."""
        process = subprocess.Popen(arguments, **options)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        return process

    def run_program(self, *arguments, **options):
        return subprocess.run(arguments, capture_output=True, text=True, timeout=PATIENCE, check=False, **options)
