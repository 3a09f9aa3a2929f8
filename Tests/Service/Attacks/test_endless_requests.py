"""Requests whose parts never end: they cost the service little memory, and an answer ends them."""

import itertools
import select
import unittest

from attack import AttackTest, lab, memory_mib, request

MOST_GROWTH_MIB = 32
MOST_SENT = 96 * 1024 * 1024
PIECE = 64 * 1024
TOO_LARGE = {400, 413, 431}

CHUNKED = "Transfer-Encoding: chunked\r\n"
ENDLESS_BODIES = {
    "a chunk extension": (b"5;", b"a" * PIECE),
    "a quoted chunk extension": (b'5;a="', b"b" * PIECE),
    "the zeros of a chunk size": (b"0", b"0" * PIECE),
    "blanks behind a chunk size": (b"5", b" " * PIECE),
    "a trailer": (b"0\r\nTrailer: ", b"a" * PIECE),
    "many trailers": (b"0\r\n", b"Trailer: a\r\n" * 5000),
    "many small chunks with extensions": (b"", b"1;" + b"a" * 1000 + b"\r\nx\r\n"),
    "a body": (b"", b"ffff\r\n" + b"a" * 0xffff + b"\r\n"),
}
ENDLESS_HEADERS = {
    "a target": (b"GET /", b"a" * PIECE),
    "a method": (b"", b"A" * PIECE),
    "a version": (b"GET / HTTP/1.", b"1" * PIECE),
    "a field": (b"GET / HTTP/1.1\r\nX: ", b"a" * PIECE),
    "many fields": (b"GET / HTTP/1.1\r\n", b"X: a\r\n" * 10000),
}


class EndlessRequests(AttackTest):
    def setUp(self):
        super().setUp()
        self.service = self.start_service(lab())
        self.assert_answers(self.service)

    def status_after(self, begin, piece):
        """Sends without an end until an answer or the end comes; the answer's status."""
        before = memory_mib(self.service.process)
        wire = self.wire(self.service.port)
        wire.send(begin)
        sent = 0
        for part in itertools.repeat(piece):
            grown = memory_mib(self.service.process) - before
            self.assertLess(grown, MOST_GROWTH_MIB, f"after {sent >> 20} MiB")
            if select.select([wire.socket], [], [], 0)[0]:
                return wire.answer()[0]
            self.assertLess(sent, MOST_SENT, "it takes everything and says nothing")
            try:
                wire.send(part)
            except ConnectionError:
                return wire.answer()[0]
            sent += len(part)

    def feedback(self, fields):
        return request("POST", "/api/feedback", self.service.port, fields + CHUNKED)

    def test_body_without_token(self):
        for what, (begin, piece) in ENDLESS_BODIES.items():
            with self.subTest(what):
                self.assertIn(self.status_after(self.feedback("") + begin, piece), TOO_LARGE | {403})
                self.assert_answers(self.service)

    def test_body_with_token(self):
        for what, (begin, piece) in ENDLESS_BODIES.items():
            with self.subTest(what):
                fields = f"X-Veranox-Token: {self.service.token}\r\n"
                self.assertIn(self.status_after(self.feedback(fields) + begin, piece), TOO_LARGE)
                self.assert_answers(self.service)

    def test_header(self):
        for what, (begin, piece) in ENDLESS_HEADERS.items():
            with self.subTest(what):
                self.assertIn(self.status_after(begin, piece), TOO_LARGE)
                self.assert_answers(self.service)

    def test_what_is_within_the_bounds_is_taken(self):
        body = (b'c;name=value\r\n{"message":"\r\n' b'3;a="b"\r\nhi"\r\n'
                b'38\r\n,"kind":"k","contact":"","appVersion":"1.0.0","os":"Li"}\r\n0\r\nTrailer: a\r\n\r\n')
        wire = self.wire(self.service.port)
        wire.send(self.feedback(f"X-Veranox-Token: {self.service.token}\r\n") + body)
        self.assertEqual(wire.answer()[0], 200)


if __name__ == "__main__":
    unittest.main()
