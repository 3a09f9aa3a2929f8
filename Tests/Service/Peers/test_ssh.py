"""Tunnels through a bastion: the real ssh against the real sshd, and for passwords also against an SSH server that needs
no account of the system."""

import getpass
import os
import signal
import subprocess
import sys
import unittest
from pathlib import Path

from accounts import PrivateAccount
from support import PeerTest, answers, eventually, free_port, lab

SECRET = "correct horse battery staple"

PASSWORD_SERVER = str(Path(__file__).resolve().with_name("password_server.py"))


class SshPeers(PeerTest):
    def setUp(self):
        super().setUp()
        self.key = self.make_key("user_key")
        self.bastion = free_port()
        self.listen = free_port()

    def make_key(self, name):
        path = self.folder / name
        subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", str(path)], check=True)
        return path

    def start_sshd(self, host_key="host_key", account=None):
        if os.geteuid() == 0:
            Path("/run/sshd").mkdir(mode=0o755, exist_ok=True)
        if not (self.folder / host_key).exists():
            self.make_key(host_key)
        file = self.folder / "sshd_config"
        file.write_text(f"""
ListenAddress 127.0.0.1
Port {self.bastion}
HostKey {self.folder / host_key}
AuthorizedKeysFile {self.key}.pub
PidFile none
StrictModes no
UsePAM no
PermitRootLogin prohibit-password
PasswordAuthentication {"yes" if account else "no"}
KbdInteractiveAuthentication no
""")
        prefix = account.prefix if account else []
        process = self.start([*prefix, "/usr/sbin/sshd", "-D", "-e", "-f", str(file)], stderr=subprocess.DEVNULL)
        self.assertTrue(eventually(lambda: answers(self.bastion)))
        return process

    def start_tunnel(self, auth, variables=None, user=None):
        tunnel = {
            "Profile": "p", "Mode": "ssh", "Listen": f"127.0.0.1:{self.listen}",
            "Target": f"127.0.0.1:{self.site_port()}",
            "SSH": {"Bastion": "bastion.tail1.ts.net", "User": user or getpass.getuser(), "Auth": auth,
                    "IdentityFile": str(self.key) if auth == "key" else ""}}
        return self.start_service(
            lab(tunnels={"t": tunnel}, hosts={"bastion": f"127.0.0.1:{self.bastion}"}), variables)

    def site_port(self):
        self.site = free_port()
        self.start([sys.executable, "-m", "http.server", "--bind", "127.0.0.1", "-d", str(self.folder / "site"),
                    str(self.site)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        (self.folder / "site").mkdir()
        (self.folder / "site" / "index.html").write_text("behind the bastion")
        self.assertTrue(eventually(lambda: answers(self.site)))
        return self.site

    def assert_carries(self, service):
        state = eventually(lambda: service.tunnel("t")["State"] == "listening")
        self.assertTrue(state, service.tunnel("t"))
        page = self.run_program("curl", "-sS", f"http://127.0.0.1:{self.listen}/")
        self.assertEqual(page.stdout, "behind the bastion", page.stderr)

    def ssh_of(self, service):
        children = self.run_program("pgrep", "-P", str(service.process.pid), "-x", "ssh").stdout.split()
        return int(children[0]) if children else None

    def test_key(self):
        self.start_sshd()
        service = self.start_tunnel("key")
        self.assert_carries(service)
        known = (service.home / ".local/share/Veranox/known_hosts").read_text()
        self.assertTrue(known.startswith("bastion.tail1.ts.net "), known)

    def test_agent(self):
        self.start_sshd()
        agent = self.folder / "agent"
        self.start(["ssh-agent", "-D", "-a", str(agent)], stdout=subprocess.DEVNULL)
        self.assertTrue(eventually(agent.exists))
        variables = {"SSH_AUTH_SOCK": str(agent)}
        subprocess.run(["ssh-add", "-q", str(self.key)], env={**os.environ, **variables}, check=True)
        self.assert_carries(self.start_tunnel("agent", variables))

    def test_refused_key_is_told(self):
        self.start_sshd()
        self.key = self.make_key("other_key")
        service = self.start_tunnel("key")
        error = eventually(lambda: service.tunnel("t")["LastError"])
        self.assertIn("Permission denied (publickey)", error)
        self.assertEqual(service.tunnel("t")["State"], "error")

    def test_begins_anew_when_ssh_dies_and_dies_with_the_service(self):
        self.start_sshd()
        service = self.start_tunnel("key")
        self.assert_carries(service)
        first = self.ssh_of(service)
        os.kill(first, signal.SIGKILL)
        self.assertTrue(eventually(lambda: self.ssh_of(service) not in (None, first)))
        self.assert_carries(service)
        second = self.ssh_of(service)
        service.process.kill()
        service.process.wait()
        self.assertTrue(eventually(lambda: not Path(f"/proc/{second}").exists()))

    def test_changed_host_key_ends_it(self):
        sshd = self.start_sshd()
        service = self.start_tunnel("key")
        self.assert_carries(service)
        sshd.terminate()
        sshd.wait()
        os.kill(self.ssh_of(service), signal.SIGKILL)
        self.start_sshd("another_host_key")
        error = eventually(lambda: "HOST IDENTIFICATION" in service.tunnel("t")["LastError"])
        self.assertTrue(error, service.tunnel("t"))

    def test_bastion_that_is_down_is_told(self):
        service = self.start_tunnel("key")
        error = eventually(lambda: service.tunnel("t")["LastError"])
        self.assertEqual(error, "bastion.tail1.ts.net port 22 refused the connection.")

    def start_sshd_with_password(self):
        account = PrivateAccount("deploy", SECRET, self.folder)
        if obstacle := account.obstacle():
            self.skipTest(f"sshd cannot have an account of its own: {obstacle}")
        self.start_sshd(account=account)

    def start_password_server(self):
        command = [sys.executable, "-W", "ignore", PASSWORD_SERVER, str(self.bastion), SECRET]
        self.start(command, stdout=subprocess.DEVNULL)
        self.assertTrue(eventually(lambda: answers(self.bastion)))

    def test_password(self):
        self.start_sshd_with_password()
        self.assert_password_opens()

    def test_wrong_password_is_told(self):
        self.start_sshd_with_password()
        self.assert_wrong_password_is_told()

    def test_password_of_another_server(self):
        self.start_password_server()
        self.assert_password_opens()

    def test_wrong_password_of_another_server_is_told(self):
        self.start_password_server()
        self.assert_wrong_password_is_told()

    def assert_password_opens(self):
        service = self.start_tunnel("password", user="deploy")
        error = eventually(lambda: service.tunnel("t")["LastError"])
        self.assertEqual(error, "The SSH password of this tunnel is not known; enter it in the tunnel's settings.")
        service.ask("POST", "/api/tunnels/t/secret", {"Password": SECRET})
        self.assert_carries(service)
        self.assert_secret_is_nowhere(service)

    def assert_wrong_password_is_told(self):
        service = self.start_tunnel("password", user="deploy")
        service.ask("POST", "/api/tunnels/t/secret", {"Password": "wrong"})
        error = eventually(lambda: "Permission denied" in service.tunnel("t")["LastError"])
        self.assertTrue(error, service.tunnel("t"))
        self.assertEqual(service.tunnel("t")["State"], "error")
        self.assertFalse(answers(self.listen))

    def assert_secret_is_nowhere(self, service):
        """Neither in the command line or environment of a process, but of the test's own server, nor in a file."""
        secret = SECRET.encode()
        seen = 0
        for process in Path("/proc").glob("[0-9]*"):
            try:
                command = (process / "cmdline").read_bytes()
                environment = (process / "environ").read_bytes()
            except OSError:
                continue
            if PASSWORD_SERVER.encode() in command:
                continue
            seen += 1
            self.assertNotIn(secret, command, process)
            self.assertNotIn(secret, environment, process)
        self.assertGreater(seen, 2)
        files = [path for path in self.folder.rglob("*") if path.is_file()]
        self.assertTrue(any(path.is_relative_to(service.home) for path in files))
        for path in files:
            self.assertNotIn(secret, path.read_bytes(), path)


if __name__ == "__main__":
    unittest.main()
