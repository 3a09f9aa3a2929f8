#!/usr/bin/python3
"""What the open popover costs while everything in it changes every 2 seconds: with 6 tunnels and 6 publications, which it
shows row by row, and with 1,000 tunnels, which it sums up. Beside each the same with the popover closed.

  Benchmarks/Process/popover_updates.py [--build DIR] [--rounds N] [--seconds N] [--tunnels N ...]

A stretch is the processor time that the main thread takes without waiting in between, to 2 ms: the longest of a run.
Frames are those that Qt Quick logs, in whole ms, in runs of their own; they include the time in which other programs
had the processor. Exit status 0: measured, whatever the figures.
"""
import argparse
import json
import os
import pathlib
import re
import statistics
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "Tests" / "EndToEnd"))

FRAME_TARGET = 16  # ms: one of a screen that shows 60 a second
SHARE_TARGET = 2.0  # per cent of a processor that the main thread may take
OPENING = 1.0  # seconds after which the opening is over, which has a benchmark of its own
FRAME_LOG = "qt.scenegraph.time.renderloop=true"
PUBLICATIONS = 6
LEAST_REFRESHES = 0.4  # a second: the application asks every 2 seconds for a minute, then seldom


def read_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=str(HERE.parents[1] / "build" / "release"), help="build tree (release)")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--seconds", type=float, default=50, help="length of a measurement; at most 50, for then the application asks seldom")
    parser.add_argument("--tunnels", type=int, nargs="+", default=[6, 1000])
    return parser.parse_args()


def write_lab(folder, tunnels):
    """A network in which every tunnel and publication is acted: they cost the service nothing."""
    from support.paths import LABS
    network = json.loads((LABS / "settled.json").read_text())
    network["tunnels"] = {f"t{i}": {"acted": True, "config": {
        "DisplayName": f"Tunnel {i}", "Profile": "work", "Target": f"postgres.tail7c41e.ts.net:{1 + i}"}}
        for i in range(tunnels)}
    network["publications"] = {f"p{i}": {"acted": True, "config": {
        "DisplayName": f"Publication {i}", "Profile": "work", "Target": f"127.0.0.1:{8080 + i}", "Port": 8080 + i}}
        for i in range(PUBLICATIONS)}
    file = folder / f"{tunnels}-tunnels.json"
    file.write_text(json.dumps(network))
    return file.with_suffix("")


class Updates:
    """One run of the application, with its popover open or never opened."""

    def __init__(self, stage, seconds, is_open):
        self._stage, self._seconds, self._is_open = stage, seconds, is_open

    def measure(self, watch, **environment):
        """What watch(application) gives; it takes the whole time."""
        with self._stage.application(**environment) as application:
            if self._is_open:
                self._stage.show()
                self._stage.await_popover(application)
                time.sleep(OPENING)
            before = self._stage.front.refreshes
            result = watch(application)
            refreshes = self._stage.front.refreshes - before
            if refreshes < LEAST_REFRESHES * self._seconds:
                raise SystemExit(f"only {refreshes} refreshes in {self._seconds:g} s")
            return result

    def main_thread(self, application):
        from measures import measure_main_thread
        return measure_main_thread(application.pid, self._seconds)

    def frames(self, application):
        began = len(application.output())
        time.sleep(self._seconds)  # the measured quantity
        frames = [int(ms) for ms in re.findall(r"Frame rendered with .* in (\d+)ms", application.output()[began:])]
        if not frames:
            raise SystemExit("the open popover drew no frame")
        return frames


def show(what, values, unit, target=None):
    median = statistics.median(values)
    verdict = "" if target is None else f"   at most {target:g}: {'met' if median <= target else 'MISSED'}"
    print(f"{what:48}{median:8.2f}{min(values):8.2f}{max(values):8.2f} {unit}{verdict}", flush=True)


def measure(folder, tunnels, options):
    from popover_stage import PopoverStage
    from shifting_front import ShiftingFront
    with PopoverStage(folder, write_lab(folder, tunnels), make_front=ShiftingFront) as stage:
        shown, closed = (Updates(stage, options.seconds, is_open) for is_open in (True, False))
        floor, work, longest_frames = [], [], []
        for _ in range(options.rounds):
            floor.append(closed.measure(closed.main_thread))
            work.append(shown.measure(shown.main_thread))
            longest_frames.append(max(shown.measure(shown.frames, QT_LOGGING_RULES=FRAME_LOG)))
    (idle_shares, idle_stretches), (shares, stretches) = zip(*floor), zip(*work)
    print(f"\n{tunnels} tunnels, {PUBLICATIONS} publications{'':18}{'median':>10}{'least':>8}{'most':>8}")
    show("main thread, popover closed", idle_shares, "%")
    show("main thread, popover open", shares, "%", SHARE_TARGET)
    show("longest stretch, popover closed", idle_stretches, "ms")
    show("longest stretch, popover open", stretches, "ms", FRAME_TARGET)
    show("longest frame of the open popover", longest_frames, "ms", FRAME_TARGET)


def main():
    options = read_arguments()
    os.environ["VERANOX_BUILD_DIR"] = str(pathlib.Path(options.build).resolve())
    before = os.getloadavg()[0]
    with tempfile.TemporaryDirectory(prefix="veranox-bench-") as folder:
        for tunnels in options.tunnels:
            measure(pathlib.Path(folder), tunnels, options)
    print(f"\nload of the machine before: {before:.2f}, after: {os.getloadavg()[0]:.2f}")


if __name__ == "__main__":
    main()
