#!/usr/bin/python3
"""A native tunnel of the real service beside socat and HAProxy (TCP mode), between the same two ends in the same run.
Prints figures and ratios, and judges none of them.

    Benchmarks/Process/tunnel.py --build build/release [--briefly]
"""

import argparse
import collections
import pathlib
import resource
import statistics
import tempfile

from tunnel_load import Load
from tunnel_ways import HaProxy, Service, Socat, most_connections

HAPROXY, OURS, SOCAT = "HAProxy", "tunnel", "socat"
# What is hoped for: the figure, in which direction, and how it should compare with HAProxy's.
HOPES = {
    "throughput, 1 stream, MB/s": "at least 1.0 of HAProxy's",
    "throughput, 100 streams, MB/s": "at least 1.0 of HAProxy's",
    "new connections a second": "at least 0.8 of HAProxy's",
    "echo p99 beside 100 senders, us": "at most 2.0 of HAProxy's",
    "memory of an idle connection, KiB": "at most 8 KiB",
    "control p99 under all of it, us": "below 20000 us",
}


def read_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default="build/release", help="build tree with benchmarks (release)")
    parser.add_argument("--briefly", action="store_true", help="that it runs, not what it measures")
    return parser.parse_args()


class Measurement:
    def __init__(self, load, ways, is_brief):
        self.load, self.ways = load, ways
        self.seconds, self.rounds, self.idle = (0.1, 1, 100) if is_brief else (2, 5, 10_000)
        self.figures = collections.defaultdict(lambda: collections.defaultdict(list))

    def by_turns(self, what, measure):
        """So that all meet the same load of the computer."""
        for _ in range(self.rounds):
            for name, way in self.ways.items():
                self.figures[what][name].append(measure(way))

    def throughput(self):
        for streams in (1, 100):
            self.by_turns(f"throughput, {streams} stream{'s' if streams > 1 else ''}, MB/s", lambda way, streams=streams:
                          self.load.run("throughput", way.port, streams, self.seconds)["bytes"] / 1e6)

    def connections(self):
        self.by_turns("new connections a second",
                      lambda way: self.load.run("connections", way.port, 8, self.seconds)["rate"])

    def echo(self):
        def measure(way):
            with self.load.busy("throughput", way.port, 100, self.seconds * 2):
                return self.load.run("echo", way.port, 1, self.seconds)
        for _ in range(self.rounds):
            for name, way in self.ways.items():
                found = measure(way)
                for part in ("p50", "p99"):
                    self.figures[f"echo {part} beside 100 senders, us"][name].append(found[part])

    def memory(self):
        """One process for a connection is nothing to compare with: socat is left out."""
        count = min(self.idle, most_connections() - 100)
        for name, way in self.ways.items():
            if name != SOCAT:
                before = way.memory_kib()
                with self.load.idle(way.port, count):
                    self.figures["memory of an idle connection, KiB"][name].append((way.memory_kib() - before) / count)
        print(f"{count} idle connections")

    def control(self):
        ours = self.ways[OURS]
        for clients in (1, 50):
            found = self.load.run("reads", ours.control, clients, self.seconds)
            self.figures[f"reads of the API a second, {clients} at once"][OURS].append(found["rate"])
        with self.load.idle(ours.port, 1000), \
                self.load.busy("throughput", ours.port, 100, self.seconds * 2), \
                self.load.busy("connections", ours.port, 4, self.seconds * 2):
            found = self.load.run("reads", ours.control, 1, self.seconds)
            self.figures["control p99 under all of it, us"][OURS].append(found["p99"])

    def report(self):
        print(f"{'':40}{HAPROXY:>12}{SOCAT:>12}{OURS:>12}{'to HAProxy':>12}{'to socat':>10}")
        for what, found in self.figures.items():
            median = {name: statistics.median(values) for name, values in found.items()}
            line = "".join(f"{median[name]:12.1f}" if name in median else f"{'-':>12}" for name in (HAPROXY, SOCAT, OURS))
            ratios = "".join(f"{median[OURS] / median[name]:>{width}.2f}" if median.get(name, 0) > 0 else f"{'-':>{width}}"
                             for name, width in ((HAPROXY, 12), (SOCAT, 10)))
            print(f"{what:40}{line}{ratios}   {HOPES.get(what, '')}")


def main():
    options = read_arguments()
    build = pathlib.Path(options.build).resolve()
    hard = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    with tempfile.TemporaryDirectory(prefix="veranox-bench-") as folder:
        load = Load(build / "benchmarks" / "tunnel_load")
        with load.sink() as target, Service(build / "bin" / "veranox", folder, target) as ours, \
                HaProxy(folder, target) as haproxy, Socat(target) as socat:
            measurement = Measurement(load, {HAPROXY: haproxy, SOCAT: socat, OURS: ours}, options.briefly)
            for measure in (measurement.throughput, measurement.connections, measurement.echo, measurement.memory,
                            measurement.control):
                measure()
    measurement.report()


if __name__ == "__main__":
    main()
