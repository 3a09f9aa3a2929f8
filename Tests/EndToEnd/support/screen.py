"""The windows that are on an X display."""
import contextlib
import dataclasses

from Xlib import X, display, error


@dataclasses.dataclass(frozen=True)
class Window:
    id: int
    class_name: str
    types: tuple  # the last words of _NET_WM_WINDOW_TYPE, such as "TOOLTIP"
    unmanaged: bool  # the window manager has no say in it
    parents: tuple  # ids, the root first
    x: int
    y: int
    width: int
    height: int

    @property
    def centre(self):
        return self.x + self.width // 2, self.y + self.height // 2

    @property
    def is_menu(self):
        """A window that stands by itself on the screen without a frame and is no tool tip."""
        return self.unmanaged and len(self.parents) == 1 and "TOOLTIP" not in self.types


class Screen:
    """A connection of its own to the display."""

    def __init__(self, name):
        self._display = display.Display(name)
        self._root = self._display.screen().root
        self._window_type = self._display.intern_atom("_NET_WM_WINDOW_TYPE")

    def close(self):
        self._display.close()

    def windows(self, class_name):
        """The windows of this class that can be seen, those inside other windows included."""
        return [window for window in self._visible(self._root, ()) if window.class_name == class_name]

    def _visible(self, parent, parents):
        with contextlib.suppress(error.BadWindow, error.BadDrawable):  # gone while we look
            for child in parent.query_tree().children:
                with contextlib.suppress(error.BadWindow, error.BadDrawable):
                    attributes = child.get_attributes()
                    if attributes.map_state == X.IsViewable:
                        yield self._describe(child, bool(attributes.override_redirect), parents + (parent.id,))
                        yield from self._visible(child, parents + (parent.id,))

    def _describe(self, window, unmanaged, parents):
        names = window.get_wm_class() or ("", "")
        types = window.get_full_property(self._window_type, X.AnyPropertyType)
        place, corner = window.get_geometry(), self._root.translate_coords(window, 0, 0)
        return Window(
            window.id, names[1],
            tuple(self._display.get_atom_name(atom).removeprefix("_NET_WM_WINDOW_TYPE_")
                  for atom in (types.value if types else ())),
            unmanaged, parents, corner.x, corner.y, place.width, place.height)
