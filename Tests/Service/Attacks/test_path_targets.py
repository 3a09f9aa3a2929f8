"""What reaches a host of the tailnet from a path report, and what is made of its answer."""

import queue
import unittest
import urllib.error
import urllib.parse

from attack import ANSWER_TIME, AttackTest, eventually, lab

ODD_PATHS = ("/a b", "/a\\b", "/a\tb", "/ HTTP/1.1\r\nX-Slipped-In: a", "/a\x7fb", "/a\u00e9b", "/a\"b", "/a|b", "/<a>")


class PathTargets(AttackTest):
    answer = b"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"

    def setUp(self):
        super().setUp()
        self.heads = queue.Queue()
        self.host = self.start_host(self.serve)
        self.service = self.start_service(lab(hosts={"inner": f"127.0.0.1:{self.host.port}"}))
        self.assertTrue(eventually(lambda: self.service.ask("GET", "/api/profiles")[0]["status"]["ok"]))

    def serve(self, connection):
        connection.settimeout(ANSWER_TIME)
        head = b""
        while not head.endswith(b"\r\n\r\n"):
            piece = connection.recv(65536)
            if not piece:
                break
            head += piece
        if head:
            self.heads.put(head)
            connection.sendall(self.answer)
        connection.close()

    def report(self, target):
        return self.service.ask("GET", f"/api/reports/path?target={urllib.parse.quote(target, safe='')}&ping_count=1")

    def test_host_field_names_the_port(self):
        for target, field in (("http://inner.tail1.ts.net:8080/", b"inner.tail1.ts.net:8080"),
                              ("http://inner.tail1.ts.net:80/", b"inner.tail1.ts.net"),
                              ("http://inner.tail1.ts.net/", b"inner.tail1.ts.net")):
            with self.subTest(target):
                self.report(target)
                self.assertIn(b"\r\nHost: " + field + b"\r\n", self.heads.get(timeout=ANSWER_TIME))

    def test_the_request_line_stays_one(self):
        for path in ODD_PATHS:
            with self.subTest(path):
                try:
                    self.report("http://inner.tail1.ts.net" + path)
                except urllib.error.HTTPError as refused:
                    self.assertEqual(refused.code, 400)
                    self.assertTrue(self.heads.empty())
                    continue
                if self.heads.empty():
                    continue
                head = self.heads.get()
                self.assertNotIn(b"\r\nX-Slipped-In", head)
                self.assertRegex(head.split(b"\r\n")[0], rb"\AGET /[!#$%&'()*+,\-./0-9:;=?@A-Z\[\]_a-z~]* HTTP/1.1\Z")

    def test_an_interim_answer_is_not_the_answer(self):
        self.answer = b"HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\n\r\n" + PathTargets.answer
        report = self.report("http://inner.tail1.ts.net/")
        self.assertEqual(report["http"]["status"], "200 OK", report["http"])
        self.answer = b"HTTP/1.1 100 Continue\r\n\r\n"
        report = self.report("http://inner.tail1.ts.net/")
        self.assertFalse(report["http"]["ok"], report["http"])
        self.assertNotIn("with 100", report["summary"])

    def test_other_schemes_are_not_tried_as_http(self):
        for target in ("ftp://inner.tail1.ts.net/", "ssh://inner.tail1.ts.net:22", "gopher://inner.tail1.ts.net/x"):
            with self.subTest(target):
                try:
                    self.assertNotIn("answers HTTP", self.report(target)["summary"])
                except urllib.error.HTTPError as refused:
                    self.assertEqual(refused.code, 400)
                self.assertTrue(self.heads.empty())


if __name__ == "__main__":
    unittest.main()
