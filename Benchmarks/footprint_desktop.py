"""A desktop of its own for Benchmarks/footprint and Benchmarks/soak: X server, window manager, tray and session bus in a
scratch home, and what its screen shows. Xlib is used through ctypes, so that nothing needs to be installed for Python."""

import ctypes
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parents[1] / "Scripts/demonstration"))

import bus  # noqa: E402  pylint: disable=wrong-import-position

SCREEN = (1280, 800)
PATIENCE = 30.0  # seconds for a program to come up


class Failure(Exception):
    pass


def end_in_order():
    """Lets SIGTERM and SIGHUP end this program as an exception, so that what it has started ends as well."""
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda received, _: sys.exit(128 + received))


def wait_until(condition, seconds=PATIENCE, pause=0.02):
    """The condition's value once it is true; false when it is not within `seconds`."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value or time.monotonic() > end:
            return value
        time.sleep(pause)


class Attributes(ctypes.Structure):  # XWindowAttributes
    _fields_ = [("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int), ("height", ctypes.c_int),
                ("border", ctypes.c_int), ("depth", ctypes.c_int), ("visual", ctypes.c_void_p), ("root", ctypes.c_ulong),
                ("kind", ctypes.c_int), ("gravity", ctypes.c_int), ("window_gravity", ctypes.c_int),
                ("backing", ctypes.c_int), ("planes", ctypes.c_ulong), ("pixel", ctypes.c_ulong),
                ("save_under", ctypes.c_int), ("colormap", ctypes.c_ulong), ("colormap_installed", ctypes.c_int),
                ("map_state", ctypes.c_int), ("all_events", ctypes.c_long), ("own_events", ctypes.c_long),
                ("no_propagate", ctypes.c_long), ("override_redirect", ctypes.c_int), ("screen", ctypes.c_void_p)]


class Rectangle(ctypes.Structure):  # XRectangle
    _fields_ = [("x", ctypes.c_short), ("y", ctypes.c_short), ("width", ctypes.c_ushort), ("height", ctypes.c_ushort)]


class DamageEvent(ctypes.Structure):  # XDamageNotifyEvent
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int),
                ("display", ctypes.c_void_p), ("drawable", ctypes.c_ulong), ("damage", ctypes.c_ulong),
                ("level", ctypes.c_int), ("more", ctypes.c_int), ("time", ctypes.c_ulong), ("area", Rectangle),
                ("geometry", Rectangle)]


class Event(ctypes.Union):  # XEvent
    _fields_ = [("type", ctypes.c_int), ("damage", DamageEvent), ("room", ctypes.c_long * 24)]


ERROR_HANDLER = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)


class Client(ctypes.Structure):  # XResClient
    _fields_ = [("base", ctypes.c_ulong), ("mask", ctypes.c_ulong)]


class Kind(ctypes.Structure):  # XResType
    _fields_ = [("name", ctypes.c_ulong), ("count", ctypes.c_uint)]


class Resources:
    """What the clients of an X server keep there. None of it is known without libXRes."""

    def __init__(self, screen):
        self.screen = screen
        try:
            self.library = ctypes.CDLL("libXRes.so.1")
        except OSError:
            self.library = None

    def clients(self):
        """The resource bases of the connected clients."""
        if self.library is None:
            return set()
        count, found = ctypes.c_int(), ctypes.POINTER(Client)()
        if not self.library.XResQueryClients(self.screen.display, ctypes.byref(count), ctypes.byref(found)):
            return set()
        bases = {found[i].base for i in range(count.value)}
        self.screen.x.XFree(found)
        return bases

    def kept_by(self, clients):
        """The number of resources of these clients, and the KiB of their pixmaps; none if that cannot be known."""
        if not clients:
            return None
        resources, pixels = 0, 0
        for base in clients:
            count, found = ctypes.c_int(), ctypes.POINTER(Kind)()
            if self.library.XResQueryClientResources(self.screen.display, ctypes.c_ulong(base), ctypes.byref(count),
                                                     ctypes.byref(found)):
                resources += sum(found[i].count for i in range(count.value))
                self.screen.x.XFree(found)
            size = ctypes.c_ulong()
            if self.library.XResQueryClientPixmapBytes(self.screen.display, ctypes.c_ulong(base), ctypes.byref(size)):
                pixels += size.value
        return resources, pixels // 1024


class Screen:
    """What the X server shows, over a connection of its own."""

    VIEWABLE = 2
    RAW_RECTANGLES = 0

    def __init__(self, display):
        self.x = ctypes.CDLL("libX11.so.6")
        self.damage = ctypes.CDLL("libXdamage.so.1")
        for function in (self.x.XOpenDisplay, self.x.XInternAtom, self.x.XDefaultRootWindow, self.damage.XDamageCreate):
            function.restype = ctypes.c_void_p if function is self.x.XOpenDisplay else ctypes.c_ulong
        # Windows may be gone before they are examined, which ends the process by default.
        self.ignore = ERROR_HANDLER(lambda _display, _error: 0)
        self.x.XSetErrorHandler(self.ignore)
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(display.encode()))
        if not self.display.value:
            raise Failure(f"no X server answers on {display}")
        self.root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))
        first, error = ctypes.c_int(), ctypes.c_int()
        if not self.damage.XDamageQueryExtension(self.display, ctypes.byref(first), ctypes.byref(error)):
            raise Failure("the X server has no DAMAGE extension")
        self.damage_event = first.value
        self.damage.XDamageCreate(self.display, self.root, self.RAW_RECTANGLES)
        self.embedded_atom = ctypes.c_ulong(self.x.XInternAtom(self.display, b"_XEMBED_INFO", 0))
        self.state_atom = ctypes.c_ulong(self.x.XInternAtom(self.display, b"WM_STATE", 0))
        self.tray_atom = ctypes.c_ulong(self.x.XInternAtom(self.display, b"_NET_SYSTEM_TRAY_S0", 0))

    def close(self):
        self.x.XCloseDisplay(self.display)

    def children(self, window):
        root, parent, count = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_uint()
        found = ctypes.POINTER(ctypes.c_ulong)()
        if not self.x.XQueryTree(self.display, ctypes.c_ulong(window), ctypes.byref(root), ctypes.byref(parent),
                                 ctypes.byref(found), ctypes.byref(count)):
            return []
        windows = [found[i] for i in range(count.value)]
        if found:
            self.x.XFree(found)
        return windows

    def attributes(self, window):
        result = Attributes()
        self.x.XGetWindowAttributes(self.display, ctypes.c_ulong(window), ctypes.byref(result))
        return result

    def is_viewable(self, window):
        return self.attributes(window).map_state == self.VIEWABLE

    def has(self, window, atom):
        count = ctypes.c_int()
        found = ctypes.POINTER(ctypes.c_ulong)()
        self.x.XListProperties.restype = ctypes.POINTER(ctypes.c_ulong)
        found = self.x.XListProperties(self.display, ctypes.c_ulong(window), ctypes.byref(count))
        names = [found[i] for i in range(count.value)]
        if found:
            self.x.XFree(found)
        return atom.value in names

    def inner(self, depth=6):
        """All windows below the top-level ones, with their geometry on the root window."""
        level = [child for top in self.children(self.root.value) for child in self.children(top)]
        for _ in range(depth):
            yield from level
            level = [child for window in level for child in self.children(window)]

    def tray_icon(self):
        """The viewable window that a tray has embedded; none without one."""
        for window in self.inner():
            if self.has(window, self.embedded_atom) and self.is_viewable(window):
                return window
        return None

    def managed(self):
        """The viewable windows that the window manager manages, without the tray's."""
        return [window for window in self.inner(2) if self.has(window, self.state_atom) and self.is_viewable(window)
                and self.class_of(window).lower() != b"trayer"]

    def has_tray(self):
        return self.x.XGetSelectionOwner(self.display, self.tray_atom) != 0

    def class_of(self, window):
        hint = (ctypes.c_char_p * 2)()
        if not self.x.XGetClassHint(self.display, ctypes.c_ulong(window), ctypes.byref(hint)):
            return b""
        return hint[1]

    def unmanaged(self, width, height):
        """The viewable override-redirect windows of at least this size."""
        seen = [(window, self.attributes(window)) for window in self.children(self.root.value)]
        return [window for window, look in seen if look.map_state == self.VIEWABLE and look.override_redirect
                and look.width >= width and look.height >= height]

    def middle(self, window):
        look = self.attributes(window)
        x, y, child = ctypes.c_int(), ctypes.c_int(), ctypes.c_ulong()
        self.x.XTranslateCoordinates(self.display, ctypes.c_ulong(window), self.root, look.width // 2, look.height // 2,
                                     ctypes.byref(x), ctypes.byref(y), ctypes.byref(child))
        return x.value, y.value

    def drawn(self):
        """The pixels that have been drawn since the last call, everywhere on the screen."""
        self.x.XSync(self.display, 0)
        pixels = 0
        while self.x.XPending(self.display):
            event = Event()
            self.x.XNextEvent(self.display, ctypes.byref(event))
            if event.type == self.damage_event:
                pixels += event.damage.area.width * event.damage.area.height
        return pixels


class Desktop:
    """A user's desktop in a scratch folder. Leaves neither processes nor files behind."""

    def __init__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="corvane-footprint."))
        self.home = self.folder / "home"
        self.processes = []
        self.screen = None
        try:
            self.start()
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def start(self):
        for name in ("home", "run", "tmp"):
            (self.folder / name).mkdir(mode=0o700)
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": str(self.home), "LANG": "C.UTF-8", "TMPDIR": str(self.folder / "tmp"),
            "XDG_RUNTIME_DIR": str(self.folder / "run"),
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.folder / 'run/bus'}",
        }
        self.run(*bus.command(self.folder / "bus.conf", "session", self.folder / "run/bus"))
        if not wait_until((self.folder / "run/bus").exists):
            raise Failure("the session bus did not start")
        reading, writing = os.pipe()
        self.run("Xvfb", "-displayfd", str(writing), "-screen", "0", f"{SCREEN[0]}x{SCREEN[1]}x24", "-nolisten", "tcp",
                 "-noreset", inherited=(writing,))
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise Failure("the X server did not start")
        self.environment["DISPLAY"] = f":{number}"
        self.screen = Screen(self.environment["DISPLAY"])
        self.run("openbox", "--sm-disable")
        # Shrinks to the icon in it.
        self.run("trayer", "--edge", "top", "--align", "right", "--widthtype", "request", "--height", "24",
                 "--tint", "0x000000")
        if not wait_until(self.screen.has_tray):
            raise Failure("the tray did not start")
        time.sleep(1)

    def run(self, *arguments, inherited=(), errors=subprocess.DEVNULL):
        process = subprocess.Popen(arguments, env=self.environment, cwd=self.home, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=errors, pass_fds=inherited,
                                   start_new_session=True)
        self.processes.append(process)
        return process

    def stop(self, process):
        """Ends the process and its whole group."""
        if process not in self.processes:
            return
        self.processes.remove(process)
        for number in (signal.SIGTERM, signal.SIGKILL):
            try:
                os.killpg(process.pid, number)
            except ProcessLookupError:
                break
            try:
                process.wait(5)
                break
            except subprocess.TimeoutExpired:
                continue

    def command(self, *arguments, text="", variables=None):
        """Runs a short program to its end, with that text as its input."""
        result = subprocess.run(arguments, env={**self.environment, **(variables or {})}, cwd=self.home, input=text,
                                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, timeout=PATIENCE,
                                check=False)
        if result.returncode != 0:
            raise Failure(f"{arguments[0]} failed: {result.stderr}")

    def click(self, place):
        self.command("xdotool", "mousemove", str(place[0]), str(place[1]), "click", "1")

    def key(self, name):
        self.command("xdotool", "key", name)

    def close(self):
        if self.screen is not None:
            self.screen.close()
        for process in reversed(list(self.processes)):
            self.stop(process)
        shutil.rmtree(self.folder)
