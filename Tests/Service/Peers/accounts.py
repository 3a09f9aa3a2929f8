"""An account for one program only: sshd takes passwords of the system's accounts, and a test must not make any."""

import crypt  # pylint: disable=deprecated-module
import os
import pwd
import subprocess
from pathlib import Path

BIND_AND_RUN = """
mount --bind "$1" /etc/passwd && mount --bind "$2" /etc/shadow || exit
shift 2
exec "$@"
"""


class PrivateAccount:
    """A program started with `prefix` finds this account in /etc/passwd and /etc/shadow; nobody else does, as it sees
    copies that are mounted in a namespace of its own. Without root a user namespace gives the right to mount, and sshd,
    which then serves only the user that runs it, runs in another one as that user."""

    def __init__(self, name, password, folder):
        is_root = os.geteuid() == 0
        uid, gid = (pwd.getpwnam("nobody")[2:4]) if is_root else (os.geteuid(), os.getegid())
        passwd = Path(folder) / "passwd"
        passwd.write_text(f"{Path('/etc/passwd').read_text()}{name}:x:{uid}:{gid}::{folder}:/bin/sh\n")
        shadow = Path(folder) / "shadow"
        shadow.touch(0o600)
        shadow.write_text(f"{name}:{crypt.crypt(password, crypt.mksalt(crypt.METHOD_SHA512))}:19000:0:99999:7:::\n")
        self.prefix = ["unshare", *([] if is_root else ["--user", "--map-root-user"]), "--mount",
                       "sh", "-c", BIND_AND_RUN, "sh", str(passwd), str(shadow)]
        if not is_root:
            self.prefix += ["unshare", "--user", f"--map-user={uid}", f"--map-group={gid}"]

    def obstacle(self):
        """Why this system does not allow it; empty when it does."""
        probe = subprocess.run([*self.prefix, "true"], capture_output=True, text=True, check=False)
        return probe.stderr.strip() if probe.returncode else ""
