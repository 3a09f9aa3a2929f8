"""A second start hands over to the first."""
import signal
import unittest

from support.case import EndToEndTestCase
from support.polling import stays


class SecondLaunch(EndToEndTestCase):
    def setUp(self):
        super().setUp()
        self.panel = self.start_panel()
        self.start_service("settled")
        self.first = self.start_application()
        self.panel.await_item()
        self.first.await_state("online")

    def test_it_ends_with_0_and_the_first_comes_forward(self):
        second = self.start_application()
        self.assertEqual(second.wait(within=5), 0)
        self.first.await_popover()
        self.assertTrue(self.first.running)
        stays(lambda: len(self.panel.items()) == 1, "one icon", during=0.5)

    def test_it_says_so_when_the_first_does_not_answer(self):
        self.first.signal(signal.SIGSTOP)
        self.resume_at_end(self.first)
        second = self.start_application()
        self.assertEqual(second.wait(within=20), 1)
        self.assertIn("does not answer", second.output())

    def test_it_starts_in_full_after_the_first_was_killed(self):
        self.first.kill()
        second = self.start_application()
        self.panel.await_item()
        second.await_state("online")


if __name__ == "__main__":
    unittest.main()
