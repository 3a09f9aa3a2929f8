#!/usr/bin/python3
"""Start, idle cost and memory of veranox-menu beside two floors: an empty Qt Quick tray program, and the same with six
plain reads of the service every 15 seconds. All in one private desktop and one run, the programs in turn.

  Benchmarks/Process/tray_programs.py [--build DIR] [--tray notifier|xembed] [--starts N] [--rounds N] [--seconds N]
                                      [--only TEXT] [--threads]

Prints a table of medians with their ratio to the empty program, then each target and whether it is met. Exit status 0:
measured, whatever the figures; otherwise something did not come up.
"""
import argparse
import collections
import os
import pathlib
import statistics
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "Tests" / "EndToEnd"))

PLAIN_FLOOR, POLLING_FLOOR, APPLICATION = "TrayFloor", "PollingTrayFloor", "veranox-menu"


def read_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=str(HERE.parents[1] / "build" / "release"), help="build tree (release)")
    parser.add_argument("--tray", choices=("notifier", "xembed"), default="notifier")
    parser.add_argument("--starts", type=int, default=15, help="starts of each program; 0 leaves them out")
    parser.add_argument("--rounds", type=int, default=3, help="idle measurements of each program; 0 leaves them out")
    parser.add_argument("--seconds", type=float, default=60, help="length of an idle measurement")
    parser.add_argument("--only", default="", help="leave out programs whose name does not hold this text")
    parser.add_argument("--threads", action="store_true", help="print the idle cost of each thread")
    return parser.parse_args()


def find_programs(build, only):
    wanted = [build / "benchmarks" / PLAIN_FLOOR, build / "benchmarks" / POLLING_FLOOR, build / "bin" / APPLICATION]
    programs = [program for program in wanted if only in program.name]
    for program in programs:
        if not os.access(program, os.X_OK):
            sys.exit(f"{program} is not there: cmake --preset release && ninja -C build/release {program.name}")
    return programs


def measure_starts(stage, programs, count, figures):
    for round_number in range(count + 1):
        for program in programs:
            with stage.running(program) as (_, seconds):
                if round_number:  # the first round warms the caches
                    figures["start to icon, ms"][program.name].append(seconds * 1000)


def measure_rest(stage, programs, options, figures):
    from measures import measure_idle, proportional_memory_mib
    for _ in range(options.rounds):
        for program in programs:
            with stage.running(program) as (process, _):
                stage.await_rest(process)
                used = measure_idle(process, options.seconds)
                figures["wake-ups a second"][program.name].append(used.wakeups_per_second)
                figures["processor time, ms a minute"][program.name].append(used.processor_ms_per_minute)
                figures["memory (PSS), MiB"][program.name].append(proportional_memory_mib(process.pid))
                if options.threads:
                    for name, (wakeups, ms) in sorted(used.by_thread.items()):
                        print(f"  {program.name}: {name:28} {wakeups:7.2f} wake-ups/s {ms:8.2f} ms/min", flush=True)


def report(figures):
    print(f"\n{'':30}{'program':18}{'median':>9}{'least':>9}{'most':>9}{'ratio':>8}")
    for what, by_program in figures.items():
        floor = statistics.median(by_program.get(PLAIN_FLOOR, [0]))
        for program, values in by_program.items():
            ratio = f"{statistics.median(values) / floor:8.2f}" if floor else f"{'-':>8}"  # an idle floor may use nothing
            print(f"{what:30}{program:18}{statistics.median(values):9.2f}{min(values):9.2f}{max(values):9.2f}{ratio}")
            what = ""


def report_targets(figures):
    def judge(what, value, limit):
        print(f"{'met   ' if value <= limit else 'MISSED'} {what}: {value:.2f}, at most {limit}")

    print()
    for what, limit in (("start to icon, ms", 1.3), ("memory (PSS), MiB", 1.4)):
        measured = figures[what]
        if APPLICATION in measured and PLAIN_FLOOR in measured:
            ratio = statistics.median(measured[APPLICATION]) / statistics.median(measured[PLAIN_FLOOR])
            judge(f"{what}, ratio to {PLAIN_FLOOR}", ratio, limit)
    for what, limit in (("wake-ups a second", 2), ("processor time, ms a minute", 15)):
        if APPLICATION in figures[what]:
            judge(what, statistics.median(figures[what][APPLICATION]), limit)


def main():
    options = read_arguments()
    build = pathlib.Path(options.build).resolve()
    os.environ["VERANOX_BUILD_DIR"] = str(build)
    programs = find_programs(build, options.only)
    from stage import Stage
    figures = collections.defaultdict(lambda: collections.defaultdict(list))
    with tempfile.TemporaryDirectory(prefix="veranox-bench-") as folder, Stage(
            pathlib.Path(folder), options.tray) as stage:
        load = os.getloadavg()[0]
        if options.starts:
            measure_starts(stage, programs, options.starts, figures)
        measure_rest(stage, programs, options, figures)
    print(f"tray: {options.tray}; load of the machine before: {load:.2f}, after: {os.getloadavg()[0]:.2f}")
    report(figures)
    report_targets(figures)


if __name__ == "__main__":
    main()
