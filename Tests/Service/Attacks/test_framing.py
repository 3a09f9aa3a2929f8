"""Requests that two readers could cut apart in two ways: they end the connection, and nothing hides in them."""

import unittest

from attack import ANSWER_TIME, AttackTest, eventually, lab, request

HIDDEN = "GET /hidden HTTP/1.1\r\nHost: 127.0.0.1:{port}\r\n\r\n"
REFUSED = (
    "Content-Length: 0\r\nTransfer-Encoding: chunked\r\n",
    "Transfer-Encoding: chunked\r\nContent-Length: 0\r\n",
    "Content-Length: 0\r\nContent-Length: 5\r\n",
    "Content-Length: 0, 5\r\n",
    "Content-Length: +0\r\n",
    "Content-Length: -1\r\n",
    "Content-Length: 0x0\r\n",
    "Content-Length: \r\n",
    "Content-Length: 99999999999999999999999\r\n",
    "Content-Length : 0\r\n",
    "Transfer-Encoding : chunked\r\n",
    "X\x00Y: a\r\n",
    "X: a\x00b\r\n",
    "no colon\r\n",
    ": no name\r\n",
)
UNKNOWN_CODINGS = ("gzip", "identity", "chunked, identity", "gzip, chunked", "xchunked", "chunked, chunked", "\x0bchunked",
                   "chunked\r\nTransfer-Encoding: gzip", "identity\r\nTransfer-Encoding: chunked")
BAD_CHUNKS = (b"-1\r\n", b"0x1\r\na\r\n", b"+1\r\na\r\n", b"g\r\n", b"ffffffffffffffff1\r\n", b"\r\n", b" 1\r\na\r\n",
              b"1\r\nab\r\n", b"1\na\n")


class Framing(AttackTest):
    def setUp(self):
        super().setUp()
        self.service = self.start_service(lab())
        self.hidden = HIDDEN.format(port=self.service.port).encode()

    def exchange(self, words):
        """The statuses of all answers until the service closes."""
        wire = self.wire(self.service.port)
        wire.send(words)
        statuses = []
        try:
            while True:
                statuses.append(wire.answer()[0])
        except (EOFError, ConnectionError):
            return statuses
        except TimeoutError:
            return [*statuses, "still open"]

    def write(self, fields, body=b""):
        fields = f"X-Veranox-Token: {self.service.token}\r\n{fields}"
        return request("POST", "/api/tunnels/none/stop", self.service.port, fields, body)

    def test_two_lengths_and_fields_that_are_none(self):
        for fields in REFUSED:
            with self.subTest(fields):
                for words in (request("GET", "/api/health", self.service.port, fields), self.write(fields)):
                    self.assertEqual(self.exchange(words + self.hidden), [400])

    def test_unknown_codings(self):
        for coding in UNKNOWN_CODINGS:
            with self.subTest(coding):
                field = f"Transfer-Encoding: {coding}\r\n"
                for words in (request("GET", "/api/health", self.service.port, field), self.write(field)):
                    statuses = self.exchange(words + self.hidden)
                    self.assertEqual(len(statuses), 1, statuses)
                    self.assertIn(statuses[0], (400, 501))

    def test_an_unknown_coding_alone_is_told(self):
        for coding in ("gzip", "gzip, chunked"):
            words = self.write(f"Transfer-Encoding: {coding}\r\n")
            self.assertEqual(self.exchange(words + self.hidden), [501])

    def test_chunks_that_are_none(self):
        for chunk in BAD_CHUNKS:
            with self.subTest(chunk):
                words = self.write("Transfer-Encoding: chunked\r\n") + chunk
                self.assertEqual(self.exchange(words + self.hidden), [400])

    def test_a_second_connection_field_counts(self):
        for fields in ("Connection: keep-alive\r\nConnection: close\r\n", "Connection: close\r\nConnection: keep-alive\r\n",
                       "Connection: keep-alive, close\r\n", "Connection: CLOSE\r\n"):
            with self.subTest(fields):
                words = request("GET", "/api/health", self.service.port, fields)
                self.assertEqual(self.exchange(words + self.hidden), [200])

    def test_what_hides_in_a_body_stays_there(self):
        length = f"Content-Length: {len(self.hidden)}\r\n"
        chunked = b"%x\r\n%s\r\n0\r\n\r\n" % (len(self.hidden), self.hidden)
        for words in (self.write(length) + self.hidden, self.write("Transfer-Encoding: chunked\r\n") + chunked):
            last = request("GET", "/api/health", self.service.port, "Connection: close\r\n")
            self.assertEqual(self.exchange(words + last), [404, 200])

    def test_requests_behind_each_other_are_answered_in_order(self):
        words = request("GET", "/api/health", self.service.port) * 50
        last = request("GET", "/hidden", self.service.port, "Connection: close\r\n")
        self.assertEqual(self.exchange(words + last), [200] * 50 + [404])

    def test_no_http_at_all(self):
        for words in (b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" + bytes(500), b"\x00" * 1000, b"SSH-2.0-x\r\n",
                      b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", b"GET / HTTP/9.9\r\n\r\n", b"GET /\r\n\r\n"):
            with self.subTest(words[:20]):
                self.assertEqual(self.exchange(words), [400])
        self.assertTrue(eventually(lambda: self.service.ask("GET", "/api/health"), ANSWER_TIME))


if __name__ == "__main__":
    unittest.main()
