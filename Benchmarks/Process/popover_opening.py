#!/usr/bin/python3
"""From the click on the icon to the popover's first picture on the screen, the first time in a process and later; and
what many openings leave behind in memory. Software rendering, in a private desktop, the built-in lab network.

  Benchmarks/Process/popover_opening.py [--build DIR] [--processes N] [--warm N] [--openings N] [--blended]

Exit status 0: measured, whatever the figures; otherwise something did not come up.
"""
import argparse
import os
import pathlib
import statistics
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "Tests" / "EndToEnd"))

COLD_TARGET, WARM_TARGET = 250, 100  # ms
EARLY = 20  # openings after which the process is taken to have all that it keeps
GROWTH_TARGET = 2.0  # KiB an opening: below it, a day of openings every minute is less than 3 MiB
REST = 0.4  # seconds that the popover stays closed


def read_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=str(HERE.parents[1] / "build" / "release"), help="build tree (release)")
    parser.add_argument("--processes", type=int, default=7, help="starts of the application, each with one cold opening")
    parser.add_argument("--warm", type=int, default=5, help="later openings in each process")
    parser.add_argument("--openings", type=int, default=200, help="openings for the memory; 0 leaves it out")
    parser.add_argument("--blended", action="store_true", help="under a compositing manager: corners and a shadow")
    parser.add_argument("--lab", default="demo")
    return parser.parse_args()


def measure_opening(stage, processes, warm):
    cold, later = [], []
    with stage.application() as application:  # warms the caches of the system, too
        stage.find(application)
    for _ in range(processes):
        with stage.application() as application:
            times = []
            for _ in range(warm + 1):
                times.append(stage.open() * 1000)
                stage.close(application)
                time.sleep(REST)
            cold.append(times[0])
            later += times[1:]
    return cold, later


def measure_memory(stage, openings):
    """MiB before the first opening and after each step of 20: PSS, and what the process has for itself."""
    from measures import own_memory_mib, proportional_memory_mib

    def now():
        return proportional_memory_mib(application.pid), own_memory_mib(application.pid)

    with stage.application() as application:
        memory = {0: now()}
        for number in range(1, openings + 1):
            stage.show()
            stage.close(application)
            if number % EARLY == 0:
                time.sleep(REST)
                memory[number] = now()
        return memory


def slope_kib(memory):
    """KiB of its own that an opening adds once the first ones are over, by least squares."""
    later = {number: own for number, (_, own) in memory.items() if number >= EARLY}
    return statistics.linear_regression(list(later), list(later.values())).slope * 1024


def report_times(what, values, target):
    median = statistics.median(values)
    print(f"{what:44}{median:8.1f}{min(values):8.1f}{max(values):8.1f}{target:8}  {'met' if median <= target else 'MISSED'}")


def main():
    options = read_arguments()
    os.environ["VERANOX_BUILD_DIR"] = str(pathlib.Path(options.build).resolve())
    from popover_stage import PopoverStage
    before = os.getloadavg()[0]
    with tempfile.TemporaryDirectory(prefix="veranox-bench-") as folder, PopoverStage(
            pathlib.Path(folder), options.lab, options.blended) as stage:
        cold, warm = measure_opening(stage, options.processes, options.warm)
        memory = measure_memory(stage, options.openings) if options.openings else {}
    print(f"load of the machine before: {before:.2f}, after: {os.getloadavg()[0]:.2f}\n")
    print(f"{'':44}{'median':>8}{'least':>8}{'most':>8}{'target':>8}")
    report_times("click to first picture, cold, ms", cold, COLD_TARGET)
    report_times("click to first picture, warm, ms", warm, WARM_TARGET)
    if memory:
        print("\nmemory, MiB, after so many openings (PSS, of its own): " + ", ".join(
            f"{number}: {pss:.1f} {own:.1f}" for number, (pss, own) in memory.items()))
    if len(memory) > 2:
        slope = slope_kib(memory)
        print(f"{slope:.2f} KiB of its own an opening after the first {EARLY}, at most {GROWTH_TARGET}: {'met' if slope <= GROWTH_TARGET else 'MISSED'}")


if __name__ == "__main__":
    main()
