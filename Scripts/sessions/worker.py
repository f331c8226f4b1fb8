"""One login of one session, inside the namespaces that __main__.py has made:

    worker.py SESSION first|again|quick FOLDER

Writes what it has seen to FOLDER, after every check."""

import faulthandler
import json
import shutil
import signal
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "demonstration")]

from checks import Checks  # noqa: E402
from definitions import SESSIONS  # noqa: E402
from room import Room  # noqa: E402
from scratch import Scratch  # noqa: E402


class LastingScratch(Scratch):
    """A scratch home for several logins. What runs in it ends with the namespace, and __main__.py removes it."""

    def __enter__(self):
        self.folder = Path("/tmp/user")
        self.folder.mkdir(exist_ok=True)
        shutil.rmtree(self.runtime, ignore_errors=True)
        return self

    def __exit__(self, *_):
        pass


class Results:
    def __init__(self, folder):
        self.folder = folder
        self._file = folder / "results.json"
        told = json.loads(self._file.read_text()) if self._file.exists() else {}
        self._checks = told.get("checks", {})
        self._icon = told.get("icon")

    def add(self, name, state, detail):
        self._checks[name] = {"state": state, "detail": detail}
        self._write()

    @property
    def icon(self):
        return self._icon

    @icon.setter
    def icon(self, place):
        self._icon = list(place)
        self._write()

    def _write(self):
        self._file.write_text(json.dumps({"checks": self._checks, "icon": self._icon}, indent=1))


def main():
    name, login, folder = sys.argv[1:]
    # To see where it waits.
    faulthandler.register(signal.SIGUSR1)
    results = Results(Path(folder))
    with LastingScratch() as scratch:
        definition = SESSIONS[name]
        session = definition(Room(scratch, definition.environment))
        checks = Checks(session, results, lambda text: print(text, flush=True))
        if login == "first":
            session.prepare()
            checks.run()
        elif login == "quick":
            session.prepare()
            checks.run_quickly()
        else:
            checks.run_again(results.icon)
    return 0


sys.exit(main())
