"""A disk that hangs at any step of a write: traffic and reads go on meanwhile."""

import json
import unittest

from attack import SUPPORT_FOLDER, Seconds, eventually
from disk import STEPS, DiskTest, Echoes

HANG = 1.0
LONGEST_DELAY = 0.2
FEEDBACK = {"message": "m", "kind": "", "contact": "", "appVersion": "", "os": ""}


class HangingDisk(DiskTest):
    def assert_others_go_on(self, write, met):
        """While the write hangs. Gives back its answer."""
        answers = []
        with Echoes(self.port) as echoes:
            writer = self.in_background(lambda: answers.append(write()))
            self.assertTrue(eventually(met.exists), "the step is met")
            with Seconds() as reads:
                self.assert_answers(self.service)
                self.service.ask("GET", "/api/tunnels")
                self.hostname_base()
            self.assert_carries(self.port)
            writer.join(HANG)
            self.assertTrue(writer.is_alive(), "the write does not wait for its disk")
            self.mend()
            writer.join(10)
        self.assertLess(reads.taken, 3 * LONGEST_DELAY, "reads wait")
        self.assertLess(echoes.longest, LONGEST_DELAY, "traffic waits")
        self.assertGreater(echoes.count, 10)
        return answers[0]

    def test_a_save_that_hangs(self):
        for number, step in enumerate(STEPS):
            with self.subTest(step):
                met = self.let(step, "hang")
                status, answer = self.assert_others_go_on(lambda: self.save(f"hung-{number}"), met)
                self.assertEqual(status, 200, answer)
                self.assertEqual(self.base_on_disk(), f"hung-{number}")
                self.assertEqual(self.hostname_base(), f"hung-{number}")

    def test_feedback_that_hangs(self):
        for step in ("open", "write", "sync-file"):
            with self.subTest(step):
                met = self.let(step, "hang", "feedback.jsonl")
                status, answer = self.assert_others_go_on(lambda: self.write("/api/feedback", FEEDBACK), met)
                self.assertEqual(status, 200, answer)
        box = self.service.home / SUPPORT_FOLDER / "feedback.jsonl"
        self.assertEqual([json.loads(line)["message"] for line in box.read_text().splitlines()], ["m"] * 3)


if __name__ == "__main__":
    unittest.main()
