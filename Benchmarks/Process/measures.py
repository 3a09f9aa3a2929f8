"""What the kernel knows of a running process and all its threads."""
import dataclasses
import pathlib
import re
import time


@dataclasses.dataclass(frozen=True)
class ThreadUse:
    wakeups: int  # times the thread was put on a processor after it had slept or was pushed off
    nanoseconds: int  # on a processor


@dataclasses.dataclass(frozen=True)
class Idle:
    wakeups_per_second: float
    processor_ms_per_minute: float
    by_thread: dict  # name and id of the thread: (wake-ups a second, ms a minute)


def _read(path):
    """The file's text; nothing when its process or thread has ended meanwhile."""
    try:
        return path.read_text()
    except (FileNotFoundError, ProcessLookupError):
        return None


def _threads(pid):
    uses = {}
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        status, schedule, name = (_read(task / file) for file in ("status", "schedstat", "comm"))
        if None in (status, schedule, name):
            continue
        switches = re.findall(r"voluntary_ctxt_switches:\s+(\d+)", status)  # matches the nonvoluntary line too
        uses[f"{name.strip()} {task.name}"] = ThreadUse(sum(map(int, switches)), int(schedule.split()[0]))
    return uses


def measure_idle(process, seconds):
    """What the process uses in this time. A thread that ends meanwhile is an error: its use would be lost."""
    before, began = _threads(process.pid), time.monotonic()
    if not any(use.nanoseconds for use in before.values()):
        raise SystemExit("this kernel keeps no /proc/PID/task/*/schedstat: nothing to measure with")
    time.sleep(seconds)  # the measured quantity, not a wait for something
    after, lasted = _threads(process.pid), time.monotonic() - began
    if not process.running:
        raise SystemExit(f"{process.popen.args[0]} ended while idle:\n{process.output()}")
    if lost := before.keys() - after.keys():
        raise SystemExit(f"{process.popen.args[0]}: these threads ended while it was idle: {sorted(lost)}")
    nothing = ThreadUse(0, 0)
    by_thread = {name: ((use.wakeups - before.get(name, nothing).wakeups) / lasted,
                        (use.nanoseconds - before.get(name, nothing).nanoseconds) / 1e6 * 60 / lasted)
                 for name, use in after.items()}
    return Idle(sum(wakeups for wakeups, _ in by_thread.values()), sum(ms for _, ms in by_thread.values()), by_thread)


def _memory_mib(pid, key):
    rollup = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return int(re.search(rf"^{key}:\s+(\d+) kB", rollup, re.MULTILINE)[1]) / 1024


def proportional_memory_mib(pid):
    """Memory of the process, shared pages divided among those that share them."""
    return _memory_mib(pid, "Pss")


def own_memory_mib(pid):
    """What the process has written itself: it does not change with those that come and go and share its libraries."""
    return _memory_mib(pid, "Private_Dirty")


STRETCH_SAMPLE = 0.002  # seconds between two looks at the main thread
STRETCH_IDLE = 0.1  # of the time between two looks: a thread that used less has waited for something


def measure_main_thread(pid, seconds):
    """The share of a processor, in per cent, that the main thread takes, and the longest time in ms that it had a
    processor without waiting for something in between: so long nothing else gets its turn."""
    schedule = pathlib.Path(f"/proc/{pid}/task/{pid}/schedstat")

    def used():
        return int(schedule.read_text().split()[0])

    first, began, longest, stretch = used(), time.monotonic(), 0, 0
    before, looked = first, began
    while looked < began + seconds:
        time.sleep(STRETCH_SAMPLE)
        now, time_now = used(), time.monotonic()
        is_busy = now - before > STRETCH_IDLE * (time_now - looked) * 1e9
        stretch = stretch + now - before if is_busy else 0
        longest = max(longest, stretch)
        before, looked = now, time_now
    return (before - first) / (looked - began) / 1e7, longest / 1e6
