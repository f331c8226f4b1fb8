"""What a user does with the application, from the first start to the end, step by step."""

import re
import time
from pathlib import Path

from agents import (agent_asks, agent_says, claude, claude_commands, claude_file, codex, codex_command, codex_file,
                    source_text, user_says)
from desktop import Desktop
from eyes import LOOK_AGAIN, Eyes
from film import Film
from scratch import Failure, wait_until

ROOT = Path(__file__).resolve().parents[2]

MAIN, PANEL, SETTINGS = "main", "panel", "settings"
CARDS = {"Claude Code": "claude", "Codex": "codex"}

USER_WORKSPACE, CLAUDE_WORKSPACE, CODEX_WORKSPACE = 0, 1, 2

# The work after which the end of a turn alerts, and how long that alert is shown, in seconds.
LEAST_WORK = 20
DONE_LIFE = (5.5, 7.5)

ONE_WAITS = "1 agent waiting for you"

# What the moving picture shows of the screen: the banners' place, and most of the terminals below it.
FILM_AREA = (190, 0, 900, 480)

# How long the moving picture shows the banner before it is answered, at least, in seconds.
READING = 1.5

# How long the window manager's pop-up shows the new workspace, in seconds.
POPUP_LIFE = 1


def area(place):
    left, top, width, height = place
    return f"{width}x{height}{left:+d}{top:+d}"


class Story:
    def __init__(self, scratch, teller, observe, build, pictures):
        self._scratch = scratch
        self._tell = teller
        self._observe = observe
        self._program = build / "bin/corvane"
        self._observer = build / "bin/corvane-observer"
        self._pictures = pictures
        self._count = 0
        self._application = None
        self.documentation = {}

    def unexpected_end(self):
        """The application's exit status if it has ended, None while it runs."""
        return self._application.poll() if self._application else None

    def tell(self):
        self._files = {"Claude Code": claude_file(self._scratch.home), "Codex": codex_file(self._scratch.home)}
        self._tell.say(f"Showing Corvane on a virtual display, in the scratch home {self._scratch.home}")
        self._desktop = Desktop(self._scratch, self._observe)
        self._eyes = Eyes(self._scratch, self._observe, self._desktop.accessibility_bus)
        self._tell.say(f"Display {self._desktop.display} with the window manager {self._desktop.window_manager}, "
                       "the compositor picom and the tray trayer.")
        self._first_run()
        self._connect()
        self._test_alert()
        self._agents_start()
        self._permission()
        self._go_to_terminal()
        self._snooze()
        self._codex_finished()
        self._panel()
        self._quiet()
        self._settings()
        self._dark()
        self._finished()
        self._second_start()
        self._remove()
        self._quit()

    # Reporting and screenshots

    def _picture(self, name, area=None):
        self._eyes.put_pointer_aside()
        self._count += 1
        file = self._pictures / f"{self._count:02}-{name}.png"
        result = self._observe("screenshot", file, *([area] if area else []))
        if result.returncode != 0:
            raise Failure("no screenshot could be taken", "see the message above", result.stdout)
        self._tell.say(f"    screenshot: {file}")
        return file

    def _save_film(self, name):
        self._count += 1
        file = self._pictures / f"{self._count:02}-{name}.png"
        frames, size = self._film.save(ROOT / file)
        self._tell.say(f"    moving picture of {frames} frames, {size // 1000} kB: {file}")
        self.documentation[f"{name}.png"] = file

    def _window_picture(self, name, role):
        """A picture of one window, with its frame."""
        return self._picture(name, area(self._eyes.frame(self._window(role))))

    def _panel_picture(self, name):
        """The panel, with the tray icon above it."""
        left, _, width, height = self._eyes.geometry(self._window(PANEL))
        return self._picture(name, area((left - 8, 0, width + 64, height + 48)))

    def _window_tone(self):
        """How light the settings window is, 0 to 255."""
        left, top, width, height = self._eyes.geometry(self._window(SETTINGS))
        return float(self._observe("tone", area((left, top, width, height))).stdout)

    def _window(self, role, seconds=5):
        window = wait_until(lambda: self._eyes.window(role), seconds)
        if not window:
            raise Failure(f"the {role} window did not appear within {seconds} s", LOOK_AGAIN)
        return window

    def _see_window_gone(self, role):
        if not wait_until(lambda: not self._eyes.window(role), 5):
            raise Failure(f"the {role} window is still there after 5 s", LOOK_AGAIN)

    def _banners(self, waiting, done, seconds=5):
        took, lines = self._eyes.see_banners(waiting, done, seconds)
        for line in lines:
            self._tell.show(line)
        return took

    # The steps

    def _first_run(self):
        self._tell.step("Corvane is started for the first time")
        self._application = self._scratch.start("corvane", [self._program])
        window = self._window(MAIN, 10)
        self._eyes.see("label", "Corvane taps you when your agent needs you.")
        for agent in CARDS:
            self._eyes.see("push button", "Connect", description=agent)
        if not wait_until(lambda: self._eyes.active_window() == window, 3):
            raise Failure("the first window does not have the focus", LOOK_AGAIN)
        self._tell.seen("its window, with the focus, and a card to connect each agent")
        icon, title = self._eyes.tray_icon()
        self._eyes.see_ink(area(icon), "the tray icon")
        self._tell.seen(f"its icon in the tray, \"{title}\"")
        self._picture("first-run")

    def _connect(self):
        for agent, file in self._files.items():
            self._tell.step(f"\"Connect\" is clicked on the card of {agent}")
            self._eyes.click(self._eyes.see("push button", "Connect", description=agent))
            self._eyes.see("push button", "Remove", description=agent)
            difference = file.difference(self._scratch)
            self._tell.show(difference)
            file.check_only_additions(difference)
            self._tell.seen(f"the card says Connected; only our entry is new, {file.backups()[-1].name} is beside it")
        events = sorted(claude_commands(self._files["Claude Code"]))
        if not events or len(codex_command(self._files["Codex"])) != 2:
            raise Failure("the agents' files do not name the hook", "look at the differences above")
        self._tell.seen(f"Claude Code calls the hook on {', '.join(events)}")
        self._picture("connected")

    def _test_alert(self):
        self._tell.step("\"Try a test alert\" is clicked")
        self._eyes.click(self._eyes.see("push button", "Try a test alert"))
        took = self._banners(1, 0)
        self._eyes.see_words(1, "Claude is waiting for you", "my-project")
        self._tell.seen(f"a banner, complete after {took} s")
        self._picture("test-alert")
        self._eyes.click(self._eyes.see("push button", re.compile("Close.*|Dismiss.*")))
        self._banners(0, 0)
        self._tell.seen("clicking its cross closes it")

        self._tell.step("\"Done\" is clicked")
        self._eyes.click(self._eyes.see("push button", "Done"))
        self._see_window_gone(MAIN)
        self._eyes.see_no_banner(1)
        if self._application.poll() is not None:
            raise Failure("the application ended with its window", "closing windows must not quit it")
        self._tell.seen("the window is closed, the application keeps running in the tray")

    def _agents_start(self):
        self._tell.step("Agents run in terminals of workspaces 2 and 3; the user works on workspace 1")
        home = self._scratch.home
        settings = self._files["Claude Code"]
        self._shop = claude(self._scratch, settings, "web-shop", "session-1")
        self._payments = claude(self._scratch, settings, "payments", "session-2")
        self._codex = codex(self._scratch, self._files["Codex"], "handbook", "session-3")
        self._eyes.go_to_workspace(CLAUDE_WORKSPACE)
        self._shop_terminal = self._desktop.open_terminal("web-shop", self._shop.terminal_command, "96x30+230+80",
                                                          self._shop.folder)
        self._payments_terminal = self._desktop.open_terminal("payments", self._payments.terminal_command,
                                                              "96x30+420+240", self._payments.folder)
        self._eyes.go_to_workspace(CODEX_WORKSPACE)
        self._desktop.open_terminal("handbook", self._codex.terminal_command, "96x30+120+120", self._codex.folder)
        self._eyes.go_to_workspace(USER_WORKSPACE)
        source = home / "shipments.ts"
        source.write_text(source_text())
        self._user_terminal = self._desktop.open_terminal(
            source.name, ["sh", "-c", f"printf '\\033[?25l'; cat '{source}'; exec sleep 3600"], "104x31+220+170", home)
        self._payments.send("claude-UserPromptSubmit", user_says("Retry failed refunds with a back-off"))
        self._work_began = time.monotonic()
        self._shop.send("claude-UserPromptSubmit", user_says("Add a discount code to the checkout") +
                        agent_says("Reading src/checkout/cart.ts", "Adding applyDiscount() and its tests"))
        self._eyes.see_no_banner(2)
        self._tell.seen("no banner for prompts that are submitted, for 2 s")

    def _permission(self):
        self._tell.step("Claude Code asks for permission in web-shop")
        self._eyes.put_pointer_aside()
        self._film = Film(self._scratch, self._observer, area(FILM_AREA))
        self._shop.send("claude-Notification-permission_prompt", agent_asks("npm test -- checkout"))
        took = self._banners(1, 0)
        banner = self._eyes.see_words(1, "Claude is waiting for you", "web-shop")
        if self._eyes.focused_window() != self._user_terminal:
            raise Failure("the user's terminal has lost the focus to the banner", LOOK_AGAIN)
        self._tell.seen(f"its banner, complete after {took} s; the focus stays in the user's terminal")
        self._tell.seen(f"assistive technology reads: {banner.name}")
        wait_until(lambda: self._eyes.tray_icon()[1] == ONE_WAITS, 3)
        if self._eyes.tray_icon()[1] != ONE_WAITS:
            raise Failure("the tray icon does not show it", LOOK_AGAIN, self._eyes.tray_icon()[1])
        self._tell.seen(f"the tray icon says: {ONE_WAITS}")
        self._picture("waiting")
        # As long as somebody takes who reads it.
        time.sleep(READING)
        self._film.mark_still()

    def _go_to_terminal(self):
        self._tell.step("\"Go to Terminal\" is clicked")
        self._eyes.click(self._eyes.see("push button", "Go to Terminal"))
        if not wait_until(lambda: self._eyes.active_window() == self._shop_terminal, 3):
            raise Failure("the terminal of web-shop did not come to the front",
                          LOOK_AGAIN, f"active is {self._eyes.title(self._eyes.active_window())}")
        if (self._eyes.workspace(), self._eyes.focused_window()) != (CLAUDE_WORKSPACE, self._shop_terminal):
            raise Failure("the terminal of web-shop does not have the focus", LOOK_AGAIN)
        self._tell.seen("workspace 2, and on it that terminal, not the other one, in front and with the focus")
        self._banners(0, 0)
        self._tell.seen("the banner is gone")
        time.sleep(POPUP_LIFE)
        self._picture("terminal")
        self._save_film("banner")
        self._shop.send("claude-PostToolUse-Bash", agent_says("Ran npm test -- checkout: 42 passed"))
        self._eyes.go_to_workspace(USER_WORKSPACE)
        time.sleep(POPUP_LIFE)

    def _snooze(self):
        self._tell.step("Claude Code asks in payments too, and the user snoozes it")
        self._payments.send("claude-Notification-permission_prompt", agent_asks("psql -f migrations/0042.sql"))
        self._banners(1, 0)
        self._eyes.see_words(1, "Claude is waiting for you", "payments")
        self._tell.seen("its banner")
        self._eyes.click(self._eyes.see("push button", "Snooze"))
        took = self._banners(0, 0)
        self._tell.seen(f"after a click on \"Snooze\" it is gone, within {took} s")

    def _codex_finished(self):
        self._tell.step("Codex completes a turn in handbook")
        self._codex.send("codex-agent-turn-complete-codex-tui", agent_says("The handbook builds without warnings."))
        self._banners(0, 1)
        self._eyes.see_words(1, "Codex finished", "handbook")
        self._tell.seen("its done banner")
        self._picture("codex")

    def _panel(self):
        self._tell.step("The tray icon is clicked")
        self._open_panel()
        for project, agent, status in (("payments", "Claude", "Waiting for you.*"), ("web-shop", "Claude", "Running.*"),
                                       ("handbook", "Codex", "Done.*")):
            row = self._eyes.see("push button", re.compile(f"{project}, {agent}, {status}", re.S))
            self._tell.seen(f"a row of the panel: {row.name}")
        self.documentation["panel.png"] = self._panel_picture("panel")

    def _open_panel(self):
        (left, top, width, height), _ = self._eyes.tray_icon()
        self._eyes.click_at(left + width // 2, top + height // 2)
        self._window(PANEL)

    def _quiet(self):
        self._tell.step("\"Quiet for 1 hour\" is clicked; Claude Code waits for a reply in web-shop")
        self._eyes.click(self._eyes.see("push button", "Quiet for 1 hour"))
        self._tell.seen(self._eyes.see("label", re.compile("Quiet until .*")).name)
        self._panel_picture("quiet")
        self._banners(0, 0, DONE_LIFE[1])
        self._shop.send("claude-Notification-idle_prompt", agent_says("The discount code works. Shall I commit?"))
        row = self._eyes.see("push button", re.compile("web-shop, Claude, .*reply.*", re.S))
        # The alert would appear with the row.
        time.sleep(1)
        self._banners(0, 0, 0)
        self._tell.seen(f"its row says \"{row.name}\", but no banner appears")
        self._eyes.click(self._eyes.see("push button", "Resume"))
        self._eyes.see_gone("push button", "Resume")
        self._tell.seen("clicking \"Resume\" ends quiet time")
        self._eyes.press("Escape")
        self._see_window_gone(PANEL)
        self._tell.seen("Escape closes the panel")

    def _settings(self):
        self._tell.step("\"Settings…\" is clicked in the panel")
        self._open_panel()
        self._eyes.click(self._eyes.see("push button", "Settings…"))
        self._window(SETTINGS)
        self._see_window_gone(PANEL)
        self._eyes.see("push button", "Remove", description="Codex")
        self._tell.seen("the settings window, and the panel is closed")
        self._window_picture("settings-agents", SETTINGS)
        for tab, role, words in (("Alerts", "check box", "Alert when an agent finishes"), ("About", "push button", "Website")):
            self._eyes.click(self._eyes.see("page tab", tab))
            self._eyes.see(role, words)
            self._tell.seen(f"the tab {tab}")
            self._window_picture(f"settings-{tab.lower()}", SETTINGS)

    def _dark(self):
        self._tell.step("The desktop switches to dark")
        before = self._window_tone()
        self._desktop.set_color_scheme("dark")
        if not wait_until(lambda: self._window_tone() < before / 2, 5):
            raise Failure("the settings window has not become dark", "check whether the portal is queried")
        self._eyes.click(self._eyes.see("page tab", "Alerts"))
        self._eyes.see("check box", "Alert when an agent finishes")
        self._tell.seen("the open window follows at once")
        self._window_picture("settings-dark", SETTINGS)
        self._open_panel()
        self._eyes.see("push button", "Settings…")
        self._panel_picture("panel-dark")
        self._eyes.press("Escape")
        self._see_window_gone(PANEL)
        self._desktop.set_color_scheme("light")
        if not wait_until(lambda: self._window_tone() >= before, 5):
            raise Failure("the settings window has not become light again", "check whether the portal is queried")
        self._eyes.press("ctrl+w")
        self._see_window_gone(SETTINGS)
        self._tell.seen("light again; Ctrl+W closes the window")

    def _finished(self):
        self._tell.step("Claude Code waits in web-shop, and ends its turn in payments after more than 20 s of work")
        self._payments.send("claude-PostToolUse-Bash", agent_says("Ran psql: 3 tables changed"))
        self._shop.send("claude-Notification-permission_prompt", agent_asks("git push origin discount-code"))
        self._banners(1, 0)
        time.sleep(max(0, LEAST_WORK + 1 - (time.monotonic() - self._work_began)))
        worked = time.monotonic() - self._work_began
        self._payments.send("claude-Stop", agent_says("Refunds are retried up to five times now."))
        took = self._banners(1, 1)
        came = time.monotonic()
        self._eyes.see_words(1, "Claude finished", "payments")
        self._eyes.see_words(2, "Claude is waiting for you", "web-shop")
        self._tell.seen(f"after {worked:.0f} s of work its done banner, on top of the waiting one, after {took} s")
        self.documentation["screenshot.png"] = self._picture("done")
        self._banners(1, 0, DONE_LIFE[1])
        stood = time.monotonic() - came
        if stood < DONE_LIFE[0]:
            raise Failure(f"the done banner disappeared after {stood:.1f} s instead of about six", LOOK_AGAIN)
        self._tell.seen(f"it disappeared by itself after {stood:.1f} s")
        self._shop.send("claude-SessionEnd-prompt_input_exit", "")
        self._banners(0, 0)
        self._tell.seen("the waiting banner disappeared too when its session ended")

    def _second_start(self):
        self._tell.step("Corvane is started again, from workspace 3")
        self._eyes.go_to_workspace(CODEX_WORKSPACE)
        second = self._scratch.start("second", [self._program])
        window = self._window(MAIN)
        if not wait_until(lambda: second.poll() is not None, 5) or second.returncode != 0:
            raise Failure("the second start did not end with status 0", "see its message above",
                          self._scratch.printed("second"))
        if not wait_until(lambda: self._eyes.active_window() == window, 3):
            raise Failure("the main window of the first start has not come to the front", LOOK_AGAIN)
        self._tell.seen("the second start ended with status 0; the first one's main window came to the front")
        time.sleep(POPUP_LIFE)
        self._picture("second-start")

    def _remove(self):
        self._tell.step("Both agents are removed, in the settings")
        self._eyes.press("ctrl+comma")
        window = self._window(SETTINGS)
        if not wait_until(lambda: self._eyes.active_window() == window, 3):
            raise Failure("Ctrl+, did not bring the settings to the front", LOOK_AGAIN)
        self._eyes.click(self._eyes.see("page tab", "Agents"))
        for agent, file in self._files.items():
            self._eyes.click(self._eyes.see("push button", "Remove", description=agent, window="Corvane Settings"))
            self._eyes.see("push button", "Connect", description=agent, window="Corvane Settings")
            if not file.is_original():
                raise Failure(f"{file.path.name} differs from the original", "see the difference above",
                              file.difference(self._scratch))
            self._tell.seen(f"{agent} can be connected again; its file is byte for byte the original")

    def _quit(self):
        self._tell.step("\"Quit\" is chosen from the menu of the main window")
        self._eyes.press("ctrl+0")
        self._window(MAIN)
        self._eyes.click(self._eyes.see("menu item", "File", window="Corvane"))
        quit_command = self._eyes.see("menu item", "Quit")
        self._picture("menu")
        self._eyes.click(quit_command)
        if not wait_until(lambda: self._application.poll() is not None, 5):
            raise Failure("it is still running after 5 s", LOOK_AGAIN)
        if self._application.returncode != 0:
            raise Failure(f"it ended with status {self._application.returncode}", "see its message above")
        if self._scratch.printed("corvane"):
            raise Failure("it printed something", "see its message above")
        self._tell.seen("it ended with status 0 and had printed nothing")

    def end(self):
        self._tell.step("Everything that was started is ended")
        killed = self._scratch.clean()
        if killed:
            raise Failure(f"the processes {killed} had to be killed", "find out what started them")
        if self._scratch.folder.exists():
            raise Failure(f"the scratch home {self._scratch.folder} could not be removed", "remove it by hand")
        self._tell.seen("no process is left; the scratch home is removed")
