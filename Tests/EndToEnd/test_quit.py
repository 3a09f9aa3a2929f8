"""Every way to end the application stops the service in order, and asks it once."""
import pathlib
import signal
import unittest

from support.case import EndToEndTestCase
from support.paths import HANGING_LOG
from support.polling import eventually
from support.programs import HANGING_STOP_BOUND, STOP_BOUND

SHUTDOWN = "POST /api/shutdown"


class Quit(EndToEndTestCase):
    def setUp(self):
        super().setUp()
        self.panel = self.start_panel()
        self.service, self.front = self.start_service_behind_front("settled")
        self.application = self.start_application()
        self.panel.await_item()
        self.application.await_state("online")

    def assert_orderly_end(self):
        self.assertEqual(self.application.wait(STOP_BOUND), 0)
        self.assertEqual(self.front.count(SHUTDOWN), 1)
        self.assertEqual(self.service.wait(STOP_BOUND), 0)
        eventually(lambda: not self.panel.items(), "the item goes")

    def test_from_the_menu(self):
        self.panel.choose("Quit Veranox…")
        self.application.confirm_quit()
        self.assert_orderly_end()

    def test_by_sigterm(self):
        self.application.signal(signal.SIGTERM)
        self.assert_orderly_end()

    def test_by_sigint(self):
        self.application.signal(signal.SIGINT)
        self.assert_orderly_end()

    def test_by_two_sigterms_in_a_row(self):
        self.application.signal(signal.SIGTERM)
        self.application.signal(signal.SIGTERM)
        self.assert_orderly_end()

    def test_by_a_second_sigterm_while_the_first_is_obeyed(self):
        self.application.signal(signal.SIGTERM)
        eventually(lambda: self.front.count(SHUTDOWN), "the request to the service")
        self.application.signal(signal.SIGTERM)
        self.assert_orderly_end()

    def test_by_signals_while_the_menu_quits(self):
        self.panel.choose("Quit Veranox…")
        self.application.confirm_quit()
        self.application.signal(signal.SIGTERM)
        self.application.signal(signal.SIGINT)
        self.assert_orderly_end()

    def test_while_a_refresh_hangs(self):
        self.service.signal(signal.SIGSTOP)
        self.resume_at_end(self.service)
        self.panel.click()
        self.application.signal(signal.SIGTERM)
        self.service.signal(signal.SIGCONT)
        self.assert_orderly_end()

    def test_while_the_service_hangs(self):
        self.service.signal(signal.SIGSTOP)
        self.resume_at_end(self.service)
        self.application.signal(signal.SIGTERM)
        self.assertEqual(self.application.wait(HANGING_STOP_BOUND), 0)
        self.assertEqual(self.front.count(SHUTDOWN), 1)

    def test_after_the_service_has_gone(self):
        self.service.kill()
        self.panel.click()
        self.application.await_state("error")
        self.application.signal(signal.SIGTERM)
        self.assertEqual(self.application.wait(STOP_BOUND), 0)
        self.assertEqual(self.front.count(SHUTDOWN), 0)


class QuitWithoutADisk(EndToEndTestCase):
    def test_while_a_write_of_the_log_never_returns(self):
        panel = self.start_panel()
        service, front = self.start_service_behind_front("settled")
        application = self.start_application(LD_PRELOAD=str(HANGING_LOG))
        panel.await_item()
        application.await_state("online")
        log = pathlib.Path(self.desktop.environment["XDG_DATA_HOME"]) / "Veranox" / "logs" / "activity.jsonl"
        eventually(log.exists, "the file of the log")
        self.assertIn("session started", application.output())
        application.signal(signal.SIGTERM)
        self.assertEqual(application.wait(STOP_BOUND), 0)
        self.assertEqual(front.count(SHUTDOWN), 1)
        self.assertEqual(service.wait(STOP_BOUND), 0)
        self.assertEqual(log.read_bytes(), b"")  # or nothing has hung


class EndOfSession(EndToEndTestCase):
    def test_the_end_of_the_session_is_a_quit(self):
        panel = self.start_panel()
        service, front = self.start_service_behind_front("settled")
        session = self.start_session()
        application = self.start_application(SESSION_MANAGER=session.address)
        panel.await_item()
        application.await_state("online")
        session.await_member()
        self.assertEqual(front.count(SHUTDOWN), 0)
        session.end()
        self.assertEqual(application.wait(STOP_BOUND), 0)
        self.assertEqual(front.count(SHUTDOWN), 1)
        self.assertEqual(service.wait(STOP_BOUND), 0)


if __name__ == "__main__":
    unittest.main()
