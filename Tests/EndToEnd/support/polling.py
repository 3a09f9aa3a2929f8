"""Waiting for what another process does: with a deadline, never for a fixed time."""
import time

INTERVAL = 0.02  # seconds between two looks


def eventually(probe, what, within=10.0):
    """Calls probe until its result is true and returns that; AssertionError after `within` seconds."""
    deadline = time.monotonic() + within
    while True:
        seen = probe()
        if seen:
            return seen
        if time.monotonic() >= deadline:
            raise AssertionError(f"{what}: not within {within:g} s; seen last: {seen!r}")
        time.sleep(INTERVAL)


def stays(probe, what, during):
    """Asserts that probe's result is true at every look during `during` seconds."""
    deadline = time.monotonic() + during
    while time.monotonic() < deadline:
        seen = probe()
        if not seen:
            raise AssertionError(f"{what}: no longer; seen: {seen!r}")
        time.sleep(INTERVAL)
