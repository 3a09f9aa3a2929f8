"""Which test programs cover a source file: those whose sources lie where Tests/ mirrors the file's folder."""
import json
import os
import re
from dataclasses import dataclass

_HEADING = re.compile(r"^(?:TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P)\(\s*(\w+)", re.M)
_WRAPPED = re.compile(r'^add_test\(\S+ ("[^\n]*"--") "[^"\n]*/tests/(\w+)"', re.M)


@dataclass(frozen=True)
class Step:
    """One run of a test program. `wrapper`: the words before it, for one that needs a desktop."""

    program: str
    filter: str
    wrapper: tuple = ()


def sources_by_program(build, root):
    """The test sources of each test program, seen from the root. The compile database tells the target by the object."""
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        database = json.load(file)
    programs = {}
    for entry in database:
        target = re.search(r" -o \S*CMakeFiles/([\w-]+)\.dir/", entry["command"])
        path = os.path.relpath(os.path.join(entry["directory"], entry["file"]), root)
        if target and target.group(1).endswith("_tests") and path.startswith("Tests/"):
            programs.setdefault(target.group(1), []).append(path)
    return programs


def mirrored(path, programs):
    """The test sources that cover the file, by program. Without a mirror of its folder, those of the folder above."""
    folder, deep = os.path.dirname(path), True
    while True:
        mirror = os.path.normpath(os.path.join("Tests", folder))
        found = {}
        for program, sources in programs.items():
            inside = [s for s in sources if os.path.dirname(s) == mirror or (deep and s.startswith(mirror + "/"))]
            if inside and "contract" not in program:
                found[program] = inside
        if found or not folder:
            return found
        folder, deep = os.path.dirname(folder), False


def suites(root, sources):
    names = []
    for source in sources:
        with open(os.path.join(root, source), encoding="utf-8") as file:
            names += _HEADING.findall(file.read())
    return list(dict.fromkeys(names))


def suite_filter(names):
    """With the names that parameters give them."""
    return ":".join(f"{name}.*:*/{name}.*:{name}/*" for name in names)


def wrappers(build):
    """The words that ctest puts before a program that needs a desktop."""
    found = {}
    for folder, _, names in os.walk(os.path.join(build, "Tests")):
        if "CTestTestfile.cmake" in names:
            with open(os.path.join(folder, "CTestTestfile.cmake"), encoding="utf-8") as file:
                for words, program in _WRAPPED.findall(file.read()):
                    found[program] = tuple(re.findall(r'"([^"]*)"', words))
    return found


def _is_near(path, source):
    """A test file that is named after the file, or begins as it does."""
    stem = os.path.splitext(os.path.basename(path))[0].lower()
    test = re.sub(r"tests?$", "", os.path.splitext(os.path.basename(source))[0].lower())
    return bool(test) and (test in stem or stem in test)


def steps(path, covering, root, build):
    """The runs, those named after the file first: what they kill needs no other."""
    wrapped = wrappers(build)
    near, others = [], []
    for program, sources in covering.items():
        for chosen, into in (([s for s in sources if _is_near(path, s)], near),
                             ([s for s in sources if not _is_near(path, s)], others)):
            names = suites(root, chosen)
            if names and program in wrapped:
                into += [Step(program, suite_filter([name]), wrapped[program]) for name in names]
            elif names:
                into.append(Step(program, suite_filter(names)))
    return near + others
