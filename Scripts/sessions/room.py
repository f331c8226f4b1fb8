"""What every session needs around it: a scratch home, a system bus with fakes of logind and UPower, a session bus, and
for sessions on X11 an X server."""

import os
import re
import subprocess
import sys
from pathlib import Path

import bus
from scratch import Failure, wait_until

# The screen of every session, in pixels.
WIDTH, HEIGHT = 1280, 800

# Where the application is installed.
PREFIX = Path(os.environ.get("CORVANE_PREFIX", "/usr"))

SYSTEM_FAKES = {"logind": "org.freedesktop.login1", "upower": "org.freedesktop.UPower"}


def see(condition, seconds, what, log=""):
    """Waits for a condition, and returns its result."""
    answer = wait_until(condition, seconds, 0.2)
    if not answer:
        raise Failure(f"{what} within {seconds} s", "see the logs", log)
    return answer


class Room:
    def __init__(self, scratch, environment):
        self.scratch = scratch
        scratch.furnish()
        os.environ.update({
            "PATH": f"{scratch.home}/.local/bin:{PREFIX}/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin",
            "SHELL": "/bin/bash",
            "USER": "you",
            "LOGNAME": "you",
            "LC_ALL": "C.UTF-8",
            "XDG_DATA_DIRS": f"{PREFIX}/share:/usr/local/share:/usr/share",
            "XDG_CONFIG_DIRS": "/etc/xdg",
            "XDG_SEAT": "seat0",
            "XDG_SESSION_ID": "1",
            "NO_AT_BRIDGE": "0",
            **environment,
        })
        self._start_system_bus()

    def _start_system_bus(self):
        socket = self.scratch.folder / "system-bus"
        self.scratch.start("system-bus", bus.command(self.scratch.folder / "system-bus.conf", "system", socket))
        see(socket.exists, 20, "the system bus did not start", self.scratch.printed("system-bus"))
        os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={socket}"
        for template, name in SYSTEM_FAKES.items():
            self.scratch.start(f"fake-{template}", [sys.executable, "-m", "dbusmock", "--system", "--template", template])
            see(lambda name=name: self.owns("--system", name), 30, f"the fake of {name} did not start",
                self.scratch.printed(f"fake-{template}"))

    def owns(self, which, name):
        told = self.scratch.run("gdbus", "call", which, "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus",
                                "--method", "org.freedesktop.DBus.NameHasOwner", name).stdout
        return "true" in told

    def start_session_bus(self):
        socket = self.scratch.runtime / "bus"
        self.scratch.start("session-bus", ["dbus-daemon", "--session", "--nofork", f"--address=unix:path={socket}"])
        see(socket.exists, 20, "the session bus did not start", self.scratch.printed("session-bus"))

    def start_display(self, width, height):
        number = self.scratch.folder / "display"
        with open(number, "wb") as file:
            server = self.scratch.start("xvfb", ["Xvfb", "-displayfd", file.fileno(), "-screen", "0", f"{width}x{height}x24",
                                                 "-nolisten", "tcp", "-noreset", "+extension", "GLX"],
                                        pass_fds=[file.fileno()])
        see(lambda: number.read_text().endswith("\n") or server.poll() is not None, 20, "no X server started")
        if not number.read_text().strip():
            raise Failure("the virtual X server did not start", "see its message", self.scratch.printed("xvfb"))
        os.environ["DISPLAY"] = f":{number.read_text().strip()}"
        return server

    def publish_environment(self):
        """Gives services that the session bus starts the variables of this process."""
        self.scratch.run("dbus-update-activation-environment", "--all")

    def accessibility_bus(self):
        """Its address; from then on applications offer their controls."""
        def address():
            told = self.scratch.run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
                                    "--method", "org.a11y.Bus.GetAddress").stdout
            found = re.search(r"'(unix:[^']*)'", told)
            return found.group(1) if found else None

        found = see(address, 40, "the accessibility bus did not start")
        self.scratch.run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus", "--method",
                         "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>")
        return found

    def write(self, path, text):
        """A file of the scratch home."""
        file = self.scratch.home / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
        return file

    def processes(self, name):
        """The IDs of the processes of this name that have not ended."""
        found = []
        for folder in Path("/proc").iterdir():
            if not folder.name.isdigit():
                continue
            try:
                stat = (folder / "stat").read_text()
            except OSError:
                continue
            if stat[stat.index("(") + 1:stat.rindex(")")] == name[:15] and stat[stat.rindex(")") + 2] not in "ZX":
                found.append(int(folder.name))
        return found

    def environment_of(self, name, variable):
        """A variable of the first process of this name; None where there is none."""
        for process in self.processes(name):
            try:
                words = Path(f"/proc/{process}/environ").read_bytes().decode(errors="replace").split("\0")
            except OSError:
                continue
            for word in words:
                if word.startswith(f"{variable}="):
                    return word.split("=", 1)[1]
        return None


def detached(command, **options):
    """Starts a program whose output nobody reads and that nobody waits for."""
    return subprocess.Popen([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL, start_new_session=True, **options)
