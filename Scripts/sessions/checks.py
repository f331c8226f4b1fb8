"""The checks that every session goes through, in order."""

from alerts import BannerChecks
from bar import BarChecks
from examination import NotApplicable
from life import LifeChecks


class Checks(BarChecks, BannerChecks, LifeChecks):
    def run(self):
        """The first login: a start by hand, and all that a user does then."""
        if not self.check("session", self._start_session):
            return
        if self.check("first-run", self._first_run):
            self._with_application()
        self.check("sigterm", self._sigterm)
        self.check("end", self._end)

    def _no_icon(self):
        raise NotApplicable("its bar shows no icons")

    def run_quickly(self):
        """The checks that need the desktop itself, and no more."""
        for name, function in (("session", self._start_session), ("first-run", self._first_run), ("icon", self._find_icon),
                               ("legible", self._legible), ("panel", self._panel), ("closes", self._closes),
                               ("banner", self._banner), ("words", self._words), ("jump", self._jump), ("end", self._end)):
            if not self.check(name, function):
                return

    def run_again(self, icon):
        """The second login, in the same home: whether the session itself starts the application."""
        self._icon = tuple(icon)
        self.check("autostart", self._autostart)

    def _with_application(self):
        has_icon = self.session.bar[0] is not None
        self.check("icon", self._find_icon)
        if has_icon and self._icon:
            self.check("legible", self._legible)
            self.check("panel", self._panel)
            self.check("entry", self._entry)
            self.check("closes", self._closes)
            self.check("menu", self._menu)
        elif not has_icon:
            for name in ("legible", "panel", "entry", "closes", "menu", "attention", "legible-later"):
                self.check(name, self._no_icon)
        self.check("banner", self._banner)
        if self.banners():
            self.check("words", self._words)
            self.check("focus", self._focus)
            if self._icon:
                self.check("attention", self._attention)
            self.check("jump", self._jump)
        self.check("dark", self._dark)
        if self._icon and self._looks:
            self.check("legible-later", self._legible_later)
        self.check("login", self._login)
        if self.session.no_autostart:
            self.check("autostart", self._no_autostart)
