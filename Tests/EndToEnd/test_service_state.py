"""The service goes and comes back under a running application that was attached to it."""
import signal
import unittest

from support.case import EndToEndTestCase
from support.polling import eventually
from support.programs import service_state, status

REFRESH = "GET /api/profiles"  # one of these in each
SCHEDULE = 17.0  # seconds: a refresh every 15, and its answer


class AttachedService(EndToEndTestCase):
    def setUp(self):
        super().setUp()
        self.panel = self.start_panel()
        self.service = self.start_service("settled")
        self.application = self.start_application()
        self.panel.await_item()
        self.application.await_settled()

    def test_a_killed_service_is_noticed_on_schedule_and_so_is_its_return(self):
        self.service.kill()
        self.application.await_state("error", SCHEDULE)
        self.start_service("settled")
        self.application.await_state("online", SCHEDULE)

    def test_a_click_notices_at_once(self):
        self.service.kill()
        self.panel.click()
        self.application.await_state("error", within=3)
        self.application.close_popover()
        self.start_service("settled")
        self.panel.click()
        self.application.await_state("online", within=3)

    def test_a_lasting_failure_is_logged_once(self):
        self.service.kill()
        for _ in range(5):
            self.panel.click()
            self.application.await_state("error", within=3)
            self.application.close_popover()
        self.assertEqual(self.application.output().count("status refresh failed"), 1)


class HangingService(EndToEndTestCase):
    def test_the_application_stays_responsive_and_carries_on(self):
        panel = self.start_panel()
        service, front = self.start_service_behind_front("settled")
        application = self.start_application()
        panel.await_item()
        application.await_settled()
        front.await_quiet()
        before = front.count(REFRESH)
        service.signal(signal.SIGSTOP)
        self.resume_at_end(service)
        panel.click()
        eventually(lambda: front.count(REFRESH) == before + 1, "a refresh that gets no answer", within=3)
        for _ in range(3):
            panel.secondary_click()
            application.await_menu(within=1)
            self.desktop.press("Escape")
            eventually(lambda: not application.menus(), "the menu closes", within=1)
            self.assertTrue(status(self.desktop), "the status is told while a refresh hangs")
        self.assertEqual(front.count(REFRESH), before + 1, "one refresh at a time")
        service.signal(signal.SIGCONT)
        front.await_quiet()
        panel.click()
        eventually(lambda: front.count(REFRESH) == before + 2, "the next refresh", within=3)
        self.assertEqual(service_state(self.desktop), "online")


class Lab(EndToEndTestCase):
    def test_status_tells_of_everything_that_the_service_has(self):
        self.start_panel()
        service = self.start_service("demo")
        application = self.start_application()
        application.await_state("online")
        wanted = {(kind, record["name"] if "name" in record else record["Name"])
                  for kind, path in (("profile", "profiles"), ("tunnel", "tunnels"), ("publication", "publications"))
                  for record in service.get(f"/api/{path}")}
        self.assertGreater(len(wanted), 10)
        told = {tuple(line.split()[:2]) for line in status(self.desktop)[1:]}
        self.assertEqual(told, wanted)


if __name__ == "__main__":
    unittest.main()
