"""How a session is looked at: by screenshots, windows, controls, and by where typed text arrives."""

import os
import re
import time

from names import NAMES, NOT_APPLICABLE, NOT_SEEN, SEEN
from pictures import changed_share
from room import HEIGHT, WIDTH
from scratch import Failure, wait_until

# Seconds. Generous, since machines are loaded; every wait ends as soon as the condition holds.
SOON, LATER = 8, 40


class NotApplicable(Exception):
    """A check that a desktop gives no occasion for, and why."""


class Examination:
    """A session under examination, and the means to look at it."""

    def __init__(self, session, results, tell):
        self.session = session
        self.room = session.room
        self.scratch = session.scratch
        self.results = results
        self._folder = results.folder
        self._tell = tell
        self._pictures = 0
        self._icon = None
        self._application = None
        self._looks = {}

    # Reporting

    def check(self, name, function):
        """Runs one check. A failure does not keep the others from running."""
        start = time.monotonic()
        try:
            state, detail = SEEN, function() or ""
        except NotApplicable as reason:
            state, detail = NOT_APPLICABLE, str(reason)
        except Failure as failure:
            state, detail = NOT_SEEN, str(failure)
            if failure.observed:
                detail += f" ({failure.observed[-400:]})"
        except Exception as error:  # pylint: disable=broad-except
            state, detail = NOT_SEEN, f"{type(error).__name__}: {error}"
        self.results.add(name, state, " ".join(detail.split()))
        self._tell(f"    {state:14}  {NAMES[name]}{': ' if detail else ''}{' '.join(detail.split())} "
                   f"[{time.monotonic() - start:.0f} s]")
        if state == NOT_SEEN:
            self.picture(f"failed-{name}")
        return state == SEEN

    def picture(self, name):
        self._pictures += 1
        try:
            self.hands.screenshot().save(self._folder / f"{self._pictures:02}-{name}.png")
        except Exception as error:  # pylint: disable=broad-except
            self._tell(f"                    no screenshot: {error}")

    # Perception

    def work_area(self):
        if os.environ.get("SWAYSOCK"):
            told = self.scratch.run("swaymsg", "-t", "get_workspaces", "-r").stdout
            found = re.search(r'"rect":\s*\{\s*"x":\s*(\d+),\s*"y":\s*(\d+),\s*"width":\s*(\d+),\s*"height":\s*(\d+)', told)
        else:
            told = self.scratch.run("xprop", "-root", "_NET_WORKAREA").stdout
            found = re.search(r"= (\d+), (\d+), (\d+), (\d+)", told)
        return tuple(int(number) for number in found.groups()) if found else (0, 0, WIDTH, HEIGHT)

    def strip(self):
        """The part of the screen that is the bar."""
        edge, height = self.session.bar
        _, top, _, tall = self.work_area()
        if edge == "top":
            return 0, 0, WIDTH, top or height
        bottom = HEIGHT - top - tall
        return (0, HEIGHT - bottom, WIDTH, bottom) if bottom > 0 else (0, HEIGHT - height, WIDTH, height)

    def steady(self, seconds=LATER, looks=1):
        """A screenshot of a screen that has stopped changing, but for a clock, for so many looks in a row."""
        end = time.monotonic() + seconds
        last, equal = self.hands.screenshot(), 0
        while True:
            time.sleep(0.7)
            now = self.hands.screenshot()
            equal = equal + 1 if changed_share(last, now, (0, 0, WIDTH, HEIGHT)) < 0.0005 else 0
            if equal >= looks or time.monotonic() > end:
                return now
            last = now

    def window(self, role):
        return self.eyes.window(role)

    def place(self, role):
        return self.eyes.geometry(self.window(role))

    def banners(self):
        """The cards of the banners, as the X server reports them."""
        return self.eyes.cards()

    @staticmethod
    def area(control):
        return control.left, control.top, control.width, control.height

    def click(self, control):
        self.hands.click(*control.middle)

    def find(self, role, name, seconds=SOON, **where):
        control = wait_until(lambda: self.eyes.find(role, name, **where), seconds, 0.3)
        if not control:
            there = "; ".join(f"{c.role} {c.name!r}" for c in self.eyes.controls() if c.name)
            raise Failure(f"there is no {role} {name!r}", "", there)
        return control

    def typed(self, log):
        return log.read_text() if log.exists() else ""

    def arrives(self, letter, log, seconds=SOON):
        """Types a line until it arrives in that terminal."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self.hands.type_line(letter)
            if wait_until(lambda: letter in self.typed(log), 1):
                return True
        return False
