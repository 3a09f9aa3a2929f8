"""What the attacks have in common: the real service, raw bytes to it, hosts that misbehave, and looks at its process."""

import contextlib
import os
import pwd
import resource
import socket
import struct
import subprocess
import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "Peers"))

# pylint: disable-next=wrong-import-position
from support import PROGRAM, PeerTest, answers, eventually, free_port, lab  # noqa: E402,F401

ANSWER_TIME = 10  # seconds after which an answer counts as missing
SUPPORT_FOLDER = ".local/share/Veranox"
CONFIG = ".config/veranox/config.json"


class Wire:
    """One connection that says exactly what it is told to."""

    def __init__(self, port, host="127.0.0.1"):
        self.socket = socket.create_connection((host, port), timeout=ANSWER_TIME)
        self.rest = b""

    def send(self, data):
        self.socket.sendall(data)

    def answer(self):
        """Status, header fields in lower case, and body of the next answer."""
        head = self._take(b"\r\n\r\n").decode("latin-1")
        lines = head.split("\r\n")
        fields = {name.lower(): value.strip() for name, value in (line.split(":", 1) for line in lines[1:] if line)}
        body = self._take_count(int(fields.get("content-length", 0)))
        return int(lines[0].split()[1]), fields, body

    def is_ended(self, within=ANSWER_TIME):
        """Whether the other side closes, whatever it still sends."""
        self.socket.settimeout(within)
        with contextlib.suppress(ConnectionError):
            try:
                while self.socket.recv(65536):
                    pass
            except TimeoutError:
                return False
        return True

    def reset(self):
        reset(self.socket)

    def close(self):
        self.socket.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def _take(self, end):
        while end not in self.rest:
            piece = self.socket.recv(65536)
            if not piece:
                raise EOFError(f"the connection ended after {self.rest!r}")
            self.rest += piece
        taken, self.rest = self.rest.split(end, 1)
        return taken

    def _take_count(self, count):
        while len(self.rest) < count:
            piece = self.socket.recv(65536)
            if not piece:
                raise EOFError(f"the connection ended after {self.rest!r}")
            self.rest += piece
        taken, self.rest = self.rest[:count], self.rest[count:]
        return taken


def reset(connection):
    """Ends it as a crash does: with a reset."""
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    connection.close()


class Host:
    """A host behind the service that treats each connection as `serve` does, on a thread of its own."""

    def __init__(self, serve):
        self.listener = socket.create_server(("127.0.0.1", 0), backlog=4096)
        self.port = self.listener.getsockname()[1]
        self.connections = []
        self._serve = serve
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            try:
                connection, _ = self.listener.accept()
            except OSError:
                return
            self.connections.append(connection)
            if self._serve:
                threading.Thread(target=self._run, args=(connection,), daemon=True).start()

    def _run(self, connection):
        with contextlib.suppress(OSError):
            self._serve(connection)

    def close(self):
        # An accept that waits keeps the port listening beyond close().
        with contextlib.suppress(OSError):
            self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()
        for connection in self.connections:
            connection.close()


def echo(connection):
    while piece := connection.recv(65536):
        connection.sendall(piece)
    connection.close()


def memory_mib(process):
    status = Path(f"/proc/{process.pid}/status").read_text()
    return next(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmRSS:")) / 1024


def descriptors(process):
    return len(list(Path(f"/proc/{process.pid}/fd").iterdir()))


def use_all_descriptors():
    """A crowd needs more than a shell gives out."""
    hard = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))


class Seconds:
    """How long a block took."""

    def __enter__(self):
        self._begin = time.monotonic()
        return self

    def __exit__(self, *_):
        self.taken = time.monotonic() - self._begin


class AttackTest(PeerTest):
    def start_host(self, serve=echo):
        host = Host(serve)
        self.addCleanup(host.close)
        return host

    def wire(self, port):
        wire = Wire(port)
        self.addCleanup(wire.close)
        return wire

    def start_tunnel(self, target_port, **options):
        """A service with the tunnel "t", ready, to a host at that port. Returns it and the tunnel's port."""
        port = free_port()
        service = self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "inner.tail1.ts.net:80", "Listen": f"127.0.0.1:{port}"}},
            hosts={"inner": f"127.0.0.1:{target_port}"}), **options)
        self.assertTrue(eventually(lambda: service.tunnel("t")["State"] == "listening"))
        return service, port

    def start_publication(self, target_port, **settings):
        """A service with the publication "web", ready, at a port of loopback. Returns it and the port."""
        port = free_port()
        network = lab(publications={
            "web": {"Profile": "q", "Target": f"127.0.0.1:{target_port}", "Port": port, **settings}})
        network["profiles"]["q"]["node_address"] = "127.0.0.1"
        service = self.start_service(network)
        self.assertTrue(eventually(lambda: answers(port)))
        return service, port

    def run_service(self, *arguments, **options):
        """A service that is expected to end by itself; how it ended and what it said."""
        return subprocess.run(
            [PROGRAM, "gui", "serve", "--listen", "127.0.0.1:0", *arguments], capture_output=True, text=True,
            timeout=ANSWER_TIME, check=False, **{"env": {"HOME": str(self.folder / "home")}, **options})

    def assert_refuses_to_start(self, **options):
        """It ends with status 2 and one sentence, which is given back."""
        try:
            ended = self.run_service(**options)
        except subprocess.TimeoutExpired:
            self.fail("it starts")
        self.assertEqual(ended.returncode, 2, ended.stderr)
        self.assertRegex(ended.stderr, r"\Averanox: [^\n]+\.\n\Z")
        return ended.stderr

    def assert_answers(self, service):
        self.assertEqual(service.ask("GET", "/api/health"), {"status": "ok"})

    def assert_carries(self, port, data=b"still carried"):
        """A new client gets through, to a host that echoes."""
        with Wire(port) as wire:
            wire.send(data)
            got = b""
            while len(got) < len(data):
                piece = wire.socket.recv(65536)
                self.assertTrue(piece, "the stream ended")
                got += piece
            self.assertEqual(got, data)

    def full_host(self):
        """The port of a host that takes no further connection: whoever dials it waits."""
        stuck = socket.socket()
        self.addCleanup(stuck.close)
        stuck.bind(("127.0.0.1", 0))
        stuck.listen(0)
        for _ in range(4):  # more than it has room for
            client = socket.socket()
            self.addCleanup(client.close)
            client.setblocking(False)
            client.connect_ex(stuck.getsockname())
        return stuck.getsockname()[1]


def plain_user(*folders):
    """Popen's options for a user to whom file modes mean something; the folders, and what is in them, become his."""
    if os.geteuid() != 0:
        return {}
    nobody = pwd.getpwnam("nobody")
    for folder in folders:
        for path in (folder, *folder.rglob("*")):
            os.chown(path, nobody.pw_uid, nobody.pw_gid, follow_symlinks=False)
    return {"user": nobody.pw_uid, "group": nobody.pw_gid, "extra_groups": []}


def request(method, path, port, fields="", body=b""):
    """The bytes of a request with a Host of this service; `fields` are whole lines."""
    return f"{method} {path} HTTP/1.1\r\nHost: 127.0.0.1:{port}\r\n{fields}\r\n".encode() + body
