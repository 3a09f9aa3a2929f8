"""A disk that hangs for ever at any step of a write: what comes behind waits its turn, and the service ends in time."""

import json
import signal
import unittest

from attack import CONFIG, Seconds, eventually
from disk import STEPS, DiskTest

PAUSE = 0.5
END_SECONDS = 1.0


class BehindAHangingDisk(DiskTest):
    def test_writes_behind_one_that_hangs_come_in_their_order(self):
        met = self.let("sync-file", "hang")
        answers = []
        first = self.in_background(lambda: answers.append(self.save("first")))
        self.assertTrue(eventually(met.exists))
        second = self.in_background(lambda: answers.append(self.save("second")))
        second.join(PAUSE)
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
