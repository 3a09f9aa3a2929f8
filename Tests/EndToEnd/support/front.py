"""Stands before the service on the application's port, passes every request on and keeps count."""
import http.client
import http.server
import threading
import time

from .polling import eventually
from .programs import PORT


class _Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def _pass_on(self):
        front = self.server.front
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        front.note(self.command, self.path)
        headers = {name: value for name, value in self.headers.items() if name.lower() != "host"}
        upstream = http.client.HTTPConnection("127.0.0.1", front.service_port, timeout=10)
        try:
            upstream.request(self.command, self.path, body or None, headers)
            answer = upstream.getresponse()
            content = answer.read()
        except OSError:
            self.close_connection = True  # as a service that is not there
            return
        finally:
            upstream.close()
        self.send_response_only(answer.status)
        for name, value in answer.getheaders():
            if name.lower() not in ("transfer-encoding", "content-length", "connection"):
                self.send_header(name, value)
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        self.wfile.write(content)

    do_GET = do_POST = do_DELETE = _pass_on

    def log_message(self, *_):
        pass


class CountingFront:
    """Listens from construction to stop(). `requests` are "METHOD /path" in the order of arrival."""

    def __init__(self, service_port):
        self.service_port = service_port
        self._lock = threading.Lock()
        self._requests = []
        self._last = time.monotonic()
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", PORT), _Handler)
        self._server.daemon_threads = True
        self._server.front = self
        self._thread = threading.Thread(target=self._server.serve_forever, args=(0.05,), daemon=True)
        self._thread.start()

    def note(self, method, path):
        with self._lock:
            self._requests.append(f"{method} {path}")
            self._last = time.monotonic()

    def count(self, request):
        with self._lock:
            return self._requests.count(request)

    def heard(self):
        """All of them."""
        with self._lock:
            return list(self._requests)

    def await_quiet(self, during=1.0):
        """Returns when no request has come for so many seconds: what follows is not part of the start."""
        eventually(lambda: time.monotonic() - self._last >= during, "no more requests")

    def stop(self):
        self._server.shutdown()
        self._server.server_close()
        self._thread.join()
