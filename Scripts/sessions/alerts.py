"""An agent that asks, its banner, and the way to its terminal."""

import re
import time

from agents import agent_asks, claude
from examination import LATER, SOON, Examination
from pictures import changed_share, cut, missing_words, read
from room import HEIGHT, WIDTH, see
from scratch import Failure, wait_until

BANNER_GAP = 24

# Passes on what is typed in a terminal, and runs an agent in it.
TYPED = """#!/bin/sh
[ $# -lt 3 ] || "$2" "$3" </dev/null &
while IFS= read -r line; do echo "$line" >>"$1"; done
"""


class BannerChecks(Examination):
    def _open_terminals(self):
        """Two agents in terminals, and the user's own one above them."""
        script = self.scratch.home / ".local/bin/typed-lines"
        script.write_text(TYPED)
        script.chmod(0o755)
        self._logs = {}
        self._agents = {}
        for number, project in enumerate(("web-shop", "payments-api"), 1):
            agent = claude(self.scratch, self._agent_file, project, f"session-{number}")
            self._agents[project] = agent
            self._open_terminal(project, agent.folder, script, agent.terminal_command)
        self._open_terminal("notes", self.scratch.home, script, [])
        time.sleep(1)
        if not self.arrives("a", self._logs["notes"], 6):
            # It has not got the focus by itself.
            self.hands.click(WIDTH // 2, HEIGHT // 2)
        if not self.arrives("b", self._logs["notes"]):
            raise Failure("what is typed does not arrive in the user's terminal", "")

    def _open_terminal(self, title, folder, script, command):
        log = self._logs[title] = self.scratch.folder / f"typed-{title}"
        count = len(self.room.processes("typed-lines"))
        self.session.terminal(title, folder, [script, log, *command])
        see(lambda: len(self.room.processes("typed-lines")) > count, LATER, f"the terminal of {title} did not start")
        time.sleep(1.5)

    def _banner(self):
        self._open_terminals()
        agent = self._agents["web-shop"]
        agent.send("claude-UserPromptSubmit")
        time.sleep(2)
        self._quiet = self.steady(6)
        start = time.monotonic()
        agent.send("claude-Notification-permission_prompt", agent_asks("npm test -- checkout"))
        see(self.banners, LATER, "no banner appeared")
        took = time.monotonic() - start
        self._alert = self.steady(6)
        self.picture("banner")
        card = self.banners()[0]
        self._card = card
        left, top, width, height = card
        area = self.work_area()
        middle, wanted = left + width / 2, area[0] + area[2] / 2
        if changed_share(self._quiet, self._alert, card) < 0.5:
            raise Failure("the screen does not show the banner at its place", "")
        if abs(middle - wanted) > 3 or not 0 <= top - area[1] <= BANNER_GAP:
            raise Failure(f"the banner is at {card}, the work area is {area}", "")
        return f"{width}x{height} at {left},{top}, after {took:.1f} s"

    def _words(self):
        self._alert.crop(cut(self._card)).save(self._folder / "banner.png")
        notification = self.find("notification", re.compile(".*Claude is waiting for you.*web-shop.*", re.S))
        words = read(self._alert, self._card)
        # White on a colour in the middle of black on white is read only by itself.
        words += read(self._alert, self.area(self.find("push button", "Go to Terminal")))
        missing = missing_words("Claude is waiting for you web-shop Claude needs your permission Go to Terminal Snooze", words)
        if missing:
            raise Failure(f"not to be read: {', '.join(missing)}", "", " ".join(words))
        return notification.name

    def _focus(self):
        if not self.arrives("c", self._logs["notes"]):
            raise Failure("what is typed while the banner is there does not arrive in the user's terminal", "")
        return ""

    def _attention(self):
        left, top, width, height = self._icon
        if changed_share(self._quiet, self._alert, (left - 24, top, width + 48, height)) == 0:
            raise Failure("the icon looks as before", "")
        return self._see_contrast_beside_dot(self._alert)

    def _jump(self):
        self.click(self.find("push button", "Go to Terminal"))
        if self.session.no_jump:
            return self._no_jump()
        log = self._logs["web-shop"]
        self.steady(3)
        if not self.arrives("j", log):
            other = next((name for name, log in self._logs.items() if "j" in self.typed(log)), "no terminal")
            raise Failure(f"what is typed afterwards arrives in: {other}", "")
        see(lambda: not self.banners(), SOON, "the banner is still there")
        self.picture("jump")
        return "what is typed afterwards arrives there"

    def _no_jump(self):
        def card():
            return next((c.name for c in self.eyes.controls() if "web-shop" in c.name and "terminal" in c.name.lower()
                         and "waiting" not in c.name), None)

        said = wait_until(card, SOON, 0.2)
        self.picture("no-jump")
        if not said:
            raise Failure(f"no card says that the terminal was not raised; {self.session.no_jump}", "",
                          "; ".join(c.name for c in self.eyes.controls() if c.name))
        see(lambda: not card(), SOON, "the card does not go by itself")
        return said
