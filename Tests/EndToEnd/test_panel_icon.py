"""The icon on a panel that speaks StatusNotifier. The service was started beforehand; the application attaches."""
import unittest

from support.case import EndToEndTestCase
from support.mark import GREEN, RED, shows
from support.polling import eventually

REFRESH = "GET /api/profiles"  # one of these in each


class PanelIcon(EndToEndTestCase):
    def setUp(self):
        super().setUp()
        self.panel = self.start_panel()

    def start_online(self, lab="settled"):
        service = self.start_service(lab)
        application = self.start_application()
        self.panel.await_item()
        application.await_state("online")
        return service, application

    def await_tool_tip(self, text, within=10.0):
        eventually(lambda: self.panel.tool_tip() == text, f"the tool tip {text!r}", within)

    def test_tool_tip_and_accessible_name_say_the_state(self):
        service, _ = self.start_online()
        self.await_tool_tip("Veranox — Online")
        self.assertEqual(self.panel.accessible_name(), "Veranox — Online")
        service.kill()
        self.panel.click()  # looks at once
        self.await_tool_tip("Veranox — Error")
        self.assertEqual(self.panel.accessible_name(), "Veranox — Error")

    def test_one_item_stands_on_the_panel(self):
        _, application = self.start_online()
        self.assertEqual(len(self.panel.items()), 1)
        application.kill()
        eventually(lambda: not self.panel.items(), "the item goes with the application")

    def test_green_node_when_all_is_well_and_red_badge_when_the_service_is_gone(self):
        service, _ = self.start_online()
        eventually(lambda: shows(self.icon_colours(), GREEN), "a green node in the icon")
        self.assertFalse(shows(self.icon_colours(), RED))
        well = self.panel.icon()
        service.kill()
        self.panel.click()
        eventually(lambda: shows(self.icon_colours(), RED), "red in the icon")
        self.assertFalse(shows(self.icon_colours(), GREEN))
        self.assertNotEqual(self.panel.icon(), well)

    def test_red_badge_when_a_profile_needs_a_person(self):
        self.start_online("demo")
        eventually(lambda: shows(self.icon_colours(), RED), "red in the icon", 30)
        self.await_tool_tip("Veranox — Online")

    def test_refreshes_that_bring_nothing_new_draw_nothing(self):
        _, front = self.start_service_behind_front("settled")
        application = self.start_application()
        self.panel.await_item()
        application.await_settled()
        front.await_quiet()
        before = self.panel.counts()
        for count in range(front.count(REFRESH) + 1, front.count(REFRESH) + 6):
            self.panel.click()
            eventually(lambda: front.count(REFRESH) >= count, "a refresh", within=3)
            front.await_quiet(0.2)
            application.close_popover()
        self.assertEqual(self.panel.counts(), before)

    def icon_colours(self):
        file = self.folder / "icon.png"
        self.panel.dump_icon(file)
        return self.desktop.file_colours(file)


class PanelClicks(EndToEndTestCase):
    def setUp(self):
        super().setUp()
        self.panel = self.start_panel()
        self.service, self.front = self.start_service_behind_front("settled")
        self.application = self.start_application()
        self.panel.await_item()
        self.application.await_state("online")
        self.front.await_quiet()

    def test_left_click_looks_at_once_and_opens_no_menu(self):
        before = self.front.count(REFRESH)
        self.panel.click()
        eventually(lambda: self.front.count(REFRESH) > before, "a refresh", within=3)
        self.application.await_popover()
        self.assertEqual(self.application.menus(), [])

    def test_right_click_opens_the_menu_and_does_not_look(self):
        before = self.front.count(REFRESH)
        self.panel.secondary_click()
        self.application.await_menu()
        self.assertEqual(self.front.count(REFRESH), before)

    def test_control_click_opens_the_menu_and_does_not_look(self):
        before = self.front.count(REFRESH)
        with self.desktop.held("ctrl"):
            self.panel.click()
            self.application.await_menu()
        self.assertEqual(self.front.count(REFRESH), before)

    def test_the_menu_that_the_panel_draws_quits(self):
        self.assertIn("Quit Veranox…", self.panel.menu())
        self.panel.choose("Quit Veranox…")
        self.application.confirm_quit()
        self.assertEqual(self.application.wait(within=5), 0)
        self.assertEqual(self.front.count("POST /api/shutdown"), 1)

    def test_a_panel_that_calls_in_haste_breaks_nothing(self):
        for _ in range(50):
            self.panel.click()
            self.panel.secondary_click((-5, 100000))
        self.application.await_state("online")
        self.assertEqual(len(self.panel.items()), 1)


if __name__ == "__main__":
    unittest.main()
