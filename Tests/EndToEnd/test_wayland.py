"""The popover where the desktop lets no window choose its place: an ordinary window, that the compositor knows by the
application's name."""
from support.case import EndToEndTestCase, main
from support.polling import eventually, stays
from support.programs import POPOVER_WIDTH
from support.wayland import Compositor

APPLICATION_ID = "app.veranox.Menu"  # the name of the desktop entry, by which the desktop finds the application's icon
LIGHT_WINDOW = (0xF5, 0xF5, 0xF7)


class OnWayland(EndToEndTestCase):
    desktop_options = ("--no-x",)

    def setUp(self):
        super().setUp()
        self.compositor = Compositor(self.desktop, self.folder)
        self.addCleanup(self.compositor.stop)
        self.panel = self.start_panel()
        self.start_service("settled")
        self.application = self.start_application()
        self.panel.await_item()
        self.application.await_settled()

    def tearDown(self):
        self.compositor.screenshot(self.folder / "screen.png")
        super().tearDown()

    def launch_again(self):
        self.assertEqual(self.start_application().wait(within=5), 0)

    def test_launching_the_program_again_opens_a_window_with_title_and_application_id(self):
        self.assertEqual(self.compositor.windows(), [])
        self.launch_again()
        window = self.compositor.await_window()
        self.assertEqual(window["name"], "Veranox")
        self.assertEqual(window["app_id"], APPLICATION_ID)
        self.assertEqual(window["pid"], self.application.pid)

    def test_it_is_framed_can_be_moved_and_keeps_its_size(self):
        self.launch_again()
        self.compositor.await_window()
        # The compositor lays the frame out after it has given the keyboard.
        window = eventually(lambda: [window for window in self.compositor.windows() if window["deco_rect"]["height"] > 0],
                            "a frame")[0]
        self.assertEqual(window["type"], "floating_con")  # for one whose size is fixed
        self.assertEqual(window["window_rect"]["width"], POPOVER_WIDTH)
        self.compositor.command("move position 10 60")
        moved = self.compositor.await_window()
        self.assertEqual((moved["rect"]["x"], moved["window_rect"]), (10, window["window_rect"]))

    def test_the_popover_is_drawn_to_its_edges(self):
        self.launch_again()
        place, inside = (self.compositor.await_window()[key] for key in ("rect", "window_rect"))
        picture = self.folder / "popover.png"

        def is_drawn():
            self.compositor.screenshot(picture)
            left, top = place["x"] + inside["x"], place["y"] + inside["y"]
            right, bottom = left + inside["width"] - 1, top + inside["height"] - 1
            return all(self.desktop.pixel(picture, x, y) == LIGHT_WINDOW for x in (left, right) for y in (top, bottom))

        eventually(is_drawn, "the colour of the popover in all four corners")
        self.assertGreater(len(self.desktop.file_colours(picture)), 50)  # and words in it

    def test_escape_closes_it_and_it_opens_again(self):
        for _ in range(3):
            self.launch_again()
            self.compositor.await_window()
            self.compositor.press("Escape")
            self.compositor.await_no_window()

    def test_it_stays_when_the_keyboard_goes_elsewhere(self):
        self.launch_again()
        self.compositor.await_window()
        self.compositor.command("workspace 2")
        stays(lambda: len(self.compositor.windows()) == 1, "the window on the other workspace", during=0.5)

    def test_the_compositors_close_button_closes_the_window_alone(self):
        self.launch_again()
        self.compositor.await_window()
        self.compositor.command("kill")
        self.compositor.await_no_window()
        stays(lambda: self.application.running and self.panel.items(), "the application and its icon", during=0.5)
        self.launch_again()
        self.compositor.await_window()

    def test_a_click_on_the_icon_opens_it_and_a_second_closes_it(self):
        self.panel.click()
        self.compositor.await_window()
        self.panel.click()
        self.compositor.await_no_window()


if __name__ == "__main__":
    main()
