"""The popover on the screen: by mouse and by keyboard. The service was started beforehand."""
import dataclasses
import unittest

from support.case import EndToEndTestCase
from support.polling import eventually
from support.process import Process
from support.programs import POPOVER_WIDTH

MARGIN = 4  # between the popover and what it stands beside


class Popover(EndToEndTestCase):
    environment = {}
    lab = "settled"

    def setUp(self):
        super().setUp()
        self.put_up_panel()
        self.service, self.front = self.start_service_behind_front(self.lab)
        self.application = self.start_application(**self.environment)
        self.await_icon()
        self.application.await_settled()

    def assert_on_screen(self, popover):
        self.assertGreaterEqual(popover.x, 0)
        self.assertLessEqual(popover.x + popover.width, 1280)
        self.assertGreaterEqual(popover.y, 0)
        self.assertLessEqual(popover.y + popover.height, 800)


class InXEmbedTray(Popover):
    def put_up_panel(self):
        self.tray = self.start_xembed_tray()

    def await_icon(self):
        self.icon = self.tray.await_icon()

    def test_a_click_opens_it_below_the_icon_and_a_second_closes_it(self):
        self.assertEqual(self.application.popovers(), [])
        self.desktop.click(self.icon.centre)
        popover = self.application.await_popover()
        self.assert_on_screen(popover)
        self.assertGreaterEqual(popover.y, self.icon.y + self.icon.height)
        self.assertEqual(popover.x + popover.width, 1280 - MARGIN)
        self.desktop.click(self.icon.centre)
        self.application.await_no_popover()

    def test_escape_closes_it_and_it_opens_again(self):
        for _ in range(3):
            self.desktop.click(self.icon.centre)
            self.application.await_popover()
            self.desktop.press("Escape")
            self.application.await_no_popover()

    def test_a_click_elsewhere_closes_it(self):
        other = self.start_other_window()
        self.desktop.click(self.icon.centre)
        self.application.await_popover()
        self.desktop.click(other.centre)
        self.application.await_no_popover()

    def start_other_window(self):
        window = Process(["xmessage", "-geometry", "200x100+40+600", "other"], self.desktop.environment,
                         self.folder / "xmessage.log")
        self.addCleanup(window.kill)
        return eventually(lambda: self.desktop.windows("Xmessage"), "another window")[0]

    def test_by_keyboard_only_to_the_end(self):
        self.desktop.click(self.icon.centre)
        self.application.await_popover()
        self.desktop.press("shift+Tab")  # the last of all: quit
        self.desktop.press("Return")
        self.application.await_no_popover()
        self.application.confirm_quit()
        self.assertEqual(self.application.wait(within=5), 0)
        self.assertEqual(self.front.count("POST /api/shutdown"), 1)


class UnderCompositingManager(Popover):
    """The shadow is part of the window, and may lie off the screen."""

    SHADOW = 24
    lab = "demo"  # more than a screen holds

    def put_up_panel(self):
        manager = Process(["xcompmgr"], self.desktop.environment, self.folder / "xcompmgr.log")
        self.addCleanup(manager.kill)
        self.tray = self.start_xembed_tray()

    def await_icon(self):
        self.icon = self.tray.await_icon()

    def test_the_popover_proper_fits_on_the_screen(self):
        self.desktop.click(self.icon.centre)
        window = eventually(
            lambda: self.application.windows(POPOVER_WIDTH + 2 * self.SHADOW), "the popover with its shadow")[0]
        self.assert_on_screen(dataclasses.replace(
            window, x=window.x + self.SHADOW, y=window.y + self.SHADOW, width=window.width - 2 * self.SHADOW,
            height=window.height - 2 * self.SHADOW))


class OnPanel(Popover):
    def put_up_panel(self):
        self.panel = self.start_panel()

    def await_icon(self):
        self.panel.await_item()

    def test_a_click_opens_it_at_the_point_and_a_second_closes_it(self):
        self.panel.click((640, 10))
        popover = self.application.await_popover()
        self.assert_on_screen(popover)
        self.assertAlmostEqual(popover.x + popover.width / 2, 640, delta=2)
        self.panel.click((640, 10))
        self.application.await_no_popover()

    def test_a_panel_that_draws_menus_has_no_line_for_it(self):
        self.assertEqual(list(self.panel.menu()), ["Quit Veranox…"])


class OnPanelThatShowsOnlyTheMenu(OnPanel):
    environment = {"XDG_CURRENT_DESKTOP": "ubuntu:GNOME"}

    def test_a_panel_that_draws_menus_has_no_line_for_it(self):
        self.assertEqual(next(iter(self.panel.menu())), "Show Veranox")
        self.panel.choose("Show Veranox")
        self.assert_on_screen(self.application.await_popover())


class WithoutTray(Popover):
    def put_up_panel(self):
        pass

    def await_icon(self):
        self.application.await_state("online")

    def test_launching_the_program_again_opens_it(self):
        self.assertEqual(self.start_application().wait(within=5), 0)
        self.assert_on_screen(self.application.await_popover())


if __name__ == "__main__":
    unittest.main()
