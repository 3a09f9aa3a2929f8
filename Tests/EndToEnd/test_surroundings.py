"""Desktops that lack something, or get it later."""
import shutil
import signal
import unittest

from support.case import EndToEndTestCase
from support.paths import MENU
from support.polling import eventually, stays
from support.programs import STOP_BOUND


class NoTray(EndToEndTestCase):
    def setUp(self):
        super().setUp()
        self.service = self.start_service("settled")
        self.application = self.start_application()
        self.application.await_state("online")

    def tray_lines(self):
        return [line for line in self.application.output().splitlines() if "tray" in line.lower()]

    def test_the_application_runs_and_says_in_one_line_that_nothing_shows_its_icon(self):
        eventually(self.tray_lines, "a line on the missing tray")
        stays(lambda: len(self.tray_lines()) == 1, "one line", during=1)
        self.application.signal(signal.SIGTERM)
        self.assertEqual(self.application.wait(STOP_BOUND), 0)

    def test_a_panel_that_comes_later_gets_the_icon(self):
        panel = self.start_panel()
        panel.await_item()
        self.assertEqual(panel.tool_tip(), "Veranox — Online")

    def test_a_panel_without_host_shows_nothing_until_the_host_comes(self):
        panel = self.start_panel("--no-host")
        panel.await_item()  # which waits there for somebody who shows it
        tray = self.start_xembed_tray()
        tray.await_icon()
        stays(lambda: tray.icons("veranox-menu"), "the icon in the XEmbed tray", during=0.5)
        panel.set_host(True)
        eventually(lambda: not tray.icons("veranox-menu"), "the panel takes the icon over")
        self.assertEqual(panel.tool_tip(), "Veranox — Online")
        panel.set_host(False)
        tray.await_icon()

    def test_an_xembed_tray_that_comes_later_gets_the_icon(self):
        self.start_xembed_tray().await_icon()

    def test_a_panel_that_starts_again_gets_the_icon_again(self):
        first = self.start_panel()
        first.await_item()
        first.stop()
        again = self.start_panel()
        again.await_item()
        self.assertEqual(len(again.items()), 1)
        self.assertEqual(again.tool_tip(), "Veranox — Online")

    def test_an_xembed_tray_that_starts_again_gets_the_icon_again(self):
        first = self.start_xembed_tray()
        first.await_icon()
        first.stop()
        again = self.start_xembed_tray()
        again.await_icon()
        self.assertEqual(len(again.icons("veranox-menu")), 1)

    def test_a_panel_takes_the_icon_over_from_an_xembed_tray(self):
        tray = self.start_xembed_tray()
        tray.await_icon()
        panel = self.start_panel()
        panel.await_item()
        eventually(lambda: not tray.icons("veranox-menu"), "no second icon in the XEmbed tray")


class NoService(EndToEndTestCase):
    def test_the_icon_stands_and_tells_of_the_error(self):
        self.skip_where_a_service_is_installed()
        alone = self.folder / "bin" / MENU.name  # no service beside it
        alone.parent.mkdir()
        shutil.copy(MENU, alone)
        panel = self.start_panel()
        application = self.start_application(program=alone)
        panel.await_item()
        eventually(lambda: panel.tool_tip() == "Veranox — Error", "the tool tip tells of the error")
        self.assertIn("[GUI] start failed: Veranox's bundled service could not be found.", application.output())
        application.signal(signal.SIGTERM)
        self.assertEqual(application.wait(STOP_BOUND), 0)


class NoBus(EndToEndTestCase):
    desktop_options = ("--no-bus",)

    def test_the_application_stands_in_the_xembed_tray_and_quits(self):
        tray = self.start_xembed_tray()
        service = self.start_service("settled")
        application = self.start_application()
        icon = tray.await_icon()
        self.desktop.click(icon.centre, button=3)
        application.await_menu()
        self.desktop.press("Escape")
        application.signal(signal.SIGTERM)
        self.assertEqual(application.wait(STOP_BOUND), 0)
        self.assertEqual(service.wait(STOP_BOUND), 0)


class BareBus(EndToEndTestCase):
    desktop_options = ("--bare-bus",)

    def test_a_bus_that_starts_no_services_is_enough(self):
        panel = self.start_panel()
        self.start_service("settled")
        application = self.start_application()
        panel.await_item()
        application.await_state("online")


if __name__ == "__main__":
    unittest.main()
