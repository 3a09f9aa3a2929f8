"""TLS publications: a stream that is cut never looks whole at the other end, and one that ends does."""

import queue
import socket
import ssl
import unittest

from attack import ANSWER_TIME, AttackTest, Wire, reset

DATA = b"half of an upload"


class Tls:
    """A TLS client that says good-bye only when told to."""

    def __init__(self, port):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
        context.check_hostname, context.verify_mode = False, ssl.CERT_NONE
        self.wire = Wire(port)
        self._incoming, self._outgoing = ssl.MemoryBIO(), ssl.MemoryBIO()
        self._tls = context.wrap_bio(self._incoming, self._outgoing)
        self._repeat(self._tls.do_handshake)

    def send(self, data):
        self._tls.write(data)
        self._flush()

    def receive(self):
        """The next bytes; none at a real good-bye. ConnectionError when the connection is cut instead."""
        try:
            return self._repeat(lambda: self._tls.read(65536))
        except ssl.SSLZeroReturnError:
            return b""

    def say_good_bye(self):
        try:
            self._tls.unwrap()
        except ssl.SSLWantReadError:
            pass  # the other side need not answer
        self._flush()

    def _flush(self):
        self.wire.send(self._outgoing.read())

    def _repeat(self, step):
        while True:
            try:
                return step()
            except ssl.SSLWantReadError:
                self._flush()
                piece = self.wire.socket.recv(65536)
                if not piece:
                    raise ConnectionAbortedError("the connection ended without a good-bye") from None
                self._incoming.write(piece)
            finally:
                self._flush()


class CutTls(AttackTest):
    def setUp(self):
        super().setUp()
        self.taken = queue.Queue()
        host = self.start_host(self.taken.put)
        self.service, self.port = self.start_publication(host.port, TLS=True)

    def connect(self):
        """A client, and the local service's end of its connection."""
        client = Tls(self.port)
        self.addCleanup(client.wire.close)
        local = self.taken.get(timeout=ANSWER_TIME)
        local.settimeout(ANSWER_TIME)
        return client, local

    def upload(self):
        client, local = self.connect()
        client.send(DATA)
        self.assertEqual(local.recv(100), DATA)
        return client, local

    def download(self):
        client, local = self.connect()
        local.sendall(DATA)
        self.assertEqual(client.receive(), DATA)
        return client, local

    def assert_cut(self, receive):
        with self.assertRaises(ConnectionError, msg="it looks whole"):
            receive()

    def test_upload_without_a_good_bye(self):
        client, local = self.upload()
        client.wire.socket.shutdown(socket.SHUT_WR)
        self.assert_cut(lambda: local.recv(100))

    def test_upload_of_a_client_that_is_gone(self):
        client, local = self.upload()
        client.wire.close()
        self.assert_cut(lambda: local.recv(100))

    def test_upload_that_is_reset(self):
        client, local = self.upload()
        client.wire.reset()
        self.assert_cut(lambda: local.recv(100))

    def test_upload_that_ends_in_rubbish(self):
        client, local = self.upload()
        client.wire.send(b"rubbish that is no record" * 10)
        self.assert_cut(lambda: local.recv(100))

    def test_download_that_is_reset(self):
        client, local = self.download()
        reset(local)
        self.assert_cut(client.receive)

    def test_download_that_is_reset_behind_much(self):
        client, local = self.connect()
        local.sendall(DATA * 1000)
        reset(local)
        with self.assertRaises(ConnectionError, msg="it looks whole"):
            while client.receive():
                pass

    def test_upload_with_a_good_bye_is_whole_and_is_answered(self):
        client, local = self.upload()
        client.say_good_bye()
        self.assertEqual(local.recv(100), b"")
        local.sendall(b"the answer")
        self.assertEqual(client.receive(), b"the answer")
        local.close()
        self.assertEqual(client.receive(), b"")

    def test_download_that_ends_is_whole_and_its_client_goes_on(self):
        client, local = self.download()
        local.shutdown(socket.SHUT_WR)
        self.assertEqual(client.receive(), b"", "a good-bye")
        client.send(b"more")
        self.assertEqual(local.recv(100), b"more")
        client.say_good_bye()
        self.assertEqual(local.recv(100), b"")


if __name__ == "__main__":
    unittest.main()
