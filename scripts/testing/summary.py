#!/usr/bin/python3
"""What a run of scripts/test took and what came out: the slowest steps, the slowest tests, what was left out, the counts.

usage: summary.py FOLDER [STEP]

The folder has the file `steps`, a line "seconds<TAB>name" a step, and a JUnit file of ctest's a run, NAME.xml. The last
line is "N passed, N failed", over all runs; a STEP that has failed without a test counts as one.
"""
import glob
import os
import sys
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass

MOST = 10


@dataclass(frozen=True)
class Test:
    run: str
    name: str
    seconds: float
    outcome: str  # passed, failed, skipped


def outcome(case):
    """ctest calls both "not run": a test that has skipped itself, and one whose program is missing."""
    status = case.get("status")
    skipped = case.find("skipped")
    if status == "run":
        return "passed"
    if status == "disabled" or (skipped is not None and skipped.get("message", "").startswith("SKIP_")):
        return "skipped"
    return "failed"


def read_tests(path):
    run = os.path.splitext(os.path.basename(path))[0]
    try:
        cases = list(ElementTree.parse(path).getroot().iter("testcase"))
    except ElementTree.ParseError as problem:
        return [Test(run, f"{path} is not readable: {problem}", 0.0, "failed")]
    return [Test(run, case.get("name"), float(case.get("time", 0)), outcome(case)) for case in cases]


def read_steps(path):
    with open(path, encoding="utf-8") as file:
        lines = [line.rstrip("\n").split("\t", 1) for line in file if "\t" in line]
    return [(float(seconds), name) for seconds, name in lines]


def slowest(rows):
    return sorted(rows, key=lambda row: -row[0])[:MOST]


def summary(steps, tests, failed_step=""):
    """The lines to print."""
    yield "slowest steps:"
    for seconds, name in slowest(steps):
        yield f"{seconds:8.0f} s  {name}"
    yield "slowest tests:"
    for seconds, name in slowest([(test.seconds, f"{test.name} ({test.run})") for test in tests]):
        yield f"{seconds:8.1f} s  {name}"
    for heading, wanted in (("skipped", "skipped"), ("FAILED", "failed")):
        for test in tests:
            if test.outcome == wanted:
                yield f"{heading}: {test.name} ({test.run})"
    if failed_step and all(test.outcome != "failed" for test in tests):
        yield f"FAILED: {failed_step}"
        tests = [*tests, Test("", failed_step, 0.0, "failed")]
    counts = [sum(1 for test in tests if test.outcome == wanted) for wanted in ("passed", "failed")]
    yield f"{counts[0]} passed, {counts[1]} failed"


def main():
    folder = sys.argv[1]
    runs = sorted(glob.glob(os.path.join(glob.escape(folder), "*.xml")), key=os.path.getmtime)
    tests = [test for run in runs for test in read_tests(run)]
    print("\n".join(summary(read_steps(os.path.join(folder, "steps")), tests, "".join(sys.argv[2:]))))


if __name__ == "__main__":
    main()
