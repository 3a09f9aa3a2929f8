"""A host that a path report asks and that answers without an end."""

import itertools
import threading
import unittest

from attack import AttackTest, eventually, lab, memory_mib

MOST_GROWTH_MIB = 32
MOST_SENT = 128 * 1024 * 1024
PIECE = 64 * 1024
CHUNKED = b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"

ENDLESS = {
    "a status line": (b"HTTP/1.1 200 ", b"a" * PIECE),
    "a field": (b"HTTP/1.1 200 OK\r\nX: ", b"a" * PIECE),
    "many fields": (b"HTTP/1.1 200 OK\r\n", b"X: a\r\n" * 10000),
    "interim answers": (b"", b"HTTP/1.1 100 Continue\r\n\r\n" * 2000),
    "a chunk extension": (CHUNKED + b"5;", b"a" * PIECE),
    "the zeros of a chunk size": (CHUNKED + b"0", b"0" * PIECE),
    "a trailer": (CHUNKED + b"0\r\nTrailer: ", b"a" * PIECE),
    "chunks with extensions": (CHUNKED, b"1;" + b"a" * 4000 + b"\r\nx\r\n"),
    "a body": (b"HTTP/1.1 200 OK\r\n\r\n", b"a" * PIECE),
    "no HTTP": (b"", b"a" * PIECE),
}


def sending_for_ever(begin, piece):
    def serve(connection):
        connection.sendall(begin)
        for _ in itertools.repeat(None, MOST_SENT // len(piece)):
            connection.sendall(piece)
    return serve


class EndlessAnswers(AttackTest):
    def start_reported(self, serve):
        host = self.start_host(serve)
        service = self.start_service(lab(hosts={"inner": f"127.0.0.1:{host.port}"}))
        self.assertTrue(eventually(lambda: service.ask("GET", "/api/profiles")[0]["status"]["ok"]))
        return service

    def report(self, service):
        """The report, and by how much the service grew meanwhile at most."""
        before = memory_mib(service.process)
        most, is_done = [before], threading.Event()

        def look():
            while not is_done.wait(0.01):
                most[0] = max(most[0], memory_mib(service.process))
        watcher = threading.Thread(target=look)
        watcher.start()
        try:
            report = service.ask("GET", "/api/reports/path?target=http://inner.tail1.ts.net/")
        finally:
            is_done.set()
            watcher.join()
        return report, most[0] - before

    def test_the_report_comes_and_costs_little(self):
        for what, (begin, piece) in ENDLESS.items():
            with self.subTest(what):
                service = self.start_reported(sending_for_ever(begin, piece))
                try:
                    report, grown = self.report(service)
                finally:
                    service.end()
                self.assertLess(grown, MOST_GROWTH_MIB)
                self.assertEqual(report["profile"], "p")
                self.assertTrue(report["ping"]["ok"], report)
                self.assertTrue(report["http"]["ok"] or report["http"]["error"], report["http"])
                self.assertTrue(report["summary"].endswith("."), report["summary"])
                self.assertNotIn(" with .", report["summary"])

    def test_a_page_longer_than_it_cares_for_is_a_good_answer(self):
        def serve(connection):
            connection.recv(65536)
            connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n" + b"a" * 1000000)
        report, _ = self.report(self.start_reported(serve))
        self.assertEqual(report["http"]["status"], "200 OK", report["http"])
        self.assertIn("answers HTTP with 200 OK", report["summary"])


if __name__ == "__main__":
    unittest.main()
