"""Configuration files that cannot be used: only what is no JSON is set aside, and nothing is ever lost."""

import json
import os
import shutil
import unittest

from attack import CONFIG, AttackTest, lab, plain_user


class BadFiles(AttackTest):
    def setUp(self):
        super().setUp()
        service = self.start_service(lab(tunnels={
            "t": {"Profile": "p", "Target": "inner.tail1.ts.net:80", "Listen": "127.0.0.1:40123", "Disabled": True}}))
        self.config = service.home / CONFIG
        self.assertEqual(service.end(), 0)
        self.good = json.loads(self.config.read_text())

    def state(self):
        """The file and all copies of it, as they are."""
        return {path.name: (os.readlink(path) if path.is_symlink() else path.read_bytes() if path.is_file() else None)
                for path in self.config.parent.glob("*config.json*")}

    def assert_refused_and_untouched(self, **options):
        before = self.state()
        for _ in range(2):  # the second start finds what the first one found
            sentence = self.assert_refuses_to_start(**options)
            self.assertIn("config.json", sentence)
            self.assertEqual(self.state(), before)
        return sentence

    def write(self, change):
        document = json.loads(json.dumps(self.good))
        change(document)
        self.config.write_text(json.dumps(document))

    def test_no_permission_to_read(self):
        self.config.chmod(0)
        self.assert_refused_and_untouched(**plain_user(self.folder))
        self.config.chmod(0o600)
        self.assertEqual(json.loads(self.config.read_text()), self.good)

    def test_link_that_leads_nowhere(self):
        self.config.unlink()
        self.config.symlink_to(self.folder / "disk that is not there" / "config.json")
        self.assert_refused_and_untouched()

    def test_folder_in_its_place(self):
        self.config.unlink()
        self.config.mkdir()
        self.assert_refused_and_untouched()

    def test_values_that_cannot_be(self):
        def out_of_range(document):
            document["Router"]["TunnelListenBase"] = 70000

        def wrong_type(document):
            document["Profiles"]["p"]["Suffixes"] = "all"

        def missing(document):
            del document["Tunnels"]["t"]["Target"]

        def newer(document):
            document["Version"] = 99
        for change in (out_of_range, wrong_type, missing, newer):
            with self.subTest(change.__name__):
                self.write(change)
                self.assert_refused_and_untouched()

    def test_values_that_would_be_refused_on_the_wire(self):
        def proxy_for_everyone(document):
            document["Router"]["HTTPProxy"] = "0.0.0.0:43128"

        def tunnel_for_everyone(document):
            document["Tunnels"]["t"]["Listen"] = "0.0.0.0:40123"

        def suffix_twice(document):
            document["Profiles"]["q"]["Suffixes"] = document["Profiles"]["p"]["Suffixes"]
        for change in (proxy_for_everyone, tunnel_for_everyone, suffix_twice):
            with self.subTest(change.__name__):
                self.write(change)
                self.assert_refused_and_untouched()

    def test_no_json_is_set_aside(self):
        for content in (b"", b"{", b"\x00" * 100, b'{"Version": 1,\n', b'\xff\xfe{"Version": 1}'):
            with self.subTest(content):
                shutil.rmtree(self.config.parent)
                self.config.parent.mkdir()
                self.config.write_bytes(content)
                self.assertIn("config.json.damaged-", self.assert_refuses_to_start())
                kept = list(self.config.parent.glob("*config.json*"))
                self.assertEqual([path.read_bytes() for path in kept], [content])
                self.assertTrue(kept[0].name.startswith("config.json.damaged-"), kept)


if __name__ == "__main__":
    unittest.main()
