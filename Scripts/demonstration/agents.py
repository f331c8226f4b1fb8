"""The agents of the scratch home: the files that they already have there, and fakes of the agents themselves,
which run in real terminals and call the hook as the real ones do, with payloads recorded from real ones."""

import json
import os
import re
import shlex
from pathlib import Path

from scratch import Failure, wait_until

PAYLOADS = Path(__file__).resolve().parents[2] / "Tests/Data/agent-payloads"

CLAUDE_SETTINGS = r"""{
  "cleanupPeriodDays": 30,
  "hooks": {
    "PostToolUse": [
      {
        "hooks": [
          {
            "command": "npx prettier --write \"$FILE\" || true",
            "timeout": 12.50,
            "type": "command"
          }
        ],
        "matcher": "Edit|Write"
      }
    ],
    "Stop": [
      {
        "hooks": [
          {
            "command": "~/bin/log-turn",
            "type": "command"
          }
        ]
      }
    ]
  },
  "model": "opus",
  "permissions": {
    "allow": [
      "Bash(git status:*)"
    ],
    "deny": []
  },
  "someTool": {
    "budget": 184467440737095516160,
    "ratio": 0.100000000000000000000000000001
  }
}
"""

CODEX_CONFIGURATION = """model = "gpt-5-codex"
approval_policy = "on-request"   # ask me first

[projects."/home/you/project"]
trust_level = "trusted"
"""

# Waits for jobs and handles them one by one: shows a text, then runs a command as its own child. The application
# identifies an agent by the process's name and folder.
STAND_IN = r"""#!/bin/sh
exec 3<>"$1"
while read -r job <&3; do
    cat "$job.text"
    /bin/sh "$job" >"$job.output" 2>&1 </dev/null
    echo $? >"$job.tmp" && mv "$job.tmp" "$job.status"
done
"""

BOLD, DIM, ACCENT, GREEN, PLAIN = "\033[1m", "\033[2m", "\033[38;5;215m", "\033[38;5;114m", "\033[0m"


class AgentFile:
    """An agent's configuration file."""

    def __init__(self, path, content, mode):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content)
        path.chmod(mode)
        self.path = path
        self.original = path.read_bytes()
        self._mode = mode

    def backups(self):
        return sorted(self.path.parent.glob(f"{self.path.name}.corvane-backup-*"))

    def difference(self, scratch):
        """The difference from the original file."""
        before = scratch.folder / "before"
        before.write_bytes(self.original)
        shown = f"~/{self.path.relative_to(scratch.home)}"
        return scratch.run("diff", "-U1", "--label", f"{shown} before", "--label", f"{shown} now", before, self.path).stdout

    def check_only_additions(self, difference):
        removed = [line for line in difference.splitlines()[2:] if line.startswith("-")]
        # A comma after the previously last element belongs to the new one.
        added = {line[1:].rstrip(",") for line in difference.splitlines()[2:] if line.startswith("+")}
        lost = [line for line in removed if line[1:].rstrip(",") not in added]
        if lost:
            raise Failure(f"something was removed from {self.path.name}", "look at the difference above", "\n".join(lost))
        if self.path.stat().st_mode & 0o777 != self._mode:
            raise Failure(f"the permissions of {self.path.name} have changed", "it had {self._mode:o} before")
        if not any(backup.read_bytes() == self.original for backup in self.backups()):
            raise Failure(f"there is no backup of {self.path.name} beside it", "see AgentConnector")

    def is_original(self):
        return self.path.read_bytes() == self.original


def claude_file(home):
    return AgentFile(home / ".claude/settings.json", CLAUDE_SETTINGS, 0o644)


def codex_file(home):
    return AgentFile(home / ".codex/config.toml", CODEX_CONFIGURATION, 0o600)


def claude_commands(file):
    """Claude Code's event -> the command that calls our hook, exactly as its settings have it."""
    hooks = json.loads(file.path.read_text())["hooks"]
    return {event: entry["command"] for event, groups in hooks.items() for group in groups
            for entry in group["hooks"] if "corvane-hook" in entry["command"]}


def codex_command(file):
    """The words of Codex's notify line; its array of strings reads like JSON."""
    line = re.search(r"^notify\s*=\s*(\[.*\])$", file.path.read_text(), re.M)
    if not line:
        raise Failure("the configuration of Codex has no notify line", "look at the difference above")
    return json.loads(line.group(1))


class Agent:
    """A fake named `program` in the project's folder. `command` makes the shell command that passes on a
    payload, from the payload's name and file."""

    def __init__(self, scratch, program, project, session, command):
        self._scratch = scratch
        self._command = command
        self._count = 0
        self.program = program
        self.project = project
        self.session = session
        self.folder = scratch.home / project
        self.folder.mkdir()
        self._jobs = scratch.folder / f"jobs-{session}"
        self._jobs.mkdir()
        self._pipe = self._jobs / "pipe"
        os.mkfifo(self._pipe)
        self._script = scratch.home / ".local/bin" / program
        self._script.write_text(STAND_IN)
        self._script.chmod(0o755)

    @property
    def terminal_command(self):
        return [self._script, self._pipe]

    def send(self, payload, text=""):
        """Makes the agent show a text in its terminal and pass on a recorded payload, changed to this session and
        folder. Returns when the hook has ended, which must have succeeded silently."""
        self._count += 1
        job = self._jobs / f"{self._count}-{payload}"
        content = (PAYLOADS / f"{payload}.json").read_text()
        content = re.sub(r'"session_id":"[^"]*"', f'"session_id":"{self.session}"', content)
        file = self._jobs / f"{job.name}.json"
        file.write_text(content.replace("/home/you/project", str(self.folder)))
        job.write_text(self._command(payload, file))
        Path(f"{job}.text").write_text(text)
        # Opened for both directions, so that it does not wait for a reader.
        pipe = os.open(self._pipe, os.O_RDWR)
        try:
            os.write(pipe, f"{job}\n".encode())
            status = Path(f"{job}.status")
            if not wait_until(status.exists, 10):
                raise Failure(f"{self.program} in {self.project} did not run its hook",
                              "see whether its terminal is still there")
        finally:
            os.close(pipe)
        output = Path(f"{job}.output").read_text()
        if status.read_text().strip() != "0" or output:
            raise Failure(f"the hook ended with status {status.read_text().strip()} or printed something",
                          f"an agent shows that to its user; run it by hand: {job.read_text()}", output)


def claude(scratch, file, project, session):
    def command(payload, data):
        event = json.loads(data.read_text())["hook_event_name"]
        commands = claude_commands(file)
        if event not in commands:
            raise Failure(f"the settings of Claude Code have no hook for {event}", "look at the difference above")
        return f"/bin/sh -c {shlex.quote(commands[event])} <{shlex.quote(str(data))}\n"

    return Agent(scratch, "claude", project, session, command)


def codex(scratch, file, project, session):
    def command(payload, data):
        words = " ".join(shlex.quote(word) for word in codex_command(file))
        return f"{words} \"$(cat {shlex.quote(str(data))})\"\n"

    return Agent(scratch, "codex", project, session, command)


def user_says(text):
    return f"\n{DIM}>{PLAIN} {BOLD}{text}{PLAIN}\n"


def agent_says(*lines):
    return "\n" + "".join(f"{GREEN}*{PLAIN} {line}\n" for line in lines)


def agent_asks(command):
    rule = DIM + "-" * 72 + PLAIN
    return (f"\n{rule}\n{BOLD}Bash command{PLAIN}\n\n    {ACCENT}{command}{PLAIN}\n\nDo you want to proceed?\n"
            f"{ACCENT}> 1. Yes{PLAIN}\n  2. Yes, and don't ask again for this project\n  3. No\n")


# What the user is working on meanwhile.
KEYWORD, TEXT = "\033[38;5;110m", "\033[38;5;150m"
SOURCE = """
import { RateLimiter } from "./rate-limiter";

// Carriers send the same update more than once, and not always in order.
export class Shipments {
  private readonly seen = new Map<string, Update>();

  constructor(private readonly limiter: RateLimiter) {}

  async track(parcel: Parcel): Promise<Update[]> {
    const updates = await this.limiter.run(() => fetchUpdates(parcel));
    return updates
      .filter((update) => !this.seen.has(update.id))
      .sort((a, b) => a.happenedAt - b.happenedAt);
  }

  async notify(customer: Customer, update: Update): Promise<void> {
    if (this.seen.has(update.id)) {
      return;
    }
    this.seen.set(update.id, update);
    const words = describe(update, customer.language);
    await customer.send("Your parcel is on its way", words);
  }

  get pending(): number {
    return this.seen.size;
  }
}
"""


def source_text():
    """The source with its lines numbered and coloured, as an editor shows it."""
    lines = []
    for number, line in enumerate(SOURCE.strip("\n").splitlines(), 1):
        if line.lstrip().startswith("//"):
            line = f"{DIM}{line}{PLAIN}"
        else:
            line = re.sub(r'"[^"]*"', lambda text: f"{TEXT}{text.group()}{PLAIN}", line)
            line = re.sub(r"\b(import|from|export|class|private|readonly|new|constructor|async|await|return|const|if|get)\b",
                          lambda word: f"{KEYWORD}{word.group()}{PLAIN}", line)
        lines.append(f" {DIM}{number:3}{PLAIN}  {line}")
    return "\n".join(lines)
