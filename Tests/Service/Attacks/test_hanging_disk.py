"""A disk that hangs at any step of a write: traffic and reads go on, and the service still ends in time."""

import json
import signal
import unittest

from attack import CONFIG, SUPPORT_FOLDER, Seconds, eventually
from disk import STEPS, DiskTest, Echoes

HANG = 1.0
LONGEST_DELAY = 0.2
END_SECONDS = 1.0
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

    def test_writes_behind_one_that_hangs_come_in_their_order(self):
        met = self.let("sync-file", "hang")
        answers = []
        first = self.in_background(lambda: answers.append(self.save("first")))
        self.assertTrue(eventually(met.exists))
        second = self.in_background(lambda: answers.append(self.save("second")))
        second.join(HANG / 2)
        self.mend()
        for writer in (first, second):
            writer.join(10)
        self.assertEqual([status for status, _ in answers], [200, 200], answers)
        self.assertEqual(self.base_on_disk(), "second")
        self.assertEqual(self.hostname_base(), "second")

    def test_it_ends_while_a_write_hangs_for_ever(self):
        for number, step in enumerate(STEPS):
            with self.subTest(step):
                before = self.base_on_disk()
                met = self.let(step, "hang")

                def write(number=number):
                    try:
                        self.save(f"never-{number}")
                    except (OSError, EOFError):
                        pass
                self.in_background(write)
                self.assertTrue(eventually(met.exists))
                with Seconds() as end:
                    self.service.process.send_signal(signal.SIGTERM)
                    self.service.process.wait(10)
                self.assertLess(end.taken, END_SECONDS)
                document = json.loads((self.service.home / CONFIG).read_text())
                self.assertIn(document["Router"]["ProfileHostnameBase"], (before, f"never-{number}"))
                self.mend()
                self.service = self.start_on_that_disk()
                self.assert_carries(self.port)


if __name__ == "__main__":
    unittest.main()
