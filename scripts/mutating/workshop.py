"""A copy of the sources in which mutants are built and tested, so that the checkout is never touched."""
import os
import re
import resource
import shutil
import signal
import subprocess
import tempfile
import time

MOST_MEMORY = 8 << 30
_OBJECT_FAILED = re.compile(r"^FAILED: \S+\.o\b", re.M)
_RAN = re.compile(r"^\[==========\] (\d+) tests? from", re.M)
# A mutant may be careless where the sources may not.
_UNWARNED = '#pragma clang diagnostic ignored "-Weverything"\n#line 1\n'


class Ended:
    """How a command ended. status: None for one that was stopped at its limit."""

    def __init__(self, status, output):
        self.status, self.output = status, output

    @property
    def ok(self):
        return self.status == 0


def _bounded():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def _bounded_memory():
    _bounded()
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))


_running = set()


def end_all():
    """Ends what run() has started and not seen the end of."""
    for process in list(_running):
        _end_session(process)


def run(command, folder, limit, environment=None, prepare=_bounded):
    """Runs a command with all that it starts for at most so many seconds."""
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.STDOUT, start_new_session=True, preexec_fn=prepare)
        _running.add(process)
        try:
            status = process.wait(limit)
        except subprocess.TimeoutExpired:
            status = None
        finally:
            _end_session(process)
            _running.discard(process)
        output.seek(0)
        return Ended(status, output.read(1 << 20).decode(errors="replace"))


def _end_session(process):
    """Ends the process and all that it has started: ninja gives each of its children a group of its own."""
    while members := _session(process.pid):
        for pid in members:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        process.poll()
        time.sleep(0.01)
    process.wait()


def _session(leader):
    """The processes of a session that have not ended."""
    found = []
    for name in os.listdir("/proc"):
        if name.isdigit():
            try:
                with open(f"/proc/{name}/stat", encoding="utf-8", errors="replace") as file:
                    state, _, _, session = file.read().rpartition(")")[2].split()[:4]
            except (FileNotFoundError, ProcessLookupError):
                continue
            if int(session) == leader and state not in "ZX":
                found.append(int(name))
    return found


def copy_tree(root, target):
    """Makes the target hold the files of the checkout that git knows or would take; what is the same stays untouched."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=root,
                            capture_output=True, text=True, check=True).stdout.split("\0")
    wanted = {name for name in listed if name and os.path.isfile(os.path.join(root, name))}
    for name in wanted:
        source, copy = os.path.join(root, name), os.path.join(target, name)
        if not _same(source, copy):
            os.makedirs(os.path.dirname(copy), exist_ok=True)
            shutil.copy(source, copy)
    for folder, folders, names in os.walk(target):
        folders[:] = [f for f in folders if os.path.join(folder, f) != os.path.join(target, "build")]
        for name in names:
            path = os.path.join(folder, name)
            if os.path.relpath(path, target) not in wanted:
                os.unlink(path)


def _same(one, other):
    try:
        with open(one, "rb") as first, open(other, "rb") as second:
            return first.read() == second.read()
    except FileNotFoundError:
        return False


class Workshop:
    def __init__(self, root, folder, build_limit):
        self.folder, self._limit = folder, build_limit
        self.build_folder = os.path.join(folder, "build", "debug")
        os.makedirs(folder, exist_ok=True)
        copy_tree(root, folder)

    def configure(self):
        return run(["cmake", "--preset", "debug"], self.folder, self._limit)

    def build(self, targets, limit=None):
        return run(["nice", "cmake", "--build", "--preset", "debug", "--target", *targets], self.folder, limit or self._limit)

    def put(self, path, text, mutated=False):
        """A file of the copy gets this text."""
        with open(os.path.join(self.folder, path), "w", encoding="utf-8") as file:
            file.write(_UNWARNED + text if mutated else text)

    def test(self, step, limit):
        """Runs a step with a home of its own: what a mutant writes to the wrong place goes nowhere."""
        with tempfile.TemporaryDirectory(prefix="mutant-") as home:
            environment = {name: value for name, value in os.environ.items() if not name.startswith(("XDG_", "VERANOX_"))}
            environment |= {"HOME": home, "TMPDIR": home}
            program = os.path.join(self.build_folder, "tests", step.program)
            return run([*step.wrapper, program, f"--gtest_filter={step.filter}", "--gtest_fail_fast", "--gtest_brief=1"],
                       os.path.dirname(program), limit, environment, _bounded_memory)

    def names(self, program):
        """The names of all tests of a program."""
        listed = run([os.path.join(self.build_folder, "tests", program), "--gtest_list_tests"], self.folder, 60)
        suite, found = "", []
        for line in listed.output.splitlines():
            word = line.split("#")[0].strip()
            if line.startswith("  "):
                found.append(suite + word)
            elif word.endswith("."):
                suite = word
        return found


def was_not_compiled(built):
    """Told apart from a program that the build itself runs, and that a mutant has broken."""
    return bool(_OBJECT_FAILED.search(built.output))


def tests_run(ended):
    return sum(int(count) for count in _RAN.findall(ended.output))
