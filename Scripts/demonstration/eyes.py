"""What a user sees and does: observed through the X server and the accessibility bus, done with
the pointer and the keyboard. The application is never accessed in any other way."""

import os
import re
import time
from dataclasses import dataclass

import gi

from scratch import Failure, wait_until

APPLICATION = "Corvane"
LOOK_AGAIN = "look at the picture, and run ./run again to see whether it repeats"

# Role names that differ between versions of at-spi2-core: 2.46 (Debian 12), then 2.56 (Debian 13).
ROLE_NAMES = {"push button": ("push button", "button")}


@dataclass
class Control:
    """An element of a window, with its place on the screen in pixels."""

    role: str
    name: str
    description: str
    left: int
    top: int
    width: int
    height: int

    @property
    def area(self):
        return f"{self.width}x{self.height}{self.left:+d}{self.top:+d}"

    @property
    def middle(self):
        return self.left + self.width // 2, self.top + self.height // 2


class Eyes:
    def __init__(self, scratch, observe, accessibility_bus):
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib

        # Given its address, the library does not connect to the session bus, whose end would also end this process. The
        # application has to find it as on any desktop.
        os.environ["AT_SPI_BUS_ADDRESS"] = accessibility_bus
        Atspi.init()
        del os.environ["AT_SPI_BUS_ADDRESS"]
        self._atspi = Atspi
        self._gone = GLib.Error
        self._scratch = scratch
        self._observe = observe
        Atspi.set_timeout(2000, 5000)
        # Nothing here runs the event loop that would keep a cache up to date.
        Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)

    # Windows, as the X server and the window manager report them

    def xdotool(self, *arguments):
        return self._scratch.run("xdotool", *arguments).stdout.strip()

    def window(self, role):
        """The visible window of the application that has this role; None when there is none."""
        found = self.xdotool("search", "--onlyvisible", "--class", "^corvane$").split()
        for window in found:
            if window.isdigit() and f'"{role}"' in self._property(window, "WM_WINDOW_ROLE"):
                return int(window)
        return None

    def _property(self, window, name):
        return self._scratch.run("xprop", "-id", window, name).stdout

    def title(self, window):
        return self.xdotool("getwindowname", window) if window else "no window"

    def frame(self, window):
        """The area of a window with the frame that the window manager has put around it."""
        left, top, width, height = self.geometry(window)
        extents = re.search(r"= (\d+), (\d+), (\d+), (\d+)", self._property(window, "_NET_FRAME_EXTENTS"))
        before, after, above, below = (int(side) for side in extents.groups()) if extents else (0, 0, 0, 0)
        return left - before, top - above, width + before + after, height + above + below

    def tray_icon(self):
        """The area and the title of our icon in the tray."""
        def embedded():
            # A tray's icons are child windows of its own.
            for window in self.xdotool("search", "--onlyvisible", "--class", "^corvane$").split():
                if window.isdigit() and self._is_in(window, tray):
                    return window
            return None

        bar = self.xdotool("search", "--onlyvisible", "--class", "^trayer$").split()
        tray = self.geometry(bar[0]) if bar else (0, 0, 0, 0)
        icon = wait_until(embedded, 5)
        if not icon:
            raise Failure("no icon appeared in the tray", "check whether trayer is running")
        return self.geometry(icon), self.title(icon)

    def _is_in(self, window, area):
        left, top, width, height = self.geometry(window)
        return (area[0] <= left and left + width <= area[0] + area[2]
                and area[1] <= top and top + height <= area[1] + area[3])

    def workspace(self):
        return int(self.xdotool("get_desktop"))

    def active_window(self):
        return self._number("getactivewindow")

    def focused_window(self):
        return self._number("getwindowfocus")

    def _number(self, *question):
        told = self.xdotool(*question)
        return int(told) if told.isdigit() else None

    def geometry(self, window):
        """left, top, width, height"""
        told = self._scratch.run("xwininfo", "-id", window).stdout
        fields = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        numbers = [re.search(rf"{field}: +(-?\d+)", told) for field in fields]
        return tuple(int(number.group(1)) if number else 0 for number in numbers)

    def go_to_workspace(self, number):
        self.xdotool("set_desktop", number)
        if not wait_until(lambda: self.workspace() == number, 5):
            raise Failure(f"the window manager does not show workspace {number + 1}", LOOK_AGAIN)

    # Controls, as assistive technology finds them

    def controls(self):
        """Every element that is showing, over all windows of the application."""
        try:
            desktop = self._atspi.get_desktop(0)
            for index in range(desktop.get_child_count()):
                application = desktop.get_child_at_index(index)
                if application is not None and application.get_name() == APPLICATION:
                    return list(self._walk(application, None))
        except self._gone:
            pass  # It was destroyed during the query; the next attempt will be right.
        return []

    def _walk(self, element, window):
        for index in range(element.get_child_count()):
            child = element.get_child_at_index(index)
            if child is None or not child.get_state_set().contains(self._atspi.StateType.SHOWING):
                continue
            place = child.get_extents(self._atspi.CoordType.SCREEN)
            control = Control(child.get_role_name(), child.get_name() or "", child.get_description() or "",
                              place.x, place.y, place.width, place.height)
            control.window = window or control
            yield control
            yield from self._walk(child, control.window)

    def find(self, role, name, description=None, window=None):
        """The first such control that is showing; `name` is a text, or a pattern for all of it."""
        roles = ROLE_NAMES.get(role, (role,))
        for control in self.controls():
            named = name.fullmatch(control.name) if isinstance(name, re.Pattern) else control.name == name
            if (control.role in roles and named and description in (None, control.description)
                    and (window is None or control.window.name == window)):
                return control
        return None

    def see(self, role, name, seconds=5, **where):
        """Waits for a control, and checks that the screen shows something at its place."""
        control = wait_until(lambda: self.find(role, name, **where), seconds)
        shown = name.pattern if isinstance(name, re.Pattern) else name
        if not control:
            there = "\n".join(f"{c.role} \"{c.name}\"" for c in self.controls())
            raise Failure(f"there is no {role} \"{shown}\" within {seconds} s", LOOK_AGAIN, there)
        self.see_ink(control.area, f"the {role} \"{shown}\"")
        return control

    def see_gone(self, role, name, seconds=5, **where):
        if not wait_until(lambda: not self.find(role, name, **where), seconds):
            raise Failure(f"the {role} \"{name}\" is still there after {seconds} s", LOOK_AGAIN)

    def see_ink(self, area, what):
        """Fails unless the screen shows more than an empty area there."""
        result = wait_until(lambda: self._passed("ink", area), 2)
        if not result:
            raise Failure(f"the screen shows nothing at the place of {what}", LOOK_AGAIN, self._observe("ink", area).stdout)

    def _passed(self, *command):
        return self._observe(*command).returncode == 0

    # Banners, as the screen shows them

    def see_banners(self, waiting, done, seconds):
        """Exactly so many, complete and at their places. Returns how long that took, and the observer's output."""
        result = self._observe("wait-for", "--waiting", waiting, "--done", done, "--timeout", seconds)
        if result.returncode != 0:
            raise Failure(f"{waiting} waiting and {done} done banners were not on the screen within {seconds} s",
                          LOOK_AGAIN, result.stdout)
        lines = result.stdout.splitlines()
        return float(lines[-1]), lines[:-1]

    def see_words(self, number, title, subtitle):
        """The banner of this number from the top shows these words, and assistive technology reads them."""
        result = self._observe("reads", number, title, subtitle)
        if result.returncode != 0:
            raise Failure(f"banner {number} does not show \"{title}\" and \"{subtitle}\"", LOOK_AGAIN, result.stdout)
        pattern = re.compile(f".*{re.escape(title)}.*{re.escape(subtitle)}.*", re.S)
        return self.see("notification", pattern)

    def see_no_banner(self, seconds):
        result = self._observe("stays-empty", "--for", seconds)
        if result.returncode != 0:
            raise Failure("a window of the application appeared where none should", LOOK_AGAIN, result.stdout)

    # Pointer and keyboard

    def click(self, control):
        x, y = control.middle
        self.click_at(x, y)

    def click_at(self, x, y):
        self._move_to(x, y)
        self.xdotool("click", 1)

    def put_pointer_aside(self):
        """So that no control in a picture looks hovered."""
        self._move_to(640, 798)
        time.sleep(0.1)

    def _move_to(self, x, y):
        self.xdotool("mousemove", x, y)
        if not wait_until(lambda: self.xdotool("getmouselocation").startswith(f"x:{x} y:{y} "), 2):
            raise Failure(f"the pointer does not go to {x}, {y}", "check whether another program holds it")

    def press(self, keys):
        self.xdotool("key", keys)
