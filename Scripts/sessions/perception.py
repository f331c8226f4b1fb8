"""The application's windows, as the X server reports them, and its controls, as assistive technology finds them.

The controls are read with plain D-Bus calls: the accessibility library handles what other applications send in the
middle of its own calls, and on a whole desktop it can then wait for itself forever."""

import re

from gi.repository import Gio, GLib

from eyes import APPLICATION, ROLE_NAMES, Control

ACCESSIBLE, COMPONENT = "org.a11y.atspi.Accessible", "org.a11y.atspi.Component"
ROOT = "/org/a11y/atspi/accessible/root"
SHOWING = 25
DEEPEST = 30

# A waiting banner's card, the panel's, and the room for its shadow, in points.
CARD = 520, 96
PANEL_WIDTH = 340
SHADOW_SIDE, SHADOW_ABOVE, SHADOW_BELOW = 24, 16, 32


class Perception:
    def __init__(self, scratch, accessibility_bus):
        self._scratch = scratch
        flags = Gio.DBusConnectionFlags
        self._bus = Gio.DBusConnection.new_for_address_sync(
            accessibility_bus, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)

    # Windows

    def window(self, role):
        """The visible window of the application that has this role; None when there is none."""
        for window in self._run("xdotool", "search", "--onlyvisible", "--class", "^corvane$").split():
            if window.isdigit() and f'"{role}"' in self._run("xprop", "-id", window, "WM_WINDOW_ROLE"):
                return int(window)
        return None

    def geometry(self, window):
        """left, top, width, height"""
        told = self._run("xwininfo", "-id", window)
        fields = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        numbers = [re.search(rf"{field}: +(-?\d+)", told) for field in fields]
        return tuple(int(number.group(1)) if number else 0 for number in numbers)

    def cards(self):
        """The areas of the waiting banners' cards, whatever the desktop's scale: of override-redirect windows that have
        a banner's proportions, with or without room for a shadow."""
        found = []
        for window in self._run("xdotool", "search", "--onlyvisible", "--class", "^corvane$").split():
            if not window.isdigit() or "Override Redirect State: yes" not in self._run("xwininfo", "-id", window):
                continue
            left, top, width, height = self.geometry(window)
            for side, above, below in ((SHADOW_SIDE, SHADOW_ABOVE, SHADOW_BELOW), (0, 0, 0)):
                scale = width / (CARD[0] + 2 * side)
                if abs(height - scale * (CARD[1] + above + below)) <= 3:
                    found.append((left + round(side * scale), top + round(above * scale), round(CARD[0] * scale),
                                  round(CARD[1] * scale)))
                    break
        return sorted(found, key=lambda card: card[1])

    @staticmethod
    def without_shadow(area):
        """The card of the panel in its window, which has room for a shadow where windows are composited."""
        left, top, width, height = area
        if width < PANEL_WIDTH + SHADOW_SIDE:
            return area
        scale = width / (PANEL_WIDTH + 2 * SHADOW_SIDE)
        side, above, below = (round(room * scale) for room in (SHADOW_SIDE, SHADOW_ABOVE, SHADOW_BELOW))
        return left + side, top + above, width - 2 * side, height - above - below

    def _run(self, *command):
        return self._scratch.run(*command).stdout

    # Controls

    def controls(self):
        """Every element that is showing, over all windows of the application, in pixels of the screen."""
        try:
            for name, path in self._call("org.a11y.atspi.Registry", ROOT, ACCESSIBLE, "GetChildren")[0]:
                if self._is_ours(name, path):
                    return self._in_pixels(list(self._walk(name, path, None, 0)))
        except GLib.Error:
            pass  # It was destroyed during the query; the next attempt will be right.
        return []

    def _in_pixels(self, controls):
        """Qt reports places divided by the screen's scale, which is no whole number where the desktop sets a resolution
        like 100 per inch."""
        if not controls:
            return controls
        found = self._run("xdotool", "search", "--onlyvisible", "--class", "^corvane$").split()
        areas = [self.geometry(window) for window in found if window.isdigit()]
        for frame in (control for control in controls if control.window is control and control.width > 0):
            for left, _, width, height in areas:
                scale = width / frame.width
                if abs(frame.height * scale - height) <= 3 and abs(frame.left * scale - left) <= 3:
                    for control in controls:
                        for side in ("left", "top", "width", "height"):
                            setattr(control, side, round(getattr(control, side) * scale))
                    return controls
        return controls

    def _is_ours(self, name, path):
        try:
            return self._property(name, path, "Name") == APPLICATION
        except GLib.Error:
            return False

    def _walk(self, name, path, window, depth):
        for child_name, child in self._call(name, path, ACCESSIBLE, "GetChildren")[0]:
            if child.endswith("/null") or depth > DEEPEST:
                continue
            low, _ = self._call(child_name, child, ACCESSIBLE, "GetState")[0]
            if not low & 1 << SHOWING:
                continue
            left, top, width, height = self._call(child_name, child, COMPONENT, "GetExtents", GLib.Variant("(u)", (0,)))[0]
            control = Control(self._call(child_name, child, ACCESSIBLE, "GetRoleName")[0], self._property(child_name, child, "Name"),
                              self._property(child_name, child, "Description"), left, top, width, height)
            control.window = window or control
            yield control
            yield from self._walk(child_name, child, control.window, depth + 1)

    def find(self, role, name, description=None):
        """The first such control that is showing; `name` is a text, or a pattern for all of it."""
        for control in self.controls():
            named = name.fullmatch(control.name) if isinstance(name, re.Pattern) else control.name == name
            if control.role in ROLE_NAMES.get(role, (role,)) and named and description in (None, control.description):
                return control
        return None

    def _property(self, name, path, which):
        return self._call(name, path, "org.freedesktop.DBus.Properties", "Get", GLib.Variant("(ss)", (ACCESSIBLE, which)))[0] or ""

    def _call(self, name, path, interface, method, arguments=None):
        return self._bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, 3000, None).unpack()
