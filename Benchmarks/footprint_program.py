"""What Benchmarks/footprint and Benchmarks/soak share: what a process uses, and Corvane as a program that they start,
send events to and operate."""

import json
import os
import re
import shutil
import statistics
import subprocess
import time
from pathlib import Path

from footprint_desktop import Failure, wait_until

BANNER = (300, 50)  # the least size of a banner, in pixels
EVENTS = ("Notification", "PostToolUse", "SessionEnd", "Stop", "UserPromptSubmit")


# What a process uses


def tasks(process):
    return list(Path(f"/proc/{process}/task").iterdir())


def mapped(process):
    """The sums over all that the process has mapped, in KiB, by their names in smaps_rollup."""
    numbers = {}
    for line in Path(f"/proc/{process}/smaps_rollup").read_text(encoding="utf-8").splitlines()[1:]:
        name, value = line.split(":")
        numbers[name] = int(value.split()[0])
    return numbers


def memory(process):
    """Proportional and private memory, in KiB."""
    numbers = mapped(process)
    return numbers["Pss"], numbers["Private_Clean"] + numbers["Private_Dirty"]


def switches_by_thread(process):
    """Voluntary context switches of each thread that runs, by its number."""
    counts = {}
    for task in tasks(process):
        try:
            status = (task / "status").read_text(encoding="utf-8")
        except (FileNotFoundError, ProcessLookupError):
            continue  # it has just ended
        counts[task.name] = int(re.search(r"^voluntary_ctxt_switches:\s*(\d+)", status, re.MULTILINE).group(1))
    return counts


def switches(process):
    """Voluntary context switches of all threads, and of the main thread alone."""
    counts = switches_by_thread(process)
    return sum(counts.values()), counts[str(process)]


def descriptors(process):
    return len(os.listdir(f"/proc/{process}/fd"))


def processor_seconds(process):
    """Of the threads that run, to the nanosecond."""
    return sum(int((task / "schedstat").read_text(encoding="utf-8").split()[0]) for task in tasks(process)) / 1e9


def first_time(condition, process, seconds=30):
    """Milliseconds until the condition is true."""
    begin = time.monotonic()
    while time.monotonic() - begin < seconds:
        if condition():
            return (time.monotonic() - begin) * 1000
        if process.poll() is not None:
            raise Failure("the program has ended")
        time.sleep(0.001)
    raise Failure("the program did not come up")


def processor_seconds_of_all(process):
    """Of all threads, also those that have ended, in steps of a hundredth of a second."""
    fields = Path(f"/proc/{process}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


# Corvane


class Corvane:
    def __init__(self, desktop, build):
        self.desktop = desktop
        self.program = str(build / "bin/corvane")
        self.support = desktop.home / "Library/Application Support/Corvane"
        self.inbox = self.support / "events"
        self.count = 0

    def prepare(self, is_first_run=False):
        """The settings of a user who has been through the first run and has connected Claude Code."""
        desktop = self.desktop
        for folder in (".config", ".claude", "Library"):
            shutil.rmtree(desktop.home / folder, ignore_errors=True)
        if is_first_run:
            return
        (desktop.home / ".config/Corvane").mkdir(parents=True)
        (desktop.home / ".config/Corvane/Corvane.conf").write_text("[General]\nhasCompletedOnboarding=true\n",
                                                                   encoding="utf-8")
        (desktop.home / ".claude").mkdir()
        command = f'"{self.support}/bin/corvane-hook" claude'
        hooks = {event: [{"hooks": [{"type": "command", "command": command}]}] for event in EVENTS}
        (desktop.home / ".claude/settings.json").write_text(json.dumps({"hooks": hooks}), encoding="utf-8")
        self.inbox.mkdir(parents=True)

    def start(self, errors=subprocess.DEVNULL):
        process = self.desktop.run(self.program, errors=errors)
        first_time(self.desktop.screen.tray_icon, process)
        return process

    def event(self, session, **payload):
        """Drops an event into the inbox as the hook does: written beside, then renamed."""
        self.count += 1
        text = json.dumps({"session_id": session, "cwd": f"/home/you/project-{session}", **payload})
        (self.inbox / ".event.tmp").write_text(f"corvane-event 1\nsource=claude\nterm=xterm\nbundle=\n---\n{text}",
                                               encoding="utf-8")
        (self.inbox / ".event.tmp").rename(self.inbox / f"{int(time.time())}-{self.count:06}.event")

    def alert(self, session):
        self.event(session, hook_event_name="Notification", message="Claude needs your permission to use Bash",
                   notification_type="permission_prompt")

    def answered(self, session):
        self.event(session, hook_event_name="PostToolUse", tool_name="Bash")

    def drained(self):
        if not wait_until(lambda: not list(self.inbox.glob("*.event")), 60):
            raise Failure("Corvane does not read its inbox")

    def banners(self, count):
        if not wait_until(lambda: len(self.desktop.screen.unmanaged(*BANNER)) == count, 30):
            raise Failure(f"there are not {count} banners")

    def three_banners(self, process):
        """Returns how long it takes from reading an event to its banner, in milliseconds."""
        times = []
        for count, session in enumerate(("a", "b", "c"), 1):
            self.alert(session)
            # The pass deletes the file as soon as it has read it.
            wait_until(lambda: not list(self.inbox.glob("*.event")), 10, 0.0005)
            times.append(first_time(lambda wanted=count: len(self.desktop.screen.unmanaged(*BANNER)) == wanted, process))
        return {"alert": statistics.median(times)}

    def thousand_alerts(self, _process):
        """Twenty sessions that ask and are answered."""
        for first in range(0, 1000, 50):
            sessions = [f"s{number % 20}" for number in range(first, first + 50)]
            for session in sessions:
                self.alert(session)
            for session in sorted(set(sessions)):
                self.answered(session)
            self.drained()
        self.banners(0)
        return {}

    def windows(self, _process):
        """Opens the panel by its icon, the settings by the panel's shortcut, and closes both."""
        desktop, screen = self.desktop, self.desktop.screen
        desktop.click(screen.middle(screen.tray_icon()))
        if not wait_until(screen.managed, 20):
            raise Failure("a click on the icon does not open the panel")
        time.sleep(1)
        panel = screen.managed()
        desktop.key("ctrl+comma")
        if not wait_until(lambda: [window for window in screen.managed() if window not in panel], 20):
            raise Failure("the settings do not open")
        time.sleep(1)
        for _ in range(5):
            desktop.key("ctrl+w")
            if wait_until(lambda: not screen.managed(), 2):
                return {}
            desktop.key("Escape")
        raise Failure("the windows do not close")
