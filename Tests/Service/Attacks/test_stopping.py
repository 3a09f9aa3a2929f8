"""Whoever is being waited for: a stop takes all clients with it, and the service ends within a second."""

import signal
import unittest

from attack import AttackTest, Seconds, eventually

CLIENTS = 20
END_SECONDS = 1.0
STOP_SECONDS = 1.0


class Stopping(AttackTest):
    def clients(self, port, active):
        wires = [self.wire(port) for _ in range(CLIENTS)]
        self.assertTrue(eventually(lambda: active() == CLIENTS), f"{active()} of {CLIENTS}")
        return wires

    def waiting_for_dial(self):
        service, port = self.start_tunnel(self.full_host())
        return service, "/api/tunnels/t", self.clients(port, lambda: service.tunnel("t")["ActiveConns"])

    def waiting_in_handshake(self):
        service, port = self.start_publication(9, TLS=True)
        return service, "/api/publications/web", self.clients(
            port, lambda: service.publication("web")["ActiveConns"])

    def with_live_streams(self):
        host = self.start_host()
        service, port = self.start_tunnel(host.port)
        return service, "/api/tunnels/t", self.clients(port, lambda: service.tunnel("t")["ActiveConns"])

    def with_stuck_receivers(self):
        host = self.start_host(lambda connection: None)
        service, port = self.start_tunnel(host.port)
        wires = self.clients(port, lambda: service.tunnel("t")["ActiveConns"])
        for wire in wires:
            wire.socket.setblocking(False)
            for _ in range(1000):
                try:
                    wire.send(bytes(65536))
                except BlockingIOError:
                    break
        return service, "/api/tunnels/t", wires

    def active(self, service, path):
        record = service.tunnel("t") if "tunnels" in path else service.publication("web")
        return record["ActiveConns"]

    def assert_stop_ends_them(self, service, path, wires):
        service.ask("POST", f"{path}/stop")
        self.assertTrue(eventually(lambda: self.active(service, path) == 0, STOP_SECONDS), "still counted")
        for wire in wires:
            self.assertTrue(wire.is_ended(STOP_SECONDS), "a client still waits")

    def assert_process_ends(self, service):
        with Seconds() as time:
            service.process.send_signal(signal.SIGTERM)
            self.assertEqual(service.process.wait(10), 0)
        self.assertLess(time.taken, END_SECONDS)

    def test_stop_while_dialling(self):
        self.assert_stop_ends_them(*self.waiting_for_dial())

    def test_stop_while_shaking_hands(self):
        self.assert_stop_ends_them(*self.waiting_in_handshake())

    def test_stop_of_live_streams(self):
        self.assert_stop_ends_them(*self.with_live_streams())

    def test_stop_of_stuck_streams(self):
        self.assert_stop_ends_them(*self.with_stuck_receivers())

    def test_end_while_dialling(self):
        self.assert_process_ends(self.waiting_for_dial()[0])

    def test_end_while_shaking_hands(self):
        self.assert_process_ends(self.waiting_in_handshake()[0])

    def test_end_of_stuck_streams(self):
        self.assert_process_ends(self.with_stuck_receivers()[0])

    def test_end_beside_control_clients_that_keep_it_waiting(self):
        service, _ = self.start_tunnel(self.full_host())
        begun = (b"", b"GET / HT", b"POST /api/feedback HTTP/1.1\r\nHost: 127.0.0.1:%d\r\n"
                 b"Content-Length: 100\r\nX-Veranox-Token: %s\r\n\r\n{" % (service.port, service.token.encode()),
                 b"GET /api/reports/path?target=inner.tail1.ts.net HTTP/1.1\r\nHost: 127.0.0.1:%d\r\n\r\n"
                 % service.port)
        for words in begun:
            self.wire(service.port).send(words)
        self.assert_answers(service)  # so those before it have been taken
        self.assert_process_ends(service)


if __name__ == "__main__":
    unittest.main()
