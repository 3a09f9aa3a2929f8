"""Well-known programs through a native tunnel and to a publication."""

import http.server
import socket
import threading
import time
import unittest

from support import PeerTest, answers, eventually, free_port, lab


class NativeTunnelPeers(PeerTest):
    def test_curl_reads_the_built_in_site(self):
        port = free_port()
        self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "wiki.tail1.ts.net:80", "Listen": f"127.0.0.1:{port}"}},
            hosts={"wiki": "site"}))
        page = self.run_program("curl", "-sS", "-i", f"http://127.0.0.1:{port}/any/path")
        self.assertEqual(page.returncode, 0, page.stderr)
        self.assertIn("HTTP/1.1 200 OK", page.stdout)
        self.assertIn("<h1>It works</h1>", page.stdout)

    def test_curl_reads_the_built_in_site_over_tls(self):
        port = free_port()
        self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "wiki.tail1.ts.net:443", "Listen": f"127.0.0.1:{port}"}},
            hosts={"wiki": "site"}))
        addresses = [f"https://127.0.0.1:{port}/{page}" for page in ("one", "two")]
        pages = self.run_program("curl", "-sS", "--insecure", *addresses)
        self.assertEqual(pages.stdout.count("<h1>It works</h1>"), 2, pages.stderr)
        self.assertNotEqual(self.run_program("curl", "-sS", addresses[0]).returncode, 0, "nobody signed for it")

    def test_redis_keeps_what_comes_through(self):
        server, port = free_port(), free_port()
        self.start(["redis-server", "--port", str(server), "--bind", "127.0.0.1", "--save", "", "--dir",
                    str(self.folder), "--logfile", "/dev/null"])
        self.assertTrue(eventually(lambda: answers(server)))
        service = self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "cache.tail1.ts.net:6379", "Listen": f"127.0.0.1:{port}"}},
            hosts={"cache": f"127.0.0.1:{server}"}))
        value = "x" * 100_000
        stored = self.run_program("redis-cli", "-p", str(port), "-x", "set", "key", input=value)
        self.assertEqual(stored.stdout.strip(), "OK", stored.stderr)
        read = self.run_program("redis-cli", "-p", str(port), "--raw", "get", "key")
        self.assertEqual(read.stdout.rstrip("\n"), value)
        self.assertEqual(service.tunnel("t")["LastError"], "")


class Page(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        body = b"from the local service"
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class PublicationPeers(PeerTest):
    def start_page(self):
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Page)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        return server.server_port

    def test_curl_reaches_it_over_tls(self):
        port, page_port = free_port(), self.start_page()
        self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "desk.tail1.ts.net:443", "Listen": f"127.0.0.1:{port}"}},
            publications={"web": {"Profile": "q", "Target": f"127.0.0.1:{page_port}", "Port": 443, "TLS": True}}))
        page = self.run_program("curl", "-sS", "--insecure", f"https://127.0.0.1:{port}/")
        self.assertEqual(page.stdout, "from the local service", page.stderr)
        name = self.run_program("curl", "-sSv", "--insecure", f"https://127.0.0.1:{port}/").stderr
        self.assertIn("Veranox lab", name)
        self.assertNotEqual(self.run_program("curl", "-sS", f"https://127.0.0.1:{port}/").returncode, 0)
        plain = self.run_program("curl", "-sS", f"http://127.0.0.1:{port}/")
        self.assertNotEqual(plain.returncode, 0, "no plain text on a TLS port")

    def test_curl_reaches_it_from_another_node(self):
        port, page_port = free_port(), self.start_page()
        service = self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "desk.tail1.ts.net:8080", "Listen": f"127.0.0.1:{port}"}},
            publications={"web": {"Profile": "q", "Target": f"127.0.0.1:{page_port}", "Port": 8080}}))
        self.assertEqual(service.publication("web")["State"], "listening")
        self.assertEqual(service.publication("web")["Address"], "desk.tail1.ts.net:8080")
        page = self.run_program("curl", "-sS", f"http://127.0.0.1:{port}/")
        self.assertEqual(page.stdout, "from the local service", page.stderr)
        self.assertNotEqual(service.publication("web")["LastActive"], "")


class End(PeerTest):
    """The service ends soon and in order, whoever is being waited for."""

    def assert_ends_soon(self, service):
        begin = time.monotonic()
        self.assertEqual(service.end(), 0)
        self.assertLess(time.monotonic() - begin, 6)

    def test_while_a_host_does_not_take_the_connection(self):
        stuck = socket.socket()
        self.addCleanup(stuck.close)
        stuck.bind(("127.0.0.1", 0))
        stuck.listen(0)
        waiting = [socket.socket() for _ in range(4)]  # more than it has room for, so that no further one is answered
        for client in waiting:
            self.addCleanup(client.close)
            client.setblocking(False)
            client.connect_ex(stuck.getsockname())
        port = free_port()
        service = self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "full.tail1.ts.net:80", "Listen": f"127.0.0.1:{port}"}},
            hosts={"full": f"127.0.0.1:{stuck.getsockname()[1]}"}))
        self.assertTrue(eventually(lambda: answers(port)))
        with socket.create_connection(("127.0.0.1", port)):
            self.assertTrue(eventually(lambda: service.tunnel("t")["ActiveConns"] > 0))
            self.assert_ends_soon(service)

    def test_while_a_client_does_not_finish_its_handshake(self):
        port = free_port()
        network = lab(publications={"web": {"Profile": "q", "Target": "127.0.0.1:9", "Port": port, "TLS": True}})
        network["profiles"]["q"]["node_address"] = "127.0.0.1"
        service = self.start_service(network)
        self.assertTrue(eventually(lambda: answers(port)))
        with socket.create_connection(("127.0.0.1", port)):
            self.assertTrue(eventually(lambda: service.publication("web")["ActiveConns"] > 0))
            self.assert_ends_soon(service)


if __name__ == "__main__":
    unittest.main()
