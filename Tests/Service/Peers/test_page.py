"""The status page in a real browser."""

import http.server
import re
import threading
import unittest

from browser import Visit, picture
from support import PeerTest, eventually, free_port, lab

EVIL = "\"'><script>document.title='owned'</script><img src=x onerror=\"document.title='owned'\">"


def read_text(dom):
    """What a person reads of it, on one line."""
    body = dom[dom.index("<body>"):]
    return " ".join(re.sub(r"<[^>]*>", " ", body.replace("<wbr>", "")).split())


class OtherSite(http.server.BaseHTTPRequestHandler):
    """A page of somebody else that tries to make use of the service."""

    def do_GET(self):
        body = self.server.page.encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        for name, value in self.server.headers.items():
            self.send_header(name, value)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class StatusPage(PeerTest):
    def open_other_site(self, page, headers=None, arguments=()):
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), OtherSite)
        server.page, server.headers = page, headers or {}
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        return Visit(f"http://127.0.0.1:{server.server_port}/", arguments)

    def start_with_tunnel(self, **settings):
        port = free_port()
        service = self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "wiki.tail1.ts.net:80", "Listen": f"127.0.0.1:{port}", **settings}},
            publications={"docs": {"Profile": "q", "Target": "127.0.0.1:9", "Port": 80}}, hosts={"wiki": "site"}))
        self.assertTrue(eventually(lambda: service.tunnel("t")["State"] == "listening"))
        self.assertTrue(eventually(lambda: service.publication("docs")["State"] == "listening"))
        return service, port

    def visit(self, service, path="/"):
        visit = Visit(f"http://127.0.0.1:{service.port}{path}")
        self.assertEqual(visit.console, [])
        self.assertEqual(visit.asked, {f"127.0.0.1:{service.port}"})
        return visit

    def test_shows_the_real_state(self):
        service, port = self.start_with_tunnel(DisplayName="Wiki")
        text = read_text(self.visit(service).dom)
        self.assertIn("Everything works", text)
        self.assertIn(f"Wiki t 127.0.0.1:{port} wiki.tail1.ts.net:80 Native p Listening", text)
        self.assertIn("docs desk.tail1.ts.net:80 127.0.0.1:9 q Published", text)
        service.ask("POST", "/api/tunnels/t/stop")
        self.assertIn("Native p Disabled", read_text(self.visit(service).dom))

    def test_empty_service_says_what_to_do(self):
        network = lab()
        network["profiles"] = {}
        text = read_text(self.visit(self.start_service(network)).dom)
        self.assertIn("Nothing is set up yet Open Veranox and add a profile", text)

    def test_a_name_that_would_be_markup_is_text(self):
        service, _ = self.start_with_tunnel(DisplayName=EVIL)
        dom = self.visit(service).dom
        self.assertIn("<title>Everything works – Veranox</title>", dom)
        self.assertNotIn("<script", dom)
        self.assertNotIn("<img", dom)
        self.assertIn("&lt;script&gt;document.title='owned'&lt;/script&gt;", dom)

    def test_a_thousand_tunnels(self):
        first = 20000
        service = self.start_service(lab(tunnels={
            f"t{i}": {"Profile": "p", "Target": "wiki.tail1.ts.net:80", "Listen": f"127.0.0.1:{first + i}",
                      "Disabled": True} for i in range(1000)}))
        dom = self.visit(service).dom
        self.assertEqual(dom.count("Disabled</span>"), 1000)
        self.assertIn("</html>", dom)

    def test_looks_light_or_dark_as_the_person_prefers(self):
        service, _ = self.start_with_tunnel()
        for is_dark, window in ((False, "srgb(245,245,247)"), (True, "srgb(28,28,30)")):
            file = self.folder / f"page-{is_dark}.png"
            picture(f"http://127.0.0.1:{service.port}/", file, is_dark)
            corner = self.run_program("convert", str(file), "-format", "%[pixel:p{2,2}]", "info:")
            self.assertEqual(corner.stdout, window, corner.stderr)

    def test_no_other_page_may_frame_it(self):
        service, _ = self.start_with_tunnel()
        visit = self.open_other_site(f'<iframe src="http://127.0.0.1:{service.port}/"></iframe>')
        self.assertTrue(any("frame-ancestors" in line for line in visit.console), visit.console)

    def test_no_other_page_may_read_or_change_anything(self):
        service, _ = self.start_with_tunnel()
        visit = self.open_other_site(f"""<p id="read"></p><p id="write"></p><script>
            const tell = (place, text) => document.getElementById(place).textContent = text;
            const base = "http://127.0.0.1:{service.port}";
            fetch(base + "/").then(() => tell("read", "done"), () => tell("read", "refused"));
            fetch(base + "/api/shutdown", {{method: "POST", mode: "no-cors"}})
                .then(() => tell("write", "sent"), () => tell("write", "refused"));
            </script>""", arguments=["--virtual-time-budget=10000"])
        self.assertIn('<p id="read">refused</p>', visit.dom)
        self.assertRegex(visit.dom, '<p id="write">(sent|refused)</p>')
        self.assertEqual(service.ask("GET", "/api/health"), {"status": "ok"})
        self.assertIsNone(service.process.poll())

    def test_what_a_page_fetches_from_elsewhere_would_be_noticed(self):
        visit = self.open_other_site("<img src='http://elsewhere.example:81/x'>")
        self.assertIn("elsewhere.example:81", visit.asked)

    def test_a_breach_of_the_policy_would_be_noticed(self):
        service, _ = self.start_with_tunnel()
        policy = self.run_program("curl", "-sSI", f"http://127.0.0.1:{service.port}/").stdout
        policy = re.search("Content-Security-Policy: (.*)", policy).group(1)
        visit = self.open_other_site(
            "<body style='color: red'><script>document.title = 'owned'</script><img src='http://127.0.0.1:9/x'>",
            {"Content-Security-Policy": policy})
        self.assertNotIn("owned</title>", visit.dom)
        for directive in ("style-src", "script-src", "img-src"):
            self.assertTrue(any(directive in line for line in visit.console), (directive, visit.console))


if __name__ == "__main__":
    unittest.main()
