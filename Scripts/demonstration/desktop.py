"""A user's desktop, virtual: X server, session bus, window manager, compositing manager, tray, terminals."""

import os
import re
import subprocess
import sys
from pathlib import Path

import bus
from scratch import Failure, wait_until

FONTS = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <alias><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
  <alias><family>monospace</family><prefer><family>Noto Sans Mono</family></prefer></alias>
</fontconfig>
"""

BUS_LAUNCHERS = ("/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi-bus-launcher")
DARK_TERMINAL = ("-fa", "DejaVu Sans Mono", "-fs", "10", "-bg", "#1D1F24", "-fg", "#D8DCE4", "-b", "10", "+sb")


class Desktop:
    """Started at once; its programs end with the scratch home's."""

    def __init__(self, scratch, observe):
        self._scratch = scratch
        self._observe = observe
        fonts = scratch.home / ".config/fontconfig"
        fonts.mkdir()
        (fonts / "fonts.conf").write_text(FONTS)
        self._start_bus()
        self.display = os.environ["DISPLAY"] = self._start_display()
        scratch.start("openbox", ["openbox", "--sm-disable"])
        self._must(observe("wallpaper"), "the virtual display does not answer", "see the message above")
        scratch.start("picom", ["picom", "--config", os.devnull, "--backend", "xrender"])
        manager = observe("wait-for-desktop", "--compositor", "--timeout", "20")
        self._must(manager, "the window manager and its compositor did not start",
                   "run openbox and picom by hand on an Xvfb to see why")
        self.window_manager = manager.stdout.strip()
        scratch.start("trayer", ["trayer", "--edge", "top", "--align", "right", "--widthtype", "percent", "--width",
                                 "100", "--height", "28", "--SetDockType", "true", "--SetPartialStrut", "true",
                                 "--transparent", "true", "--alpha", "0", "--tint", "0xEFEFF2", "--padding", "8"])
        self._start_accessibility_bus()
        self._portal = scratch.start("portal", [sys.executable, "-B", Path(__file__).parent / "portal.py"],
                                     stdin=subprocess.PIPE)
        self._must_come(lambda: "ready" in scratch.printed("portal"), "portal", "the settings portal did not start")

    def set_color_scheme(self, scheme):
        """"dark" or "light", for all programs of the desktop."""
        self._portal.stdin.write(f"{scheme}\n".encode())
        self._portal.stdin.flush()

    def open_terminal(self, name, command, place, folder):
        """Opens a terminal with this title, and waits for its window. `place` is a geometry in characters."""
        before = self._terminals()
        self._scratch.start(f"terminal-{name}", ["xterm", "-T", name, *DARK_TERMINAL, "-geometry", place, "-e", *command],
                            cwd=folder)
        new = wait_until(lambda: self._terminals() - before, 20)
        if not new:
            raise Failure("no terminal window appeared", "run xterm by hand on an Xvfb to see why",
                          self._scratch.printed(f"terminal-{name}"))
        return new.pop()

    def _terminals(self):
        found = self._scratch.run("xdotool", "search", "--onlyvisible", "--class", "^XTerm$").stdout
        return {int(line) for line in found.split() if line.isdigit()}

    def _start_bus(self):
        socket = self._scratch.runtime / "bus"
        self._scratch.start("dbus", bus.command(self._scratch.folder / "bus.conf", "session", socket))
        self._must_come(socket.exists, "dbus", "the message bus did not start")

    def _start_display(self):
        # Once it is ready, the X server writes the display number that it chose.
        number = self._scratch.folder / "display"
        with open(number, "wb") as file:
            server = self._scratch.start("xvfb", ["Xvfb", "-displayfd", file.fileno(), "-screen", "0", "1280x800x24",
                                                  "-nolisten", "tcp", "-noreset"], pass_fds=[file.fileno()])
        wait_until(lambda: number.read_text().endswith("\n") or server.poll() is not None, 20)
        if not number.read_text().strip():
            raise Failure("the virtual X server did not start",
                          "see its message; /tmp/.X11-unix must be writable, and the package xvfb whole",
                          self._scratch.printed("xvfb"))
        return f":{number.read_text().strip()}"

    def _start_accessibility_bus(self):
        launcher = next((path for path in BUS_LAUNCHERS if Path(path).exists()), None)
        if launcher is None:
            raise Failure("the accessibility bus is not installed", "install the package at-spi2-core")
        self._scratch.start("accessibility", [launcher, "--launch-immediately"])

        def address():
            told = self._scratch.run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
                                     "/org/a11y/bus", "--method", "org.a11y.Bus.GetAddress").stdout
            found = re.search(r"'(unix:[^']*)'", told)
            return found.group(1) if found else None

        self.accessibility_bus = self._must_come(address, "accessibility", "the accessibility bus did not start")

    def _must_come(self, condition, log, what):
        answer = wait_until(condition, 20)
        if not answer:
            raise Failure(what, "see its message above", self._scratch.printed(log))
        return answer

    def _must(self, result, what, advice):
        if result.returncode != 0:
            raise Failure(what, advice, result.stdout)
