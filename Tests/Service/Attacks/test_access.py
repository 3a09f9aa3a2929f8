"""Who may ask: forms of Host, Origin and the token, and what a page of others sends along."""

import json
import unittest
import urllib.error

from attack import AttackTest, lab, request

SHUTDOWN = "/api/shutdown"


class Access(AttackTest):
    def setUp(self):
        super().setUp()
        self.service = self.start_service(lab())
        self.port = self.service.port

    def status(self, words):
        wire = self.wire(self.port)
        wire.send(words)
        status, _, body = wire.answer()
        if status >= 400:
            self.assertTrue(json.loads(body)["error"].endswith("."), body)
        return status

    def read(self, hosts, fields=""):
        lines = "".join(f"Host: {host}\r\n" for host in hosts)
        return self.status(f"GET /api/health HTTP/1.1\r\n{lines}{fields}\r\n".encode())

    def write(self, fields, path="/api/tunnels/none/stop"):
        return self.status(request("POST", path, self.port, fields + "Content-Length: 0\r\n"))

    def test_hosts_of_ours(self):
        for host in ("127.0.0.1", "localhost", "LocalHost", "[::1]"):
            self.assertEqual(self.read([f"{host}:{self.port}"]), 200, host)

    def test_hosts_of_others(self):
        own = f"127.0.0.1:{self.port}"
        for hosts in ([], [own, own], [own, "evil.example"], ["evil.example"], [f"evil.example:{self.port}"], ["127.0.0.1"],
                      [f"127.0.0.1:{self.port + 1}"], [f"127.0.0.1.:{self.port}"], [f"127.1:{self.port}"],
                      [f"2130706433:{self.port}"], [f"0177.0.0.1:{self.port}"], [f"0.0.0.0:{self.port}"],
                      [f"localhost.:{self.port}"], [f"127.0.0.1:0{self.port}"], [f"user@{own}"], [f"{own}, evil.example"],
                      [f"[::ffff:127.0.0.1]:{self.port}"], [f"::1:{self.port}"], [f"{own}/"], [""]):
            with self.subTest(hosts):
                self.assertEqual(self.read(hosts), 421)

    def test_origins(self):
        own = [f"127.0.0.1:{self.port}"]
        for host in ("127.0.0.1", "localhost", "[::1]"):
            self.assertEqual(self.read(own, f"Origin: http://{host}:{self.port}\r\n"), 200)
        for origin in ("null", "", "http://evil.example", f"http://evil.example:{self.port}", "http://127.0.0.1",
                       f"https://127.0.0.1:{self.port}", f"http://127.0.0.1:{self.port + 1}", "file://",
                       f"http://127.0.0.1:{self.port}.evil.example", f"http://127.0.0.1:{self.port}/",
                       f"http://127.0.0.1:{self.port} http://evil.example"):
            with self.subTest(origin):
                self.assertEqual(self.read(own, f"Origin: {origin}\r\n"), 400)
        for origin in (f"http://127.0.0.1:{self.port}", "null"):
            token = f"X-Veranox-Token: {self.service.token}\r\n"
            self.assertEqual(self.write(f"{token}Origin: {origin}\r\n"), 400, "no page may change anything")

    def test_reads_that_a_page_of_others_causes(self):
        own = [f"127.0.0.1:{self.port}"]
        for value in ("same-origin", "none"):
            self.assertEqual(self.read(own, f"Sec-Fetch-Site: {value}\r\n"), 200, value)
        for value in ("cross-site", "same-site", "", "same-origin, cross-site", "SAME-SITE", "anything else"):
            with self.subTest(value):
                self.assertIn(self.read(own, f"Sec-Fetch-Site: {value}\r\n"), (400, 403))
        both = "Sec-Fetch-Site: same-origin\r\nSec-Fetch-Site: cross-site\r\n"
        self.assertIn(self.read(own, both), (400, 403))

    def test_tokens(self):
        token = self.service.token
        field = "X-Veranox-Token: {}\r\n"
        self.assertEqual(self.write(field.format(token)), 404)
        self.assertEqual(self.write(field.format(token).replace("X-Veranox", "x-vERANOX")), 404)
        wrong = ("", token[:-1], token + "0", token.upper(), token[::-1], "0" * 64, f'"{token}"', f"{token} {token}")
        for fields in ["", *(field.format(text) for text in wrong), field.format(token) * 2,
                       field.format("0" * 64) + field.format(token), f"Authorization: Bearer {token}\r\n",
                       f"Cookie: X-Veranox-Token={token}\r\n"]:
            with self.subTest(fields):
                self.assertEqual(self.write(fields), 403)
                self.assertEqual(self.write(fields, SHUTDOWN), 403)
        self.assertEqual(self.write("", f"{SHUTDOWN}?X-Veranox-Token={token}"), 403)
        self.assert_answers(self.service)

    def test_a_body_is_not_waited_for_before_the_token_has_been_looked_at(self):
        for fields in ("Content-Length: 4000000\r\n", "Transfer-Encoding: chunked\r\n",
                       "Content-Length: 4000000\r\nExpect: 100-continue\r\n"):
            with self.subTest(fields):
                wire = self.wire(self.port)
                wire.send(request("POST", "/api/config", self.port, fields))
                wire.socket.settimeout(3)
                self.assertEqual(wire.answer()[0], 403)

    def test_a_new_start_has_a_new_token(self):
        old = self.service.token
        self.assertEqual(self.service.end(), 0)
        self.service = self.start_service(lab())
        self.port = self.service.port
        self.assertNotEqual(self.service.token, old)
        self.assertEqual(self.write(f"X-Veranox-Token: {old}\r\n"), 403)
        with self.assertRaises(urllib.error.HTTPError) as refused:
            self.service.ask("POST", "/api/tunnels/none/stop")
        self.assertEqual(refused.exception.code, 404)


if __name__ == "__main__":
    unittest.main()
