"""A real browser without a window: what it shows of a page, what it says about it, and whom it asks."""

import json
import subprocess
import tempfile
from pathlib import Path
from urllib.parse import urlsplit

PATIENCE = 60
QUIET = [
    "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--disable-dev-shm-usage", "--hide-scrollbars",
    "--no-first-run", "--no-default-browser-check", "--disable-background-networking", "--disable-component-update",
    "--disable-sync", "--disable-extensions", "--disable-default-apps", "--metrics-recording-only",
    "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1"]  # nobody outside is reached, whoever asks


class Visit:
    """One page, opened in a browser that knows nothing yet.

    dom: the document as the browser holds it at the end; console: what was said about it, refusals of its policy
    among it; asked: host and port of everything that the page wanted fetched.
    """

    def __init__(self, url, arguments=()):
        with tempfile.TemporaryDirectory(prefix="veranox-browser-") as folder:
            traffic = Path(folder) / "traffic.json"
            run = subprocess.run(
                ["chromium", *QUIET, f"--user-data-dir={folder}/profile", f"--log-net-log={traffic}",
                 "--enable-logging=stderr", *arguments, "--dump-dom", url],
                capture_output=True, text=True, timeout=PATIENCE, check=True)
            self.dom = run.stdout
            self.console = [line for line in run.stderr.splitlines() if ":CONSOLE" in line]
            self.asked = asked_addresses(json.loads(traffic.read_text()))


def asked_addresses(log):
    """What the browser itself fetches, the page included, has no origin as its initiator."""
    jobs = (event["params"] for event in log["events"] if "initiator" in event.get("params", {}))
    return {urlsplit(job["url"]).netloc for job in jobs if job["initiator"].startswith("http")}


def picture(url, file, is_dark, size=(1280, 900)):
    """The page as a person sees it who prefers light or dark."""
    with tempfile.TemporaryDirectory(prefix="veranox-browser-") as folder:
        subprocess.run(
            ["chromium", *QUIET, f"--user-data-dir={folder}", f"--window-size={size[0]},{size[1]}",
             f"--blink-settings=preferredColorScheme={0 if is_dark else 1}", f"--screenshot={file}", url],
            capture_output=True, timeout=PATIENCE, check=True)
