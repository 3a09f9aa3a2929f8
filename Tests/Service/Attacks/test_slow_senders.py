"""Clients that send a byte now and then: they keep nobody else waiting, and they are not waited for long."""

import threading
import time
import unittest

from attack import AttackTest, Seconds, Wire, lab, request

SENDERS = 100
LONGEST_REQUEST = 10  # seconds that the service gives a request
PAUSE = 0.5


class SlowSenders(AttackTest):
    def setUp(self):
        super().setUp()
        self.service = self.start_service(lab())
        self.is_over = threading.Event()
        self.addCleanup(self.is_over.set)

    def send_slowly(self, words):
        """Sends a byte now and then until the service has enough. Returns an event for that."""
        is_cut = threading.Event()
        wire = self.wire(self.service.port)

        def send():
            try:
                for byte in words:
                    wire.send(bytes([byte]))
                    wire.socket.settimeout(PAUSE)
                    try:
                        while wire.socket.recv(65536):
                            pass
                        break
                    except TimeoutError:
                        pass
                    if self.is_over.is_set():
                        return
            except OSError:
                pass
            is_cut.set()
        threading.Thread(target=send, daemon=True).start()
        return is_cut

    def slow_request(self, path):
        fields = f"X-Veranox-Token: {self.service.token}\r\nContent-Length: 1000\r\n"
        return request("POST", path, self.service.port, fields) + b" " * 1000

    def test_they_are_cut(self):
        begin = time.monotonic()
        in_header = self.send_slowly(self.slow_request("/" + "a" * 1000))
        header = self.slow_request("/api/feedback")
        with Wire(self.service.port) as wire:
            wire.send(header[:header.index(b"\r\n\r\n") + 4])
            wire.socket.settimeout(LONGEST_REQUEST + 5)
            self.assertTrue(wire.is_ended(LONGEST_REQUEST + 5), "a body that does not come is waited for")
        self.assertTrue(in_header.wait(begin + LONGEST_REQUEST + 5 - time.monotonic()), "a header is waited for")

    def test_others_are_answered_beside_many(self):
        for _ in range(SENDERS):
            self.send_slowly(self.slow_request("/api/feedback"))
        with Seconds() as time_taken:
            for _ in range(50):
                self.assert_answers(self.service)
        self.assertLess(time_taken.taken, 50 * PAUSE)


if __name__ == "__main__":
    unittest.main()
