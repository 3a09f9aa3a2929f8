"""No service runs: the application starts its own, keeps it alive and stops it."""
import os
import pathlib
import signal
import socket
import unittest

from support.case import EndToEndTestCase
from support.polling import eventually, stays
from support.programs import HANGING_STOP_BOUND, PORT, STOP_BOUND, service_state


def port_is_open():
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", PORT)) == 0


def exists(pid):
    return os.path.exists(f"/proc/{pid}")


class OwnService(EndToEndTestCase):
    def setUp(self):
        super().setUp()
        self.panel = self.start_panel()
        self.application = self.start_application()
        self.panel.await_item()
        self.application.await_state("online", 15)
        (self.pid,) = self.application.own_services()

    def await_end_of_all(self, bound=STOP_BOUND):
        self.assertEqual(self.application.wait(bound), 0)
        eventually(lambda: not exists(self.pid), "the service ends with the application")
        self.assertFalse(port_is_open())

    def test_it_says_so_and_quits_with_it(self):
        self.assertIn("[GUI] service ready on 127.0.0.1:43200", self.application.output())
        self.application.signal(signal.SIGTERM)
        self.await_end_of_all()
        self.assertEqual(self.application.output().count("[GUI] shutdown requested"), 1)

    def test_quit_from_the_menu_stops_it(self):
        self.panel.choose("Quit Veranox…")
        self.application.confirm_quit()
        self.await_end_of_all()

    def test_a_killed_one_is_back_within_seconds(self):
        os.kill(self.pid, signal.SIGKILL)
        self.application.await_output("[GUI] service exited unexpectedly", within=3)
        self.application.await_state("online", 10)
        (again,) = self.application.own_services()
        self.assertNotEqual(again, self.pid)
        self.pid = again
        self.application.signal(signal.SIGTERM)
        self.await_end_of_all()

    def test_a_hanging_one_does_not_hold_up_the_quit_for_good(self):
        os.kill(self.pid, signal.SIGSTOP)
        self.application.signal(signal.SIGTERM)
        self.await_end_of_all(HANGING_STOP_BOUND)

    def test_the_next_application_takes_over_what_a_killed_one_left(self):
        self.application.signal(signal.SIGKILL)
        self.application.wait(within=5)
        self.application = self.start_application()
        self.panel.await_item()
        self.application.await_state("online")
        self.assertEqual(self.application.own_services(), [], "attached, none started")
        self.application.signal(signal.SIGTERM)
        self.await_end_of_all()


class UnwantedService(EndToEndTestCase):
    """A service answers where the application would look for one, and it must not look."""

    def setUp(self):
        super().setUp()
        self.panel = self.start_panel()
        self.service, self.front = self.start_service_behind_front("settled")

    def assert_nothing_is_touched(self, application):
        self.assertEqual(self.front.heard(), [])
        self.assertEqual(application.own_services(), [])

    def quit(self, application):
        application.signal(signal.SIGTERM)
        self.assertEqual(application.wait(STOP_BOUND), 0)
        self.assertEqual(self.front.heard(), [])
        self.assertTrue(self.service.running)

    def test_the_preferences_may_say_that_a_launch_starts_none(self):
        preferences = pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"]) / "veranox" / "defaults.json"
        preferences.parent.mkdir(parents=True, exist_ok=True)
        preferences.write_text('{"veranox.startServiceOnLaunch": false}')
        application = self.start_application()
        self.panel.await_item()
        application.await_output("[APP] automatic local service startup is disabled in Settings")
        stays(lambda: service_state(self.desktop) == "offline", "offline", during=1.5)
        self.assertEqual(self.panel.tool_tip(), "Veranox — Offline")
        self.assert_nothing_is_touched(application)
        self.assertNotIn("startup requested", application.output())
        self.quit(application)

    def test_within_a_test_bundle_there_is_neither_icon_nor_start(self):
        application = self.start_application(XCTestConfigurationFilePath="/tmp/bundle")
        application.await_state("offline")  # it runs
        stays(lambda: not self.panel.items(), "no icon", during=1)
        self.assert_nothing_is_touched(application)
        self.assertNotIn("[APP]", application.output())
        self.quit(application)


class TakenPort(EndToEndTestCase):
    def test_a_stranger_on_the_port_is_an_error_and_no_obstacle_to_a_quit(self):
        stranger = socket.create_server(("127.0.0.1", PORT))  # takes connections, answers nothing
        self.addCleanup(stranger.close)
        application = self.start_application()
        application.await_state("error", 15)
        application.signal(signal.SIGTERM)
        self.assertEqual(application.wait(HANGING_STOP_BOUND), 0)

    def test_the_application_recovers_when_the_stranger_goes_in_time(self):
        stranger = socket.create_server(("127.0.0.1", PORT))
        self.addCleanup(stranger.close)
        application = self.start_application()
        application.await_output("[GUI] service exited unexpectedly", within=15)
        stranger.close()
        eventually(lambda: service_state(self.desktop) == "online", "online", 20)


if __name__ == "__main__":
    unittest.main()
