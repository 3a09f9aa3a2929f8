"""The popover on the screen: by mouse and by keyboard. The service was started beforehand."""
import dataclasses
import os
import pathlib
import socket
import tempfile
import unittest
import urllib.request

from support.case import EndToEndTestCase
from support.polling import eventually
from support.process import Process
from support.programs import POPOVER_WIDTH, status

MARGIN = 4  # between the popover and what it stands beside
ORDERS = ("127.0.0.1", 43391)  # where the tunnel "orders" of the lab "rows" listens


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


class BesideXEmbedTray(Popover):
    def put_up_panel(self):
        self.tray = self.start_xembed_tray()

    def await_icon(self):
        self.icon = self.tray.await_icon()


class InXEmbedTray(BesideXEmbedTray):
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


class UnderCompositingManager(BesideXEmbedTray):
    """The shadow is part of the window, and may lie off the screen."""

    SHADOW = 24
    lab = "demo"  # more than a screen holds

    def put_up_panel(self):
        manager = Process(["xcompmgr"], self.desktop.environment, self.folder / "xcompmgr.log")
        self.addCleanup(manager.kill)
        super().put_up_panel()

    def test_the_popover_proper_fits_on_the_screen(self):
        self.desktop.click(self.icon.centre)
        window = eventually(
            lambda: self.application.windows(POPOVER_WIDTH + 2 * self.SHADOW), "the popover with its shadow")[0]
        self.assert_on_screen(dataclasses.replace(
            window, x=window.x + self.SHADOW, y=window.y + self.SHADOW, width=window.width - 2 * self.SHADOW,
            height=window.height - 2 * self.SHADOW))


class ByKeyboard(BesideXEmbedTray):
    """Behind the icon no mouse is used. Tab comes to: refresh, then for each tunnel copy, retry if it failed, switch."""

    lab = "rows"

    def setUp(self):
        super().setUp()
        self.desktop.click(self.icon.centre)
        self.application.await_popover()

    def tab(self, times):
        for _ in range(times):
            self.desktop.press("Tab")

    def await_tunnel(self, state):
        """Until the application knows the tunnel's state, and so its row can be worked again."""
        eventually(lambda: ["tunnel", "orders", state] in [line.split()[:3] for line in status(self.desktop)],
                   f"tunnel orders {state}")


class RowsByKeyboard(ByKeyboard):
    def test_a_tunnel_is_switched_off_and_on(self):
        self.await_tunnel("listening")
        self.tab(3)
        self.desktop.press("space")
        self.await_tunnel("disabled")
        self.assertEqual(self.front.count("POST /api/tunnels/orders/stop"), 1)
        with self.assertRaises(ConnectionRefusedError):
            socket.create_connection(ORDERS, timeout=5)
        self.desktop.press("space")
        self.await_tunnel("listening")
        self.assertEqual(self.front.count("POST /api/tunnels/orders/start"), 1)
        socket.create_connection(ORDERS, timeout=5).close()

    def test_an_endpoint_is_copied(self):
        self.tab(2)
        self.desktop.press("Return")
        eventually(lambda: self.desktop.clipboard() == "127.0.0.1:43391", "the endpoint in the clipboard")

    def test_what_is_copied_stays_when_the_popover_is_closed(self):
        self.tab(2)
        self.desktop.press("space")
        self.desktop.press("Escape")
        self.application.await_no_popover()
        eventually(lambda: self.desktop.clipboard() == "127.0.0.1:43391", "the endpoint in the clipboard")


class FailedRowByKeyboard(ByKeyboard):
    def put_up_panel(self):
        self.obstacle = socket.create_server(ORDERS)
        self.addCleanup(self.obstacle.close)
        super().put_up_panel()

    def test_it_is_retried_and_the_keyboard_stays_in_its_row(self):
        self.await_tunnel("error")
        self.obstacle.close()
        self.tab(3)
        self.desktop.press("Return")
        self.await_tunnel("listening")
        self.assertEqual(self.front.count("POST /api/tunnels/orders/restart"), 1)
        self.tab(1)  # the button to retry has gone: what follows is the switch
        self.desktop.press("space")
        self.await_tunnel("disabled")


class WebPage(BesideXEmbedTray):
    """The desktop's opener is one that writes down what it is asked for."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.asked = pathlib.Path(folder.name) / "asked"
        opener = pathlib.Path(folder.name) / "xdg-open"
        opener.write_text(f'#!/bin/sh\necho "$@" >> {self.asked}\n')
        opener.chmod(0o755)
        self.environment = {"PATH": f"{folder.name}:{os.environ['PATH']}"}
        super().setUp()

    def test_it_is_opened_in_the_browser_and_is_there(self):
        self.desktop.click(self.icon.centre)
        self.application.await_popover()
        for _ in range(2):  # from the top backwards: quit, the page
            self.desktop.press("shift+Tab")
        self.desktop.press("Return")
        eventually(self.asked.exists, "the desktop asked to open a page")
        address = self.asked.read_text().strip()
        self.assertEqual(address, "http://127.0.0.1:43200")
        with urllib.request.urlopen(address, timeout=5) as page:
            self.assertIn("<h1>Veranox</h1>", page.read().decode())


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
