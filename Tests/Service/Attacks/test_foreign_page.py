"""Pages of others in a real browser: none makes the service send anything into a tailnet."""

import http.server
import threading
import unittest
import urllib.request

from attack import AttackTest, eventually, free_port, lab


from browser import Visit  # found beside the support that attack.py has found

TARGET = "http://inner.tail1.ts.net/"
WAYS = """
<link rel="stylesheet" href="{api}&as=style"><link rel="prefetch" href="{api}&as=prefetch">
<img src="{api}&as=image"><script src="{api}&as=script"></script><iframe src="{api}&as=frame"></iframe>
<video src="{api}&as=video"></video><object data="{api}&as=object"></object>
<form id="form {host}" target="frame {host}" action="{base}"><input name="target" value="{target}"></form>
<iframe name="frame {host}"></iframe>
<script>
    document.getElementById("form {host}").submit();
    new Image().src = "{api}&as=picture";
    navigator.sendBeacon("{api}&as=beacon");
    fetch("{api}&as=fetch", {{mode: "no-cors"}});
</script>"""


def page_that_asks(port, target):
    """It asks for a report on the target in every way that a page can, under both names of this computer."""
    page = "<!doctype html><title>A page of somebody else</title>"
    for host in ("127.0.0.1", "localhost"):
        base = f"http://{host}:{port}/api/reports/path"
        page += WAYS.format(api=f"{base}?target={target}", base=base, target=target, host=host)
    return page


class Pages(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.server.asked.append(self.path)
        body = self.server.page.encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class ForeignPage(AttackTest):
    def start_site(self, page="inside"):
        site = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Pages)
        site.page, site.asked = page, []
        self.addCleanup(site.server_close)
        self.addCleanup(site.shutdown)
        threading.Thread(target=site.serve_forever, daemon=True).start()
        return site

    def setUp(self):
        super().setUp()
        self.inner, self.pages, self.tunnel = self.start_site(), self.start_site(), free_port()
        self.service = self.start_service(lab(
            tunnels={"t": {"Profile": "p", "Target": "pages.tail1.ts.net:80", "Listen": f"127.0.0.1:{self.tunnel}"}},
            hosts={"inner": f"127.0.0.1:{self.inner.server_port}", "pages": f"127.0.0.1:{self.pages.server_port}"}))
        self.assertTrue(eventually(lambda: self.service.tunnel("t")["State"] == "listening"))

    def report_address(self):
        return f"http://127.0.0.1:{self.service.port}/api/reports/path?target={TARGET}"

    def assert_page_gets_nowhere(self, address, arguments=()):
        self.pages.page = page_that_asks(self.service.port, TARGET)
        visit = Visit(address, ["--virtual-time-budget=10000", *arguments])
        self.assertIn(f"127.0.0.1:{self.service.port}", visit.asked, "the page has reached the service")
        self.assertEqual(self.inner.asked, [], "nothing goes into the tailnet")

    def test_of_another_port(self):
        self.assert_page_gets_nowhere(f"http://127.0.0.1:{self.pages.server_port}/")

    def test_behind_a_tunnel(self):
        self.assert_page_gets_nowhere(f"http://127.0.0.1:{self.tunnel}/")

    def test_of_another_host(self):
        self.assert_page_gets_nowhere(
            f"http://elsewhere.example:{self.pages.server_port}/",
            ["--host-resolver-rules=MAP elsewhere.example 127.0.0.1, MAP * ~NOTFOUND, EXCLUDE 127.0.0.1"])

    def test_a_program_and_a_person_get_there(self):
        with urllib.request.urlopen(self.report_address(), timeout=20) as answer:
            self.assertEqual(answer.status, 200)
        self.assertEqual(self.inner.asked, ["/"])
        typed = Visit(self.report_address())
        self.assertIn("takes connections on port 80", typed.dom)
        self.assertEqual(self.inner.asked, ["/", "/"])


if __name__ == "__main__":
    unittest.main()
