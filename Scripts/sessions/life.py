"""From the start of the session to its end: first run, looks, login and both ends."""

import os
import signal
import time

from agents import claude_file
from examination import LATER, SOON, Examination, NotApplicable
from perception import Perception
from pictures import tone
from room import HEIGHT, PREFIX, WIDTH, detached, see
from scratch import Failure, wait_until

# Seconds.
END_LIMIT = 0.3


class LifeChecks(Examination):
    def _start_session(self):
        self._process = self.session.start()
        self.eyes = None
        see(lambda: self.session.is_ready() or self._process.poll() is not None, 120, "its bar did not appear",
            self.scratch.printed("session")[-600:])
        if self._process.poll() is not None:
            raise Failure("it ended at once", "", self.scratch.printed("session")[-600:])
        if self.session.bar[0]:
            wait_until(lambda: self.work_area() != (0, 0, WIDTH, HEIGHT), LATER, 0.5)
        self.hands = self.session.hands()
        self.eyes = Perception(self.scratch, self.room.accessibility_bus())
        self.hands.move(WIDTH // 2, HEIGHT - 120)
        self._bare = self.steady(60, looks=5)
        self.picture("desktop")
        return f"work area {self.work_area()}"

    def _start_application(self):
        self._application = self.scratch.start("corvane", [PREFIX / "bin/corvane"])

    def _first_run(self):
        self._agent_file = claude_file(self.scratch.home)
        self._start_application()
        see(lambda: self.window("main"), LATER, "the first window did not appear", self.scratch.printed("corvane"))
        self.find("push button", "Connect", LATER, description="Claude Code")
        self.steady(10)
        self.picture("first-run")
        for _ in range(3):
            # Its place anew: the desktop's fonts and the window's place may come late.
            connect = self.eyes.find("push button", "Connect", description="Claude Code")
            if connect:
                self.click(connect)
            if wait_until(lambda: self.eyes.find("push button", "Remove", description="Claude Code"), SOON, 0.3):
                break
        self.find("push button", "Remove", 2, description="Claude Code")
        self.click(self.find("push button", "Done"))
        see(lambda: not self.window("main"), SOON, "the window did not close")
        self.hands.move(WIDTH // 2, HEIGHT - 120)

    def _show_main(self):
        detached([PREFIX / "bin/corvane"])
        see(lambda: self.window("main"), LATER, "a second start did not open the window")
        self.hands.move(WIDTH // 2, HEIGHT - 60)
        self.steady(6)

    def _hide_main(self):
        done = self.eyes.find("push button", "Done")
        if done:
            self.click(done)
            wait_until(lambda: not self.window("main"), 3, 0.2)

    def _dark(self):
        self._show_main()
        area = self.place("main")

        def now():
            return tone(self.hands.screenshot(), area)

        light = now()
        if light < 150:
            raise Failure(f"the window is not light at first: {light:.0f}", "")
        reason = self.session.set_dark(True)
        if reason:
            raise NotApplicable(reason)
        try:
            wait_until(lambda: now() < 100, 10, 0.5)
            dark = now()
            self._looks["dark"] = self.steady(4, looks=2)
            self.picture("dark")
            if dark >= 100:
                raise Failure(f"the window stays light: {light:.0f}, then {dark:.0f}", "")
        finally:
            self.session.set_dark(False)
        if not wait_until(lambda: now() > 150, 10, 0.5):
            raise Failure(f"the window stays dark: {now():.0f}", "")
        self._looks["light again"] = self.steady(4, looks=2)
        self._hide_main()
        return f"mean tone {light:.0f}, then {dark:.0f}"

    def _login(self):
        if not self._icon:
            raise NotApplicable("the switch is reached through the panel")
        entry = self.scratch.home / ".config/autostart/corvane.desktop"
        self._hide_main()
        self._click_icon()
        see(lambda: self.window("panel"), SOON, "a click on the icon opens no panel")
        self.steady(4)
        self.click(self.find("push button", "Settings…"))
        see(lambda: self.window("settings"), SOON, "the settings did not open")
        self.steady(4)
        self.click(self.find("page tab", "Alerts"))
        switch = self.find("check box", "Open Corvane at login")
        self.steady(4)
        self.click(switch)
        see(entry.exists, SOON, "the switch writes no autostart entry")
        self.picture("settings")
        return ""

    def _sigterm(self):
        took = []
        for _ in range(3):
            process = self.room.processes("corvane")[0]
            start = time.monotonic()
            os.kill(process, signal.SIGTERM)
            while process in self.room.processes("corvane") and time.monotonic() < start + 10:
                time.sleep(0.005)
            took.append(time.monotonic() - start)
            self._start_application()
            see(lambda: self.room.processes("corvane"), SOON, "it did not start again")
            time.sleep(4)
        told = ", ".join(f"{seconds * 1000:.0f}" for seconds in took)
        if sorted(took)[1] > END_LIMIT:
            raise Failure(f"it took {told} ms", "")
        return f"{told} ms"

    def _no_autostart(self):
        raise NotApplicable(self.session.no_autostart)

    def _end_session(self):
        """Returns the seconds from the session's end to the application's; negative if that was earlier."""
        ended = {}
        self.session.end()
        limit = time.monotonic() + LATER
        while len(ended) < 2 and time.monotonic() < limit:
            if "session" not in ended and self._process.poll() is not None:
                ended["session"] = time.monotonic()
                display = getattr(self.session, "display", None)
                if display:
                    display.terminate()
            if "application" not in ended and not self.room.processes("corvane"):
                ended["application"] = time.monotonic()
            time.sleep(0.005)
        if "session" not in ended:
            raise Failure(f"the session did not end within {LATER} s", "")
        if "application" not in ended:
            raise Failure("the application was still running at the end", "")
        return ended["application"] - ended["session"]

    def _end(self):
        if not self.room.processes("corvane"):
            raise Failure("the application was not running", "")
        after = self._end_session()
        if after > END_LIMIT:
            raise Failure(f"it ended {after * 1000:.0f} ms after the session", "")
        return f"{abs(after) * 1000:.0f} ms {'after' if after > 0 else 'before'} the session's last process"

    def _autostart(self):
        self._start_session()
        see(lambda: self.room.processes("corvane"), LATER, "the session did not start it")
        time.sleep(3)
        self.picture("autostart")
        if self.window("main"):
            raise Failure("the start at login opened a window", "")
        self._click_icon()
        see(lambda: self.window("panel"), SOON, "its icon does not open the panel")
        self._close_panel()
        return "its icon opens the panel"
