"""Stands before the service on the application's port and lets no record stay as it is: with every answer each tunnel
and publication is in another state, and one profile goes on starting, so that the application asks every 2 seconds."""
import collections
import http.client
import http.server
import json
import threading

from support.programs import PORT

STATES = (("listening", ""), ("starting", ""), ("error", "the host does not answer"))


def _shifted(records, turn):
    for index, record in enumerate(records):
        record["State"], record["LastError"] = STATES[(index + turn) % len(STATES)]
        record["ActiveConns"] = (index + turn) % 7
    return records


def _starting(profiles, _):
    profiles[0]["status"] |= {"backend_state": "Starting", "ok": False}
    return profiles


SHIFTS = {"/api/tunnels": _shifted, "/api/publications": _shifted, "/api/profiles": _starting}


class _Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True

    def do_GET(self):
        upstream = http.client.HTTPConnection("127.0.0.1", self.server.service_port, timeout=10)
        upstream.request("GET", self.path)
        answer = upstream.getresponse()
        content = answer.read()
        upstream.close()
        if shift := SHIFTS.get(self.path):
            self.server.turns[self.path] += 1
            content = json.dumps(shift(json.loads(content), self.server.turns[self.path])).encode()
        self.send_response_only(answer.status)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        self.wfile.write(content)

    def log_message(self, *_):
        pass


class ShiftingFront:
    """Listens from construction to stop()."""

    def __init__(self, service_port):
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", PORT), _Handler)
        self._server.daemon_threads = True
        self._server.service_port = service_port
        self._server.turns = collections.Counter()
        threading.Thread(target=self._server.serve_forever, args=(0.05,), daemon=True).start()

    @property
    def refreshes(self):
        return self._server.turns["/api/tunnels"]

    def stop(self):
        self._server.shutdown()
        self._server.server_close()
