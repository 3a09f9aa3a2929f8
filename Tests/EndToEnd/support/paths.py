"""Where the checkout and the build tree under test lie."""
import os
import pathlib

SOURCE = pathlib.Path(__file__).resolve().parents[3]
BUILD = pathlib.Path(os.environ.get("VERANOX_BUILD_DIR", SOURCE / "build" / "release")).resolve()

MENU = BUILD / "bin" / "veranox-menu"
RESOURCES = pathlib.PurePath("../lib/veranox")  # seen from the folder of the application
SERVICE = BUILD / "bin" / "veranox"
STATUS_NOTIFIER_HOST = BUILD / "tests" / "status_notifier_host"
HANGING_LOG = BUILD / "tests" / "libhanging_log.so"
VIRTUAL_DESKTOP = SOURCE / "Tests" / "Support" / "virtual-desktop"
FAILURES = BUILD / "e2e-failures"
LABS = pathlib.Path(__file__).resolve().parents[1] / "labs"
