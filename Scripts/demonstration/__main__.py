"""Drives the application on a virtual display as a user would, and checks that everything is visible there.

    python3 -B Scripts/demonstration BUILD_FOLDER [--update-pictures]

Everything happens in a scratch home, on its own X server and session bus; all of it is removed at the end, even
after a signal. Observations come from the X server and from the accessibility bus; input goes through pointer
and keyboard. Screenshots go to build/demonstration. Exits with status 0 only if every step was seen.
"""

import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from scratch import Failure, Interrupted, Scratch  # noqa: E402
from story import Story  # noqa: E402

ROOT = Path(__file__).resolve().parents[2]
PICTURES = Path("build/demonstration")


class Teller:
    """Prints what happens."""

    def __init__(self):
        self._steps = 0

    def say(self, text):
        print(text, flush=True)

    def step(self, text):
        self._steps += 1
        self.say(f"{self._steps:2}. {text}")

    def seen(self, text):
        self.say(f"    seen: {text}")

    def show(self, text):
        for line in text.splitlines():
            self.say(f"          {line}")


def indented(text):
    return "".join(f"    {line}\n" for line in text.splitlines())


def explain(failure, scratch, observe, ended):
    print(f"The demonstration failed: {failure}", file=sys.stderr)
    if failure.observed:
        print(f"What was observed:\n{indented(failure.observed)}", end="", file=sys.stderr)
    if ended is not None:
        print(f"The application is no longer running; it ended with status {ended}.", file=sys.stderr)
    if scratch.printed("corvane"):
        print(f"The application printed:\n{indented(scratch.printed('corvane'))}", end="", file=sys.stderr)
    picture = PICTURES / "failure.png"
    if observe("screenshot", picture).returncode == 0:
        print(f"Screenshot: {picture}", file=sys.stderr)
    print(f"What to do: {failure.advice}", file=sys.stderr)


def main():
    build = (ROOT / sys.argv[1]).resolve() if sys.argv[1:] else None
    if build is None or not (build / "bin/corvane").exists() or sys.argv[2:] not in ([], ["--update-pictures"]):
        sys.exit(__doc__)
    folder = ROOT / PICTURES
    folder.mkdir(parents=True, exist_ok=True)
    for picture in folder.glob("*.png"):
        picture.unlink()

    began = time.monotonic()
    with Scratch() as scratch:
        def observe(*command):
            words = [str(ROOT / word) if isinstance(word, Path) else word for word in command]
            return scratch.run(build / "bin/corvane-observer", *words)

        teller = Teller()
        story = Story(scratch, teller, observe, build, PICTURES)
        try:
            scratch.furnish()
            story.tell()
            story.end()
        except Failure as failure:
            teller.say(f"    FAILED: {failure}")
            explain(failure, scratch, observe, story.unexpected_end())
            return 1
        except (OSError, subprocess.SubprocessError, ValueError) as error:
            explain(Failure(f"{type(error).__name__}: {error}", "check that Scripts/dependencies demo succeeds"),
                    scratch, observe, story.unexpected_end())
            return 1
    if "--update-pictures" in sys.argv:
        for name, source in story.documentation.items():
            (ROOT / "docs" / name).write_bytes((ROOT / source).read_bytes())
            print(f"docs/{name} is updated.")
    print(f"Every step was seen on the screen, in {time.monotonic() - began:.0f} s. Screenshots:")
    for picture in sorted(folder.glob("*.png")):
        print(f"  {picture.relative_to(ROOT)}")
    return 0


try:
    sys.exit(main())
except Interrupted as interrupted:
    print("\nInterrupted; everything that was started has been ended.", file=sys.stderr)
    sys.exit(128 + interrupted.number)
