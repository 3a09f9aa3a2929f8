"""Folders and descriptors as a careless or hostile surrounding leaves them."""

import json
import os
import pwd
import unittest

from attack import CONFIG, SUPPORT_FOLDER, AttackTest, answers, eventually, free_port, lab


class Folders(AttackTest):
    def setUp(self):
        super().setUp()
        service = self.start_service(lab())
        self.home = service.home
        self.assertEqual(service.end(), 0)
        self.config, self.support = self.home / CONFIG, self.home / SUPPORT_FOLDER

    def save(self, service, base):
        config = service.ask("GET", "/api/config")
        config["Router"]["ProfileHostnameBase"] = base
        service.ask("POST", "/api/config", config)

    def hostname_base(self, file):
        return json.loads(file.read_text())["Router"]["ProfileHostnameBase"]

    def test_left_over_files_are_cleared_at_start(self):
        left_over = [self.config.parent / ".config.json.123456.new", self.support / ".control.token.123456.new"]
        for path in left_over:
            path.write_text("half")
        others = self.config.parent / "notes.new"
        others.write_text("not ours")
        self.start_service(lab())
        self.assertEqual([path for path in left_over if path.exists()], [])
        self.assertTrue(others.exists())

    def test_folders_that_others_may_write_to_are_refused(self):
        for mode in (0o777, 0o772, 0o1777):
            with self.subTest(oct(mode)):
                self.config.parent.chmod(mode)
                sentence = self.assert_refuses_to_start()
                self.assertIn(str(self.config.parent), sentence)
                self.assertEqual(self.config.parent.stat().st_mode & 0o7777, mode)

    @unittest.skipIf(os.geteuid() != 0, "only root can give files away")
    def test_folders_of_others_are_refused(self):
        nobody = pwd.getpwnam("nobody")
        for folder in (self.config.parent, self.support):
            with self.subTest(folder):
                os.chown(folder, nobody.pw_uid, nobody.pw_gid)
                self.assertIn(str(folder), self.assert_refuses_to_start())
                os.chown(folder, 0, 0)

    def test_a_link_in_place_of_the_document_is_kept(self):
        real = self.folder / "dotfiles" / "veranox.json"
        real.parent.mkdir()
        self.config.rename(real)
        for link in (str(real), os.path.relpath(real, self.config.parent)):
            with self.subTest(link):
                self.config.unlink(missing_ok=True)
                self.config.symlink_to(link)
                service = self.start_service(lab())
                self.save(service, "linked")
                self.save(service, "again")
                self.assertEqual(os.readlink(self.config), link)
                self.assertEqual(self.hostname_base(real), "again")
                self.assertEqual([path.name for path in real.parent.iterdir()], [real.name])
                self.assertEqual(service.end(), 0)

    def test_the_first_descriptors_are_never_something_else(self):
        port = free_port()

        def close_first():
            for number in range(3):
                os.close(number)
        # The log has nowhere to go here, so nothing is to be read from it.
        process = self.start(
            [os.environ["VERANOX_EXECUTABLE"], "gui", "serve", "--listen", f"127.0.0.1:{port}"],
            env={"HOME": str(self.home)}, preexec_fn=close_first)
        self.assertTrue(eventually(lambda: answers(port)))
        for number in range(3):
            self.assertEqual(os.readlink(f"/proc/{process.pid}/fd/{number}"), "/dev/null")
        self.assertIn("Version", json.loads(self.config.read_text()))

    def test_files_are_for_their_owner_alone(self):
        service = self.start_service(lab())
        self.save(service, "mine")
        service.ask("POST", "/api/feedback", {"message": "m", "kind": "", "contact": "", "appVersion": "", "os": ""})
        for file in (self.config, self.support / "control.token", self.support / "feedback.jsonl"):
            self.assertEqual(file.stat().st_mode & 0o777, 0o600, file)
        self.assertEqual(self.support.stat().st_mode & 0o777, 0o700)


if __name__ == "__main__":
    unittest.main()
