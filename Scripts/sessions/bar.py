"""The icon in the bar, its panel and its menu."""

import re
import time

from examination import SOON, Examination, NotApplicable
from pictures import changed_part, changed_share, changed_spans, contrast, cut, missing_words, read, shape_at
from room import HEIGHT, PREFIX, WIDTH, detached, see
from scratch import Failure, wait_until
from wayland import RIGHT

PANEL_GAP = 40
ICON_WIDTH, ICON_STEP, MOST_CANDIDATES = 48, 20, 16

# The least share of the icon that a tone needs to count as its shape, and the same of its lower half, which its dot does
# not reach.
LEAST_SHARE, SHARE_OF_LOWER_HALF = 0.03, 0.08


class BarChecks(Examination):
    def _find_icon(self):
        if self.session.bar[0] is None:
            return self._no_tray()
        strip = self.strip()
        now = self.steady(15, looks=2)
        spans = [span for span in changed_spans(self._bare, now, strip) if span[1] >= 8]
        if not spans:
            raise Failure("the bar looks as before the start", "")
        # A new icon moves others aside, and a clock may have moved on: the icon is what opens the panel.
        for middle in list(self._candidates(spans))[:MOST_CANDIDATES]:
            self._click_icon(middle, strip)
            if wait_until(lambda: self.window("panel"), 5, 0.2):
                self._icon = middle, strip[1], 0, strip[3]
                self._close_panel()
                # Some screenshots show the pointer, which is not a part of the icon.
                self.hands.move(WIDTH // 2, HEIGHT - 120)
                self._icon = self.results.icon = shape_at(self.steady(6), strip, middle)
                left, top, width, height = self._icon
                return f"{width}x{height} at {left},{top}"
            self._escape()
        raise Failure("a click on what is new in the bar opens no panel", "", f"new: {spans}")

    @staticmethod
    def _candidates(spans):
        """Columns to try: the middle of what is no wider than an icon, then every part of the rest, from the right."""
        for left, width in reversed(spans):
            if width <= ICON_WIDTH:
                yield left + width // 2
        for left, width in reversed(spans):
            if width > ICON_WIDTH:
                yield from range(left + width - 12, left, -ICON_STEP)

    def _click_icon(self, middle=None, strip=None):
        strip = strip or self.strip()
        if middle is None:
            middle = self._icon[0] + self._icon[2] // 2
        self.hands.click(middle, strip[1] + strip[3] // 2)
        if self.session.opens_by_double_click:
            self.hands.click_again()

    def _no_tray(self):
        """Without icons, a start by hand opens the window, which says where the program is."""
        detached([PREFIX / "bin/corvane"])
        see(lambda: self.window("main"), 20, "a second start did not open the window")
        said = wait_until(lambda: [c.name for c in self.eyes.controls() if re.search("start .* again", c.name, re.I)], SOON, 0.5)
        self.picture("no-tray")
        if not said:
            raise Failure("the window does not say how to bring it back", "", "; ".join(
                c.name for c in self.eyes.controls() if c.name))
        return said[0]

    def _escape(self):
        self.hands.key(1)
        time.sleep(0.5)

    def _close_panel(self):
        if not self.window("panel"):
            return
        self._escape()
        if not wait_until(lambda: not self.window("panel"), 3, 0.2):
            self.hands.click(WIDTH // 2, HEIGHT - 120)
        if not wait_until(lambda: not self.window("panel"), 3, 0.2) and self._icon:
            # Whether these close it is a check of its own; the icon does.
            self._click_icon()
            wait_until(lambda: not self.window("panel"), 5, 0.2)

    def _legible(self):
        picture = self.steady(10)
        left, top, width, height = self._icon
        picture.crop(cut((left - 60, top - 8, width + 120, height + 16))).resize(
            ((width + 120) * 4, (height + 16) * 4)).save(self._folder / "icon.png")
        return self._see_contrast(picture)

    def _see_contrast_beside_dot(self, picture):
        left, top, width, height = self._icon
        return self._see_contrast(picture, SHARE_OF_LOWER_HALF, (left, top + height // 2, width, height - height // 2))

    def _see_contrast(self, picture, share=LEAST_SHARE, area=None):
        ratio = contrast(picture, area or self._icon, share)
        if ratio < 3:
            raise Failure(f"its contrast with the bar is {ratio:.1f}:1, less than 3:1", "")
        return f"contrast {ratio:.1f}:1"

    def _legible_later(self):
        return ", ".join(f"{look}: {self._see_contrast_beside_dot(picture)}" for look, picture in self._looks.items())

    def _panel(self):
        before = self.steady(10)
        self._click_icon()
        see(lambda: self.window("panel"), SOON, "a click on the icon opens no panel")
        self._with_panel = self.steady(10)
        self._without_panel = before
        self.picture("panel")
        left, top, width, height = self.eyes.without_shadow(self.place("panel"))
        words = read(self._with_panel, (left, top, width, height))
        if missing_words("Settings", words):
            raise Failure("the screen does not show the panel at its place", "", " ".join(words))
        edge = self.session.bar[0]
        strip = self.strip()
        icon = self._icon[0] + self._icon[2] // 2
        gap = top - (strip[1] + strip[3]) if edge == "top" else strip[1] - (top + height)
        where = f"{width}x{height} at {left},{top}, icon at {icon}"
        if not left - 8 <= icon <= left + width + 8 or not -8 <= gap <= PANEL_GAP:
            raise Failure(f"the panel is not beside the icon: {where}, {gap} px from the bar", "")
        if left < 0 or left + width > WIDTH or top < 0 or top + height > HEIGHT:
            raise Failure(f"a part of the panel is off the screen: {where}", "")
        return where

    def _entry(self):
        if self.session.no_entries:
            raise NotApplicable(self.session.no_entries)
        if not self.window("panel"):
            raise Failure("the panel is no longer open", "")
        strip = self.strip()
        near = range(self._icon[0] - 40, self._icon[0] + self._icon[2] + 40)
        new = [span for span in changed_spans(self._without_panel, self._with_panel, strip, 10)
               if span[1] >= 40 and span[0] not in near]
        if new:
            raise Failure("the bar shows something new while the panel is open", "", str(new))
        return ""

    def _closes(self):
        if not self.window("panel"):
            self._click_icon()
            see(lambda: self.window("panel"), SOON, "the panel did not open")
        left, _, width, _ = self.place("panel")
        aside = 40 if left > WIDTH // 2 else WIDTH - 40
        self.hands.click(aside, HEIGHT // 2)
        try:
            see(lambda: not self.window("panel"), SOON, "a click elsewhere did not close the panel")
        finally:
            self._close_panel()

    def _menu(self):
        seen = 0
        for _ in range(4):
            before = self.steady(6)
            left, top, width, height = self._icon
            self.hands.click(left + width // 2, top + height // 2, RIGHT)

            def shows():
                now = self.hands.screenshot()
                if changed_share(before, now, (0, 0, WIDTH, HEIGHT)) < 0.005:
                    return False
                # Only the menu itself: a desktop of a third tone makes it unreadable.
                menu = changed_part(before, now, self._beside_icon())
                return menu is not None and not missing_words("Quit", read(now, menu))

            opened = wait_until(shows, 6, 0.5)
            if opened:
                seen += 1
            if seen == 1 and opened:
                self.picture("menu")
            self._escape()
            self._escape()
            if self.session.is_wayland or not wait_until(lambda: changed_share(
                    before, self.hands.screenshot(), (0, 0, WIDTH, HEIGHT)) < 0.005, 2, 0.3):
                self.hands.click(WIDTH // 2, HEIGHT // 2)
        if seen < 4:
            raise Failure(f"{seen} of 4 right clicks opened the menu", "")
        return "4 of 4"

    def _beside_icon(self):
        middle = self._icon[0] + self._icon[2] // 2
        left = max(0, min(WIDTH - 440, middle - 220))
        return (left, 0, 440, 420) if self.session.bar[0] == "top" else (left, HEIGHT - 420, 440, 420)
