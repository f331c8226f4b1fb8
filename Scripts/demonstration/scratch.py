"""A scratch home, and the programs that run in it; both are removed at the end, even after a signal."""

import contextlib
import os
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


class Interrupted(BaseException):
    """A signal asked the demonstration to end."""

    def __init__(self, number):
        super().__init__(number)
        self.number = number


class Failure(Exception):
    """Something was not seen. `advice` says what to do about it, `observed` what was there instead."""

    def __init__(self, what, advice, observed=""):
        super().__init__(what)
        self.advice = advice
        self.observed = observed


def wait_until(condition, seconds, every=0.05):
    """Polls `condition`; returns its first true result, or its last one after `seconds`."""
    end = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer or time.monotonic() > end:
            return answer
        time.sleep(every)


class Scratch:
    """A context manager. Inside, the environment of this process, and so of everything that it starts, does not contain
    the user's home, display and session bus."""

    def __init__(self):
        self._started = []
        self._undisturbed = 0
        self._signal = None
        self.folder = None

    def __enter__(self):
        for number in SIGNALS:
            signal.signal(number, self._take_signal)
        try:
            with self.undisturbed():
                self.folder = Path(tempfile.mkdtemp(prefix="corvane-demo."))
        except Interrupted:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for number in SIGNALS:
            signal.signal(number, signal.SIG_IGN)
        self.clean()

    def _take_signal(self, number, _frame):
        self._signal = number
        if not self._undisturbed:
            raise Interrupted(number)

    @contextlib.contextmanager
    def undisturbed(self):
        """Defers signals to the end of the block, which creates something that has to be recorded."""
        self._undisturbed += 1
        try:
            yield
        finally:
            self._undisturbed -= 1
        if self._signal and not self._undisturbed:
            raise Interrupted(self._signal)

    @property
    def home(self):
        return self.folder / "home"

    @property
    def runtime(self):
        return self.folder / "runtime"

    def furnish(self):
        """Creates the folders of a user who has just logged in, and points the environment at them."""
        for folder in (".config", ".cache", ".local/share", ".local/state", ".local/bin"):
            (self.home / folder).mkdir(parents=True, exist_ok=True)
        (self.folder / "tmp").mkdir(exist_ok=True)
        self.runtime.mkdir(mode=0o700)
        path = os.environ["PATH"]
        os.environ.clear()
        os.environ.update({
            "PATH": f"{self.home}/.local/bin:{path}",
            "HOME": str(self.home),
            "LANG": "C.UTF-8",
            "TMPDIR": str(self.folder / "tmp"),
            "XDG_CONFIG_HOME": str(self.home / ".config"),
            "XDG_DATA_HOME": str(self.home / ".local/share"),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
            "XDG_STATE_HOME": str(self.home / ".local/state"),
            "XDG_RUNTIME_DIR": str(self.runtime),
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.runtime}/bus",
        })

    def start(self, name, command, **options):
        """Starts a program in the background, in its own process group; its output goes to its log."""
        with self.undisturbed(), open(self.log(name), "wb") as log:
            process = subprocess.Popen([str(word) for word in command], stdin=options.pop("stdin", subprocess.DEVNULL),
                                       stdout=log, stderr=subprocess.STDOUT, start_new_session=True, **options)
            self._started.append(process)
        return process

    def run(self, *command, timeout=30):
        """Runs a program to its end. The result includes its output and errors."""
        return subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, timeout=timeout, start_new_session=True, check=False)

    def log(self, name):
        return self.folder / f"{name}.log"

    def printed(self, name):
        """What a program has printed so far."""
        try:
            return self.log(name).read_text(errors="replace").strip()
        except OSError:
            return ""

    def left_over(self):
        """Processes that have the scratch home in their environment, whoever started them."""
        mark = f"HOME={self.home}".encode()
        found = []
        for folder in Path("/proc").iterdir():
            if not folder.name.isdigit() or int(folder.name) == os.getpid():
                continue
            with contextlib.suppress(OSError):
                if mark in (folder / "environ").read_bytes().split(b"\0"):
                    found.append(int(folder.name))
        return found

    def stop_all(self):
        """Ends everything that was started, the latest first, so that none loses its display before it is asked to end."""
        while self._started:
            process = self._started[-1]
            # The ID of one that is known to have ended may already be reused.
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGTERM)
                try:
                    process.wait(timeout=3)
                except subprocess.TimeoutExpired:
                    os.killpg(process.pid, signal.SIGKILL)
                    process.wait()
            self._started.pop()

    def clean(self):
        """Leaves no process and no file. Returns what had to be killed; a second call does nothing."""
        if self.folder is None or not self.folder.exists():
            return []
        self.stop_all()
        wait_until(lambda: not self.left_over(), 3)
        killed = self.left_over()
        for process in killed:
            with contextlib.suppress(ProcessLookupError):
                os.kill(process, signal.SIGKILL)
        wait_until(lambda: not self.left_over(), 3)
        shutil.rmtree(self.folder)
        return killed
