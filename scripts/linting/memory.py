"""What has passed a check, remembered by a key of all that the result depends on: one for every checkout of the user."""
import os
import time

LONGEST_DAYS = 30  # since it was last of use
MOST = 20_000  # the commands of some thirty states of the sources


def folder(environment, fallback):
    """The user's cache folder has it; the fallback where there is none to write into. A relative XDG folder is none."""
    cache = environment.get("XDG_CACHE_HOME", "")
    if not os.path.isabs(cache):
        home = environment.get("HOME", "")
        cache = os.path.join(home, ".cache") if os.path.isabs(home) else ""
    wanted = os.path.join(cache, "veranox", "lint") if cache else fallback
    try:
        os.makedirs(wanted, exist_ok=True)
    except OSError:
        wanted = fallback
    if not os.access(wanted, os.W_OK):
        wanted = fallback
    os.makedirs(wanted, exist_ok=True)
    return wanted


class Memory:
    def __init__(self, place):
        self._place = place

    def __contains__(self, key):
        try:
            os.utime(os.path.join(self._place, key))
        except OSError:
            return False
        return True

    def add(self, key, note):
        """Other checkouts may do the same at the same time: what counts is that the file is there."""
        with open(os.path.join(self._place, key), "w", encoding="utf-8") as file:
            file.write(note)

    def forget_old(self, days=LONGEST_DAYS, most=MOST):
        """What was of no use for so long, and the oldest of what is too much."""
        limit = time.time() - days * 24 * 3600
        entries = []
        for entry in os.scandir(self._place):
            try:
                if len(entry.name) == 64:
                    entries.append((entry.stat().st_mtime, entry.path))
            except OSError:
                continue  # gone: another checkout forgets as well
        entries.sort(reverse=True)
        for index, (used, path) in enumerate(entries):
            if index >= most or used < limit:
                try:
                    os.unlink(path)
                except FileNotFoundError:
                    pass
