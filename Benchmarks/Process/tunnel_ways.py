"""The ways from a port of this computer to another that are compared: the service, HAProxy, socat."""

import json
import os
import pathlib
import resource
import socket
import subprocess
import sys
import time


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def most_connections():
    """That a program in the middle can hold, with one descriptor for each side."""
    return (resource.getrlimit(resource.RLIMIT_NOFILE)[1] - 500) // 2


class Way:
    """A program that listens at `port` and passes on; up within the block."""

    def __init__(self, command, port, **options):
        self.port = port
        self._command, self._options = command, options

    def __enter__(self):
        self.process = subprocess.Popen(self._command, stdout=subprocess.DEVNULL, **self._options)
        for _ in range(400):
            with socket.socket() as probe:
                if probe.connect_ex(("127.0.0.1", self.port)) == 0:
                    return self
            time.sleep(0.05)
        sys.exit(f"{self._command[0]} does not listen at port {self.port}")

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def memory_kib(self):
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return next(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmRSS:"))


class Service(Way):
    """`control`: the port of its API."""

    def __init__(self, program, folder, target):
        self.control, port = free_port(), free_port()
        network = {
            "version": 1,
            "tailnets": {"net": {"suffix": ".tail1.ts.net", "hosts": {"sink": f"127.0.0.1:{target}"}}},
            "profiles": {"p": {"tailnet": "net", "config": {}}},
            "tunnels": {"t": {"config": {
                "Profile": "p", "Target": "sink.tail1.ts.net:9", "Listen": f"127.0.0.1:{port}"}}}}
        file = pathlib.Path(folder) / "lab.json"
        file.write_text(json.dumps(network))
        super().__init__(
            [program, "gui", "serve", "--listen", f"127.0.0.1:{self.control}", "--lab", file, "--log-level", "error"],
            port, env={"HOME": folder, "PATH": os.environ["PATH"]})


class HaProxy(Way):
    def __init__(self, folder, target):
        port = free_port()
        file = pathlib.Path(folder) / "haproxy.cfg"
        file.write_text(f"""
global
    maxconn {most_connections()}
    maxpipes 128
defaults
    mode tcp
    option splice-auto
    timeout connect 10s
    timeout client 1h
    timeout server 1h
listen tunnel
    bind 127.0.0.1:{port} backlog 4096
    server sink 127.0.0.1:{target}
""")
        super().__init__(["/usr/sbin/haproxy", "-db", "-q", "-f", file], port)


class Socat(Way):
    def __init__(self, target):
        port = free_port()
        super().__init__(
            ["socat", f"TCP-LISTEN:{port},bind=127.0.0.1,fork,reuseaddr,backlog=4096,nodelay",
             f"TCP:127.0.0.1:{target},nodelay"], port, stderr=subprocess.DEVNULL)
