"""The popover by the accessibility bus alone, as a screen reader reads and works it."""
import socket
import unittest

from support.case import EndToEndTestCase
from support.polling import eventually
from support.programs import STOP_BOUND

COPY_ENDPOINT = "Copy the local endpoint for your client"
COPY_ADDRESS = "Copy the address"
RETRY_TUNNEL = "Retry — restart this tunnel"
ORDERS_PORT = 43391
CHANGEABLE = {"push button", "check box", "scroll bar"}  # the roles of what a person can work
READABLE = {"frame", "panel", "dialog", "label", "list", "list item", "image", "alert"}
TAB = 0xFF09  # X keysyms
RETURN = 0xFF0D


class Popover(EndToEndTestCase):
    """The popover is open, beside a desktop without a tray: the second launch opens it."""

    lab = "rows"
    reader_is_first = False

    def setUp(self):
        super().setUp()
        self.prepare()
        if self.reader_is_first:
            self.reader = self.start_screen_reader()
            self.reader.application()
        self.service, self.front = self.start_service_behind_front(self.lab)
        self.application = self.start_application()
        self.application.await_settled()
        if not self.reader_is_first:
            self.reader = self.start_screen_reader()
        self.assertEqual(self.start_application().wait(within=5), 0)
        self.reader.await_window("Veranox")

    def prepare(self):
        """What has to be there before the service starts."""

    def names(self, role, of):
        """The names of those with the role in the list `of`."""
        rows = self.reader.application().find("list", of)
        return [node.name for node in rows.showing() if node.role == role]

    def tunnel(self, name):
        return next(tunnel for tunnel in self.service.get("/api/tunnels") if tunnel["Name"] == name)


class Rows(Popover):
    def test_it_reads_every_row_with_its_state_in_words(self):
        self.assertEqual(self.names("list item", "Profiles"), [
            "Work, .tail7c41e.ts.net, tsnet, veranox-work, OK",
            "Home, .tailb20d9.ts.net, tsnet, veranox-home, Issue"])
        self.reader.await_node("check box", "Orders database", where=lambda node: node.is_checked)
        self.assertEqual(self.names("list item", "Tunnels"), [
            "Orders database, Listening, postgres.tail7c41e.ts.net:5432, native, 127.0.0.1:43391",
            "Session cache, Stopped, redis.tail7c41e.ts.net:6379, native, 127.0.0.1:43392"])
        self.assertEqual(self.names("list item", "Publications"), [
            "Handbook preview, Listening, 127.0.0.1:8080, veranox-work.tail7c41e.ts.net:8080",
            "Media library, Stopped, 127.0.0.1:8096"])

    def test_each_row_holds_its_state_and_its_controls(self):
        row = self.reader.application().find("list", "Tunnels").children[0]
        self.assertEqual([(node.role, node.name, node.description) for node in row.showing()[1:]], [
            ("image", "Listening", ""),
            ("push button", COPY_ENDPOINT, "Orders database"),
            ("check box", "Orders database", "Stop this tunnel")])

    def test_switches_say_whether_they_are_on(self):
        on = {node.name: node.is_checked for node in self.reader.application().showing() if node.role == "check box"}
        self.assertEqual(on, {"Orders database": True, "Session cache": False,
                              "Handbook preview": True, "Media library": False})

    def test_it_reads_the_header_and_the_footer(self):
        popover = self.reader.await_window("Veranox")
        self.assertIsNotNone(popover.find("panel", "Veranox"))
        self.assertIsNotNone(popover.find("label", "Online"))
        for button in ("Refresh Veranox status", "Copy PAC", "Web GUI", "Quit"):
            found = popover.find("push button", button)
            self.assertIsNotNone(found, button)
            self.assertTrue(found.is_enabled, button)


class Work(Popover):
    def switch(self, to):
        self.reader.act("Toggle", "check box", "Orders database")
        self.reader.await_node("check box", "Orders database", where=lambda node: node.is_checked == to)

    def test_a_tunnel_is_switched_off_and_on(self):
        self.switch(False)
        self.assertEqual(self.front.count("POST /api/tunnels/orders/stop"), 1)
        self.assertTrue(self.tunnel("orders")["Disabled"])
        eventually(lambda: "Orders database, Stopped" in self.names("list item", "Tunnels")[0], "the row says so")
        self.switch(True)
        self.assertEqual(self.front.count("POST /api/tunnels/orders/start"), 1)
        self.assertFalse(self.tunnel("orders")["Disabled"])
        eventually(lambda: "Orders database, Listening" in self.names("list item", "Tunnels")[0], "the row says so")

    def test_a_publication_is_switched_off(self):
        self.reader.act("Toggle", "check box", "Handbook preview")
        self.reader.await_node("check box", "Handbook preview", where=lambda node: not node.is_checked)
        self.assertEqual(self.front.count("POST /api/publications/docs/stop"), 1)

    def test_an_endpoint_is_copied_and_said_to_be(self):
        self.reader.act("Press", "push button", COPY_ENDPOINT, "Session cache")
        self.reader.await_node("push button", COPY_ENDPOINT, "Copied")
        eventually(lambda: self.desktop.clipboard() == "127.0.0.1:43392", "the endpoint in the clipboard")
        self.reader.await_node("push button", COPY_ENDPOINT, "Session cache")

    def test_an_address_is_copied(self):
        self.reader.act("Press", "push button", COPY_ADDRESS, "Handbook preview")
        eventually(lambda: self.desktop.clipboard() == "veranox-work.tail7c41e.ts.net:8080", "the address there")

    def test_it_refreshes(self):
        self.front.await_quiet()
        before = self.front.count("GET /api/profiles")
        self.reader.act("Press", "push button", "Refresh Veranox status")
        eventually(lambda: self.front.count("GET /api/profiles") > before, "a request to the service")

    def test_it_quits(self):
        self.reader.act("Press", "push button", "Quit")
        self.reader.await_node("dialog", "Quit Veranox?")
        self.reader.act("Press", "push button", "Quit Veranox")
        self.assertEqual(self.application.wait(STOP_BOUND), 0)
        self.assertEqual(self.front.count("POST /api/shutdown"), 1)
        self.assertEqual(self.service.wait(STOP_BOUND), 0)

    def test_quitting_can_be_cancelled(self):
        self.reader.act("Press", "push button", "Quit")
        panel = self.reader.await_node("dialog", "Quit Veranox?")
        self.assertTrue(panel.description.startswith("The local router"), panel.description)
        self.assertEqual([node.name for node in panel.showing() if node.role == "alert"],
                         ["Connected clients will drop"])
        self.reader.act("Press", "push button", "Cancel")
        eventually(lambda: not self.application.quit_panels(), "the panel goes")
        self.assertTrue(self.application.running)
        self.assertEqual(self.front.count("POST /api/shutdown"), 0)


class FailedTunnel(Popover):
    def prepare(self):
        self.obstacle = socket.create_server(("127.0.0.1", ORDERS_PORT))
        self.addCleanup(self.obstacle.close)

    def test_it_is_retried(self):
        self.reader.await_node("push button", RETRY_TUNNEL, "Orders database")
        self.assertIn("The address 127.0.0.1:43391 is taken", self.names("list item", "Tunnels")[0])
        self.obstacle.close()
        self.reader.act("Press", "push button", RETRY_TUNNEL, "Orders database")
        eventually(lambda: "Orders database, Listening" in self.names("list item", "Tunnels")[0], "it listens")
        self.assertEqual(self.front.count("POST /api/tunnels/orders/restart"), 1)
        self.assertIsNone(self.reader.application().find("push button", RETRY_TUNNEL))
        socket.create_connection(("127.0.0.1", ORDERS_PORT), timeout=5).close()


class EveryItem(Popover):
    def assert_all_said(self, window):
        for node in window.showing():
            self.assertIn(node.role, CHANGEABLE | READABLE, node)
            self.assertTrue(node.name.strip(), node)
            if node.role in ("push button", "check box"):
                self.assertIn("focusable", node.states, node)
                self.assertIn("Toggle" if node.role == "check box" else "Press", node.actions, node)

    def test_in_the_popover_has_a_name_and_a_role(self):
        self.assert_all_said(self.reader.await_window("Veranox"))

    def test_in_the_panel_before_quitting_has_a_name_and_a_role(self):
        self.reader.act("Press", "push button", "Quit")
        self.assert_all_said(self.reader.await_window("Quit Veranox"))


class EveryItemOfTheDemonstration(EveryItem):
    lab = "demo"

    def test_in_the_panel_before_quitting_has_a_name_and_a_role(self):
        quit_button = next(node for node in self.reader.application().walk() if node.name == "Quit")
        self.reader.focus(quit_button)  # brings it to the screen
        super().test_in_the_panel_before_quitting_has_a_name_and_a_role()


class Focus(Popover):
    def test_tab_goes_through_the_controls_in_reading_order(self):
        order = [(node.name, node.description) for node in self.reader.await_window("Veranox").showing()
                 if node.role in ("push button", "check box")]
        self.assertEqual(len(order), len(set(order)))
        walked = []
        for name, description in order:
            self.reader.press(TAB)
            self.reader.await_focus(lambda node: (node.name, node.description) == (name, description), name)
            walked.append(name)
        self.assertEqual(walked, [
            "Refresh Veranox status",
            COPY_ENDPOINT, "Orders database", COPY_ENDPOINT, "Session cache",
            COPY_ADDRESS, "Handbook preview", "Media library",
            "Copy PAC", "Web GUI", "Quit"])

    def test_it_can_be_given(self):
        switch = self.reader.await_node("check box", "Session cache")
        self.reader.focus(switch)
        self.reader.await_focus(lambda node: node.name == "Session cache", "the switch")
        self.reader.press(RETURN)
        self.reader.await_node("check box", "Session cache", where=lambda node: node.is_checked)


class MoreThanTheScreenHolds(Popover):
    lab = "demo"

    def test_the_keyboard_brings_what_it_is_on_to_the_screen(self):
        self.assertIsNone(self.reader.application().find("push button", "Quit"))
        self.desktop.press("shift+Tab")
        self.reader.await_focus(lambda node: node.name == "Quit" and "showing" in node.states, "Quit, on the screen")
        self.reader.press(TAB)
        self.reader.await_focus(
            lambda node: node.name == "Refresh Veranox status" and "showing" in node.states, "the top, on the screen")


class ScreenReaderThatWasThereFirst(Popover):
    reader_is_first = True

    def test_it_finds_the_popover(self):
        self.assertIsNotNone(self.reader.await_window("Veranox").find("list", "Tunnels"))


class WhileTheServiceIsDown(Popover):
    def setUp(self):
        super().setUp()
        self.service.kill()
        self.front.stop()
        self.reader.act("Press", "push button", "Refresh Veranox status")

    def test_it_says_so_and_offers_what_helps(self):
        self.reader.await_node("label", "Error")
        alert = self.reader.await_node("alert", "Veranox service stopped")
        self.assertEqual(alert.description, "The local Veranox service isn't running, so traffic isn't being routed.")
        self.assertIsNotNone(alert.find("push button", "Restart Veranox"))

    def test_buttons_that_need_it_are_told_to_be_disabled(self):
        for button in ("Copy PAC", "Web GUI"):
            self.reader.await_node("push button", button, where=lambda node: not node.is_enabled)
        self.assertTrue(self.reader.application().find("push button", "Quit").is_enabled)


if __name__ == "__main__":
    unittest.main()
