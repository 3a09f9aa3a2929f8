"""What a compiler reads of the repository for a file, and a key of all of it that is the same in every checkout."""
import hashlib
import os
import re

_INCLUDE = re.compile(rb'^[ \t]*#[ \t]*(?:include|import)[ \t]*"([^"\n]+)"', re.M)


def own(root, path):
    """The path seen from the repository, or None for what lies outside."""
    relative = os.path.relpath(os.path.normpath(path), root)
    return None if relative.startswith("..") else relative


def _direct_headers(root, path, folders):
    """The headers of the repository that the file itself includes; folders are searched after its own."""
    try:
        with open(os.path.join(root, path), "rb") as file:
            content = file.read()
    except OSError:
        return []
    found = []
    for name in _INCLUDE.findall(content):
        for folder in (os.path.dirname(path), *folders):
            header = own(root, os.path.join(root, folder, name.decode()))
            if header and os.path.isfile(os.path.join(root, header)):
                found.append(header)
                break
    return found


def with_headers(root, paths, folders, known):
    """The files and every header of the repository that they include, directly or not."""
    seen, pending = set(), list(paths)
    while pending:
        path = pending.pop()
        if path not in seen:
            seen.add(path)
            if (path, folders) not in known:
                known[path, folders] = _direct_headers(root, path, folders)
            pending += known[path, folders]
    return seen


def key(root, build, paths, folders, fixed, known):
    """Of the fixed bytes, and of the names and contents of the files and of all their headers."""
    digest = hashlib.sha256(fixed)
    for name in sorted(with_headers(root, paths, folders, known)):
        with open(os.path.join(root, name), "rb") as file:
            content = file.read()
        if own(build, os.path.join(root, name)):
            name, content = "<generated>", content.replace(root.encode(), b"<root>")
        digest.update(name.encode())
        digest.update(hashlib.sha256(content).digest())
    return digest.hexdigest()
