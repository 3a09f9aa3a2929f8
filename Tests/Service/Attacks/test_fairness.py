"""What others get carried while a stream waits for its echo. Bytes are counted, not time: they are the same on a slow
and on a busy computer."""

import contextlib
import multiprocessing
import os
import selectors
import socket
import tempfile
import unittest

from attack import AttackTest, Wire, answers, eventually, free_port, lab, use_all_descriptors

SENDERS = 100
ROUNDS = 10
# What one of the others may have carried while an echo goes there and back, which takes four turns.
MOST_EACH = 4 * 64 * 1024
SENT_AT_ONCE = 1 << 18


def swallow(listener, swallowed):
    selector = selectors.DefaultSelector()
    listener.setblocking(False)
    selector.register(listener, selectors.EVENT_READ)
    buffer = bytearray(1 << 20)
    while True:
        for key, _ in selector.select():
            if key.fileobj is listener:
                selector.register(listener.accept()[0], selectors.EVENT_READ)
            else:
                # The system drops it without copying, so that the one in the middle has the most to do.
                with contextlib.suppress(ConnectionResetError):
                    swallowed.value += key.fileobj.recv_into(buffer, len(buffer), socket.MSG_TRUNC | socket.MSG_DONTWAIT)


def send_without_end(port, is_busy):
    selector = selectors.DefaultSelector()
    for _ in range(SENDERS):
        connection = socket.create_connection(("127.0.0.1", port))
        connection.setblocking(False)
        selector.register(connection, selectors.EVENT_WRITE)
    with tempfile.TemporaryFile() as file:
        file.truncate(SENT_AT_ONCE)
        while True:
            for key, _ in selector.select():
                os.sendfile(key.fileobj.fileno(), file.fileno(), 0, SENT_AT_ONCE)
            is_busy.set()


class Fairness(AttackTest):
    def start_process(self, function, *arguments):
        process = multiprocessing.Process(target=function, args=arguments, daemon=True)
        process.start()
        self.addCleanup(process.join)
        self.addCleanup(process.terminate)

    def carried_for_others(self, port, swallowed):
        """Bytes for each round trip."""
        with Wire(port) as wire:
            wire.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            begin = swallowed.value
            for _ in range(ROUNDS):
                wire.send(b"?")
                self.assertEqual(wire.socket.recv(1), b"?")
            return (swallowed.value - begin) / ROUNDS

    def test_echo_beside_bulk_senders(self):
        use_all_descriptors()
        swallowed, is_busy = multiprocessing.RawValue("Q"), multiprocessing.Event()
        listener, echoing = socket.create_server(("127.0.0.1", 0), backlog=1024), self.start_host()
        self.addCleanup(listener.close)
        self.start_process(swallow, listener, swallowed)
        bulk, port = free_port(), free_port()
        self.start_service(lab(
            tunnels={"bulk": {"Profile": "p", "Target": "bulk.tail1.ts.net:80", "Listen": f"127.0.0.1:{bulk}"},
                     "echo": {"Profile": "p", "Target": "echo.tail1.ts.net:80", "Listen": f"127.0.0.1:{port}"}},
            hosts={"bulk": f"127.0.0.1:{listener.getsockname()[1]}", "echo": f"127.0.0.1:{echoing.port}"}))
        self.assertTrue(eventually(lambda: answers(bulk) and answers(port)))
        self.start_process(send_without_end, bulk, is_busy)
        self.assertTrue(is_busy.wait(10), "the senders get nothing through")
        self.assertTrue(eventually(lambda: swallowed.value > SENDERS * SENT_AT_ONCE))
        carried = self.carried_for_others(port, swallowed)
        print(f"{carried / SENDERS / 1024:.0f} KiB for each of {SENDERS} others while an echo comes back")
        self.assertLess(carried / SENDERS, MOST_EACH)


if __name__ == "__main__":
    unittest.main()
