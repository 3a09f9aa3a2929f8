"""A disk that fails at any step of a write: the answer says what is so, nothing is torn, and the next write works."""

import errno
import json
import unittest

from attack import SUPPORT_FOLDER
from disk import FAILURES, STEPS, DiskTest

FEEDBACK = {"message": "m", "kind": "", "contact": "", "appVersion": "", "os": ""}


class FailingDisk(DiskTest):
    def assert_answer_tells_what_is_so(self, base, before):
        """Memory and file agree, and with the answer too."""
        status, answer = self.save(base)
        now = self.base_on_disk()
        self.assertEqual(self.hostname_base(), now, "what is given out is what is on the disk")
        self.assertEqual(now, base if status == 200 else before)
        if status != 200:
            self.assertEqual(status, 500)
            self.assertTrue(answer["error"].endswith("."), answer)
            self.assertIn("config.json", answer["error"])
        return status

    def test_a_save_that_fails(self):
        for number, step in enumerate(STEPS):
            for name, way in FAILURES.items():
                with self.subTest(step, failure=name):
                    before = self.base_on_disk()
                    met = self.let(step, way)
                    self.assert_answer_tells_what_is_so(f"{name.lower()}-{number}", before)
                    self.assertTrue(met.exists(), "the step was met")
                    self.mend()
                    self.assertEqual(self.save(f"after-{name.lower()}-{number}")[0], 200)
                    self.assertEqual(self.base_on_disk(), f"after-{name.lower()}-{number}")
                    self.assert_carries(self.port)
        left_over = [path.name for path in (self.service.home / ".config/veranox").iterdir() if ".new" in path.name]
        self.assertEqual(left_over, [])

    def test_before_the_rename_the_document_is_the_old_one(self):
        for step in STEPS[:-1]:
            with self.subTest(step):
                before = self.base_on_disk()
                self.let(step, errno.EIO)
                self.assertEqual(self.save("refused")[0], 500)
                self.assertEqual(self.base_on_disk(), before)

    def test_tunnels_can_be_saved_after_a_folder_that_failed(self):
        tunnel = {"DisplayName": "", "Profile": "p", "Mode": "native", "Listen": f"127.0.0.1:{self.port}",
                  "Target": "inner.tail1.ts.net:81", "Disabled": False}
        for step in ("sync-folder", "sync-file"):
            with self.subTest(step):
                self.let(step, errno.EIO)
                self.write("/api/tunnels", {"Name": "t", "OriginalName": "t", "Tunnel": tunnel})
                self.mend()
                status, answer = self.write("/api/tunnels", {"Name": "t", "OriginalName": "t", "Tunnel": tunnel})
                self.assertEqual(status, 200, answer)

    def test_writes_that_come_up_short_are_finished(self):
        met = self.let("write", "short")
        self.assertEqual(self.save("shortly")[0], 200)
        self.assertTrue(met.exists())
        self.assertEqual(self.base_on_disk(), "shortly")

    def test_feedback_that_fails(self):
        box = self.service.home / SUPPORT_FOLDER / "feedback.jsonl"
        self.assertEqual(self.write("/api/feedback", FEEDBACK)[0], 200)
        for step in ("open", "write", "sync-file"):
            for name, way in FAILURES.items():
                with self.subTest(step, failure=name):
                    before = box.read_bytes()
                    met = self.let(step, way, "feedback.jsonl")
                    status, answer = self.write("/api/feedback", FEEDBACK)
                    self.assertEqual(status, 503)
                    self.assertTrue(answer["error"].endswith("."), answer)
                    self.assertTrue(met.exists())
                    self.assertEqual(box.read_bytes(), before)
                    self.mend()
                    self.assertEqual(self.write("/api/feedback", FEEDBACK)[0], 200)
                    for line in box.read_text().splitlines():
                        self.assertEqual(json.loads(line)["message"], "m")

    def test_a_start_on_a_failing_disk_is_refused_in_a_sentence(self):
        self.assertEqual(self.service.end(), 0)
        variables = {"HOME": str(self.service.home), "LD_PRELOAD": self.preload, "VERANOX_DISK_STEP": str(self.step)}
        before = (self.service.home / ".config/veranox/config.json").read_bytes()
        for step in ("open", "write", "sync-file", "rename"):
            with self.subTest(step):
                met = self.let(step, errno.EIO, "control.token")
                self.assertIn("control.token", self.assert_refuses_to_start(env=variables))
                self.assertTrue(met.exists())
        self.assertEqual((self.service.home / ".config/veranox/config.json").read_bytes(), before)


if __name__ == "__main__":
    unittest.main()
