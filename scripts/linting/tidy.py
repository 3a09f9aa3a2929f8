"""clang-tidy over the files of a build's compile database, remembered by the content of all that a file reads."""
import concurrent.futures
import json
import os
import re
import shlex
import subprocess
import time

from linting import inputs, memory

# Newer than the compiler, as it leaves the bodies of system headers alone: half the time for each file.
CLANG_TIDY = "clang-tidy-22"
# It comes with a compiler of its own, which cannot read the build's precompiled headers: it makes them once more.
COMPILER = "clang++-22"
_PRECOMPILED = re.compile(r"-include-pch (\S*/precompiled_(\w+)\.dir/\S+) ")
# A release build is looked at as a debug build is, with its assertions, so that one result does for both.
_BUILD_TYPE = re.compile(r" (?:-O[0-3sg]|-g[0-3]?|-DNDEBUG|-DQT_NO_DEBUG)(?= )")


def find_build(root):
    """The folder of the newest compile database, or None."""
    folders = [os.path.join(root, "build", preset) for preset in ("debug", "release")]
    folders = [f for f in folders if os.path.exists(os.path.join(f, "compile_commands.json"))]
    return max(folders, key=lambda f: os.path.getmtime(os.path.join(f, "compile_commands.json")), default=None)


def portable(command, root, build):
    """The command as it is in every checkout and for every target that compiles alike."""
    command = re.sub(r" -o \S+", "", command)
    command = re.sub(r" -I\S+_autogen/include", "", command)  # what moc made, which no own file names
    command = _PRECOMPILED.sub("", command)  # it changes how fast a file is read and not what is found
    for folder, placeholder in ((build, "<build>"), (root, "<root>")):
        command = re.sub(re.escape(folder) + r"(?![\w.-])", placeholder, command)
    return command


def _forced_headers(command):
    """What the command has included before the file begins: the text of a precompiled header."""
    return re.findall(r"-include (?:-Xclang )?(\S+)", command)


def _key(root, build, path, command, fixed, known):
    folders = tuple(filter(None, (inputs.own(root, folder) for folder in re.findall(r" -I ?(\S+)", command))))
    forced = filter(None, (inputs.own(root, header) for header in _forced_headers(command)))
    return inputs.key(root, build, [path, *forced], folders, fixed + portable(command, root, build).encode(), known)


def _database(build, root, tracked):
    """The compile database's entries for the repository's own files, by path."""
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        database = json.load(file)
    own = {os.path.join(root, path): path for path in tracked}
    entries = {}
    for entry in database:
        path = own.get(os.path.normpath(os.path.join(entry["directory"], entry["file"])))
        if path:
            entry["command"] = _BUILD_TYPE.sub("", entry["command"])
            entries.setdefault(path, entry)
    return entries


def _with_own_precompiled(build, entries, stale, work):
    """The entries, with headers that are made here for the files in `stale`. Where one cannot be made, the files read the
    headers themselves."""
    kinds = {kind.group(2) for kind in (_PRECOMPILED.search(entries[path]["command"]) for path in stale) if kind}
    made = dict(_precompile(build, kinds, work))
    for entry in entries.values():
        entry["command"] = _PRECOMPILED.sub(lambda kind: made.get(kind.group(2), ""), entry["command"])
    return list(entries.values())


def _precompile(build, kinds, work):
    """Those kinds of precompiled header, each with the option that reads the one made as the build makes it."""
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        database = json.load(file)
    for entry in database:
        header = re.search(r"/precompiled_(\w+)\.dir/cmake_pch\.hxx\.cxx$", entry["file"])
        if not header or header.group(1) not in kinds:
            continue
        output = os.path.join(work, f"{header.group(1)}.pch")
        words = shlex.split(_BUILD_TYPE.sub("", entry["command"]))
        words[0], words[words.index("-o") + 1] = COMPILER, output
        if subprocess.run(words, capture_output=True, cwd=entry["directory"]).returncode == 0:
            yield header.group(1), f"-include-pch {output} "


def _what_every_result_depends_on(root, tracked):
    fixed = subprocess.run([CLANG_TIDY, "--version"], capture_output=True, check=True).stdout
    for config in sorted(p for p in tracked if os.path.basename(p) == ".clang-tidy"):
        with open(os.path.join(root, config), "rb") as file:
            fixed += file.read()
    return fixed


def check(root, tracked, jobs, report):
    """Reports clang-tidy's own text for each file that it refuses; returns a summary."""
    build = find_build(root)
    if not build:
        report("no compile database: run cmake --preset debug (or release) first")
        return "not run"
    entries = _database(build, root, tracked)
    if not entries:
        report(f"the compile database of {build} names no file of this repository")
        return "not run"

    work = os.path.join(root, "build", "lint")
    os.makedirs(work, exist_ok=True)
    known = {}
    fixed = _what_every_result_depends_on(root, tracked)
    passed = memory.Memory(memory.folder(os.environ, work))
    keys = {path: _key(root, build, path, entry["command"], fixed, known) for path, entry in entries.items()}
    stale = [path for path, key in keys.items() if key not in passed]
    stale.sort(key=lambda path: -os.path.getsize(os.path.join(root, path)))  # the long ones first

    began = time.monotonic()
    with open(os.path.join(work, "compile_commands.json"), "w", encoding="utf-8") as file:
        json.dump(_with_own_precompiled(build, entries, stale, work), file)

    def run(path):
        command = [CLANG_TIDY, "-p", work, "--quiet", os.path.join(root, path)]
        result = subprocess.run(command, capture_output=True, text=True, cwd=root)
        if result.returncode == 0:
            passed.add(keys[path], path)
        else:
            report((result.stdout or result.stderr).strip().replace(root + "/", ""))

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        list(pool.map(run, stale))
    passed.forget_old()
    unchanged = len(entries) - len(stale)
    return f"{len(stale)} files in {time.monotonic() - began:.0f} s, {unchanged} unchanged since they passed"
