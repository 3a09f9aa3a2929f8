"""A service whose disk fails, hangs or comes up short at one step, when a test says so."""

import errno
import json
import os
import threading
import time

from attack import CONFIG, AttackTest, Wire, answers, eventually, free_port, lab

STEPS = ("open", "write", "sync-file", "rename", "sync-folder")
FAILURES = {"EIO": errno.EIO, "ENOSPC": errno.ENOSPC}
CONFIG_FOLDER = ".config/veranox"


class Echoes:
    """A stream through a tunnel that is asked for its echo all the time."""

    def __init__(self, port):
        self._wire = Wire(port)
        self._is_over = threading.Event()
        self.longest, self.count = 0.0, 0
        self._thread = threading.Thread(target=self._run)

    def _run(self):
        while not self._is_over.wait(0.005):
            begin = time.monotonic()
            self._wire.send(b"?")
            if self._wire.socket.recv(1) != b"?":
                return
            self.longest = max(self.longest, time.monotonic() - begin)
            self.count += 1

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._is_over.set()
        self._thread.join()
        self._wire.close()


class DiskTest(AttackTest):
    preload = os.environ["VERANOX_DISK_STEPS"]

    def setUp(self):
        super().setUp()
        self.step = self.folder / "step"
        self.step.write_text("")
        self.addCleanup(self.step.write_text, "")
        self.port, self.host = free_port(), self.start_host()
        self.network = lab(
            tunnels={"t": {"Profile": "p", "Target": "inner.tail1.ts.net:80", "Listen": f"127.0.0.1:{self.port}"}},
            hosts={"inner": f"127.0.0.1:{self.host.port}"})
        self.service = self.start_on_that_disk()

    def start_on_that_disk(self):
        service = self.start_service(
            self.network, {"LD_PRELOAD": self.preload, "VERANOX_DISK_STEP": str(self.step)})
        self.assertTrue(eventually(lambda: answers(self.port)))
        return service

    def let(self, step, way, where=CONFIG_FOLDER):
        """From now on the step goes that way for whatever has `where` in its path."""
        met = self.folder / "step.met"
        met.unlink(missing_ok=True)
        # In one piece: the service may look at any moment.
        new = self.folder / "step.next"
        new.write_text(f"{step} {way} {where}")
        new.rename(self.step)
        return met

    def mend(self):
        self.let("", "", "nothing at all")

    def hostname_base(self):
        return self.service.ask("GET", "/api/config")["Router"]["ProfileHostnameBase"]

    def base_on_disk(self):
        return json.loads((self.service.home / CONFIG).read_text())["Router"]["ProfileHostnameBase"]

    def save(self, base):
        """Not forced, so that a file that is not what the service believes shows."""
        config = self.service.ask("GET", "/api/config")
        config["Router"]["ProfileHostnameBase"] = base
        return self.write("/api/config", config)

    def write(self, path, body):
        """Status and body of the answer."""
        data = json.dumps(body).encode()
        with Wire(self.service.port) as wire:
            wire.send(f"POST {path} HTTP/1.1\r\nHost: 127.0.0.1:{self.service.port}\r\nX-Veranox-Token: "
                      f"{self.service.token}\r\nContent-Length: {len(data)}\r\n\r\n".encode() + data)
            status, _, answer = wire.answer()
            return status, json.loads(answer)

    def in_background(self, action):
        thread = threading.Thread(target=action)
        thread.start()
        self.addCleanup(thread.join)
        self.addCleanup(self.mend)  # before that, or it waits for ever
        return thread
