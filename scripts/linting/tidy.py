"""clang-tidy over the files of a build's compile database, remembered by the content of all that a file reads."""
import concurrent.futures
import hashlib
import json
import os
import re
import subprocess
import time

CLANG_TIDY = "clang-tidy-19"
_INCLUDE = re.compile(rb'^[ \t]*#[ \t]*include[ \t]*"([^"\n]+)"', re.M)
# clang-tidy reads the headers themselves, so that it needs no build of the precompiled one.
_PRECOMPILED = re.compile(r"-include-pch \S+ ")


def find_build(root):
    """The folder of the newest compile database, or None."""
    folders = [os.path.join(root, "build", preset) for preset in ("debug", "release")]
    folders = [f for f in folders if os.path.exists(os.path.join(f, "compile_commands.json"))]
    return max(folders, key=lambda f: os.path.getmtime(os.path.join(f, "compile_commands.json")), default=None)


def _own_headers(root, path, known):
    """Every header of the repository that the file includes, directly or not."""
    if path not in known:
        known[path] = set()
        try:
            with open(os.path.join(root, path), "rb") as file:
                content = file.read()
        except OSError:
            return known[path]
        for name in _INCLUDE.findall(content):
            for folder in ("", os.path.dirname(path)):
                header = os.path.normpath(os.path.join(folder, name.decode()))
                if os.path.isfile(os.path.join(root, header)):
                    known[path] |= {header} | _own_headers(root, header, known)
                    break
    return known[path]


def _key(root, path, command, fixed, known):
    digest = hashlib.sha256(fixed + command.encode())
    for name in [path, *sorted(_own_headers(root, path, known))]:
        digest.update(name.encode())
        with open(os.path.join(root, name), "rb") as file:
            digest.update(hashlib.sha256(file.read()).digest())
    return digest.hexdigest()


def _database(build, root, tracked):
    """The compile database's entries for the repository's own files, by path."""
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        database = json.load(file)
    own = {os.path.join(root, path): path for path in tracked}
    entries = {}
    for entry in database:
        path = own.get(os.path.normpath(os.path.join(entry["directory"], entry["file"])))
        if path:
            entry["command"] = _PRECOMPILED.sub("", entry["command"])
            entries.setdefault(path, entry)
    return entries


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

    cache = os.path.join(root, "build", "lint")
    os.makedirs(cache, exist_ok=True)
    with open(os.path.join(cache, "compile_commands.json"), "w", encoding="utf-8") as file:
        json.dump(list(entries.values()), file)

    known = {}
    fixed = _what_every_result_depends_on(root, tracked)
    keys = {path: _key(root, path, entry["command"], fixed, known) for path, entry in entries.items()}
    stale = [path for path, key in keys.items() if not os.path.exists(os.path.join(cache, key))]
    stale.sort(key=lambda path: -os.path.getsize(os.path.join(root, path)))  # the long ones first

    def run(path):
        command = [CLANG_TIDY, "-p", cache, "--quiet", os.path.join(root, path)]
        result = subprocess.run(command, capture_output=True, text=True, cwd=root)
        if result.returncode == 0:
            with open(os.path.join(cache, keys[path]), "w", encoding="utf-8") as file:
                file.write(path)
        else:
            report((result.stdout or result.stderr).strip().replace(root + "/", ""))

    began = time.monotonic()
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        list(pool.map(run, stale))
    _forget_old(cache)
    unchanged = len(entries) - len(stale)
    return f"{len(stale)} files in {time.monotonic() - began:.0f} s, {unchanged} unchanged since they passed"


def _forget_old(cache, days=30):
    limit = time.time() - days * 24 * 3600
    for entry in os.scandir(cache):
        if len(entry.name) == 64 and entry.stat().st_mtime < limit:
            os.unlink(entry.path)
