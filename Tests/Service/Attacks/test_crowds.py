"""Crowds of clients that never go: they use up nothing that others need."""

import resource
import socket
import ssl
import unittest

from attack import (ANSWER_TIME, AttackTest, Wire, answers, descriptors, eventually, free_port, lab, request,
                    use_all_descriptors)

CROWD = 1100
FEW_DESCRIPTORS = 256


class Crowds(AttackTest):
    @classmethod
    def setUpClass(cls):
        use_all_descriptors()

    def crowd(self, port, count=CROWD):
        """As many of them as get in at all."""
        for _ in range(count):
            client = socket.socket()
            self.addCleanup(client.close)
            client.setblocking(False)
            client.connect_ex(("127.0.0.1", port))
            yield client

    def test_streams_to_a_host_that_never_closes(self):
        waits = self.start_host(serve=None)
        service, port = self.start_tunnel(waits.port)
        for client in self.crowd(port):
            self.assertTrue(eventually(lambda client=client: client.getsockopt(socket.SOL_SOCKET, socket.SO_ERROR) == 0))
            client.close()
        before = len(waits.connections)
        with Wire(port) as wire:
            wire.send(b"hello")
            self.assertTrue(eventually(
                lambda: any(connection.recv(100, socket.MSG_DONTWAIT | socket.MSG_PEEK) == b"hello"
                            for connection in waits.connections[before:] if self.has_data(connection))))
            self.assert_answers(service)

    @staticmethod
    def has_data(connection):
        try:
            return bool(connection.recv(1, socket.MSG_DONTWAIT | socket.MSG_PEEK))
        except OSError:
            return False

    def test_silent_tls_clients(self):
        host = self.start_host()
        service, port = self.start_publication(host.port, TLS=True)
        silent = list(self.crowd(port))
        self.assertEqual(len(silent), CROWD)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
        context.check_hostname, context.verify_mode = False, ssl.CERT_NONE
        with context.wrap_socket(socket.create_connection(("127.0.0.1", port), timeout=5)) as client:
            client.sendall(b"hello")
            self.assertEqual(client.recv(100), b"hello")
        self.assert_answers(service)

    def test_silent_control_clients(self):
        service = self.start_service(lab())
        silent = list(self.crowd(service.port))
        self.assertEqual(len(silent), CROWD)
        self.assert_answers(service)
        for client in silent[-50:]:
            client.setblocking(True)
            client.settimeout(ANSWER_TIME)
            try:
                client.sendall(b"GET / HT")
            except ConnectionError:
                pass
        self.assert_answers(service)


class FewDescriptors(AttackTest):
    def setUp(self):
        super().setUp()
        host, waits = self.start_host(), self.start_host(serve=None)
        self.crowded, self.other = free_port(), free_port()
        self.service = self.start_service(lab(
            tunnels={
                "crowded": {"Profile": "p", "Target": "waits.tail1.ts.net:80", "Listen": f"127.0.0.1:{self.crowded}"},
                "other": {"Profile": "p", "Target": "inner.tail1.ts.net:80", "Listen": f"127.0.0.1:{self.other}"}},
            hosts={"waits": f"127.0.0.1:{waits.port}", "inner": f"127.0.0.1:{host.port}"}),
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (FEW_DESCRIPTORS, FEW_DESCRIPTORS)))
        for port in (self.crowded, self.other):
            self.assertTrue(eventually(lambda port=port: answers(port)))

    def flood(self):
        clients = []
        for _ in range(2 * FEW_DESCRIPTORS):
            client = socket.socket()
            self.addCleanup(client.close)
            client.setblocking(False)
            client.connect_ex(("127.0.0.1", self.crowded))
            clients.append(client)
        self.assertTrue(eventually(lambda: descriptors(self.service.process) > FEW_DESCRIPTORS // 4))
        return clients

    def test_control_answers_beside_a_crowd(self):
        self.flood()
        for _ in range(20):
            with Wire(self.service.port) as wire:
                wire.send(request("GET", "/api/health", self.service.port))
                self.assertEqual(wire.answer()[0], 200)
        self.assertEqual(self.service.ask("POST", "/api/tunnels/other/restart")[0]["Name"], "crowded")

    def test_another_tunnel_takes_clients_beside_a_crowd(self):
        self.flood()
        for _ in range(20):
            self.assert_carries(self.other)

    def test_all_is_well_when_the_crowd_has_gone(self):
        for client in self.flood():
            client.close()
        self.assertTrue(eventually(lambda: self.service.tunnel("other")["State"] == "listening"))
        self.assert_carries(self.other)

    def test_a_crowd_at_control_leaves_the_tunnels_alone(self):
        for _ in range(2 * FEW_DESCRIPTORS):
            client = socket.socket()
            self.addCleanup(client.close)
            client.setblocking(False)
            client.connect_ex(("127.0.0.1", self.service.port))
        self.assert_carries(self.other)
        self.assert_answers(self.service)


if __name__ == "__main__":
    unittest.main()
