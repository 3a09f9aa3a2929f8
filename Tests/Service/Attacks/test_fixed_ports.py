"""A passing connection that happens to have a tunnel's port: it is waited out."""

import socket
import unittest

from attack import AttackTest, eventually, free_port, lab, reset


class FixedPorts(AttackTest):
    def setUp(self):
        super().setUp()
        self.host, self.port = self.start_host(), free_port()

    def start_beside(self):
        return self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "inner.tail1.ts.net:80", "Listen": f"127.0.0.1:{self.port}"}},
            hosts={"inner": f"127.0.0.1:{self.host.port}"}))

    def passing_connection(self):
        """One from that port to somewhere else, as the system gives it out to whoever dials."""
        passing = socket.socket()
        self.addCleanup(passing.close)
        passing.bind(("127.0.0.1", self.port))
        passing.connect(("127.0.0.1", self.host.port))
        return passing

    def test_it_listens_once_the_connection_has_gone(self):
        passing = self.passing_connection()
        service = self.start_beside()
        said = eventually(lambda: service.tunnel("t")["LastError"])
        self.assertIn(f"127.0.0.1:{self.port}", said)
        self.assertIn("connection", said)
        self.assertNotEqual(service.tunnel("t")["State"], "listening")
        reset(passing)
        self.assertTrue(eventually(lambda: service.tunnel("t")["State"] == "listening"), service.tunnel("t"))
        self.assertEqual(service.tunnel("t")["LastError"], "")
        self.assert_carries(self.port)

    def test_another_listener_is_told(self):
        with socket.create_server(("127.0.0.1", self.port)):
            service = self.start_beside()
            said = eventually(lambda: service.tunnel("t")["LastError"])
            self.assertIn("is taken by python", said)
            self.assertEqual(service.tunnel("t")["State"], "error")


if __name__ == "__main__":
    unittest.main()
