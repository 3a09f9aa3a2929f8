"""The icon in an XEmbed tray, used with the mouse and the keyboard. The service was started beforehand."""
import unittest

from support.case import EndToEndTestCase
from support.mark import GREEN, RED, shows
from support.polling import eventually


class TrayIcon(EndToEndTestCase):
    def setUp(self):
        super().setUp()
        self.tray = self.start_xembed_tray()
        self.service, self.front = self.start_service_behind_front("settled")
        self.application = self.start_application()
        self.icon = self.tray.await_icon()
        self.application.await_state("online")
        self.front.await_quiet()

    def assert_quits_with_one_request(self):
        self.assertEqual(self.application.wait(within=5), 0)
        self.assertEqual(self.front.count("POST /api/shutdown"), 1)

    def test_green_node_when_all_is_well_and_red_badge_when_the_service_is_gone(self):
        eventually(lambda: shows(self.desktop.colours(self.icon), GREEN), "a green node on the screen")
        self.assertFalse(shows(self.desktop.colours(self.icon), RED))
        self.service.kill()
        self.desktop.click(self.icon.centre)
        eventually(lambda: shows(self.desktop.colours(self.icon), RED), "red on the screen")
        self.assertFalse(shows(self.desktop.colours(self.icon), GREEN))

    def test_left_click_looks_at_once_and_opens_no_menu(self):
        before = self.front.count("GET /api/profiles")
        self.desktop.click(self.icon.centre)
        eventually(lambda: self.front.count("GET /api/profiles") > before, "a refresh", within=3)
        self.application.await_popover()
        self.assertEqual(self.application.menus(), [])

    def test_right_click_opens_the_menu_and_does_not_look(self):
        before = self.front.count("GET /api/profiles")
        self.desktop.click(self.icon.centre, button=3)
        self.application.await_menu()
        self.assertEqual(self.front.count("GET /api/profiles"), before)

    def test_control_click_opens_the_menu_and_does_not_look(self):
        before = self.front.count("GET /api/profiles")
        with self.desktop.held("ctrl"):
            self.desktop.click(self.icon.centre)
            self.application.await_menu()
        self.assertEqual(self.front.count("GET /api/profiles"), before)

    def test_escape_closes_the_menu_and_nothing_else(self):
        self.desktop.click(self.icon.centre, button=3)
        self.application.await_menu()
        self.desktop.press("Escape")
        eventually(lambda: not self.application.menus(), "the menu closes")
        self.application.await_state("online")

    def test_quit_by_mouse(self):
        self.desktop.click(self.icon.centre, button=3)
        menu = self.application.await_menu()
        self.desktop.click((menu.x + menu.width // 2, menu.y + menu.height - 10))  # the last line
        panel = self.application.await_quit_panel()
        self.desktop.click((panel.x + panel.width - 60, panel.y + panel.height - 36))  # its last button
        self.assert_quits_with_one_request()

    def test_quit_by_keyboard(self):
        self.desktop.click(self.icon.centre, button=3)
        self.application.await_menu()
        self.desktop.press("Up")  # the last line
        self.desktop.press("Return")
        self.application.confirm_quit()
        self.assert_quits_with_one_request()


if __name__ == "__main__":
    unittest.main()
