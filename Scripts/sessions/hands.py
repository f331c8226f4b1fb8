"""Pointer, keyboard and screenshots of each kind of session. All of them offer

    move(x, y)    click(x, y, button=LEFT)    key(code)    type_line(letter)    screenshot()

with places in pixels, keys as the kernel numbers them, and pictures as PIL images."""

import os
import threading
import time

from gi.repository import Gio, GLib
from PIL import Image, ImageGrab

from room import HEIGHT, WIDTH
from scratch import Failure
from wayland import LEFT, KWinDevice, WlrootsDevice

ENTER, ESCAPE = 28, 1
LETTERS = {letter: code for first, row in ((16, "qwertyuiop"), (30, "asdfghjkl"), (44, "zxcvbnm"))
           for code, letter in enumerate(row, first)}

# Between press and release, and after a motion: a person is no faster, and toolkits drop what is.
HELD = 0.06


class Hands:
    def click(self, x, y, button=LEFT):
        # A pointer that is there already would not move, and what has just closed there would not notice it.
        self.move(x + 3, y + 3)
        time.sleep(HELD)
        self.move(x, y)
        time.sleep(5 * HELD)
        self.click_again(button)

    def click_again(self, button=LEFT):
        """Where the pointer is."""
        self._button(button, True)
        time.sleep(HELD)
        self._button(button, False)
        time.sleep(HELD)

    def key(self, code):
        self._key(code, True)
        time.sleep(HELD)
        self._key(code, False)
        time.sleep(HELD)

    def type_line(self, letter):
        self.key(LETTERS[letter])
        self.key(ENTER)


class X11Hands(Hands):
    def __init__(self, scratch):
        self._scratch = scratch

    def move(self, x, y):
        self._scratch.run("xdotool", "mousemove", x, y)

    def _button(self, button, is_pressed):
        self._scratch.run("xdotool", "mousedown" if is_pressed else "mouseup", 1 if button == LEFT else 3)

    def _key(self, code, is_pressed):
        # X numbers keys from 8. Escape by name: xdotool takes its number, of one digit, for the key of that digit.
        self._scratch.run("xdotool", "keydown" if is_pressed else "keyup", "Escape" if code == ESCAPE else code + 8)

    def screenshot(self):
        return ImageGrab.grab(xdisplay=os.environ["DISPLAY"]).convert("RGB")


class DeviceHands(Hands):
    """Those of a session whose compositor offers devices to a Wayland client."""

    def __init__(self, scratch, device):
        self._scratch = scratch
        self._device = device(f"{scratch.runtime}/{os.environ['WAYLAND_DISPLAY']}", WIDTH, HEIGHT)

    def move(self, x, y):
        self._device.move(x, y)

    def _button(self, button, is_pressed):
        self._device.button(button, is_pressed)

    def _key(self, code, is_pressed):
        self._device.key(code, is_pressed)


class SwayHands(DeviceHands):
    def __init__(self, scratch):
        super().__init__(scratch, WlrootsDevice)

    def screenshot(self):
        file = self._scratch.folder / "screen.png"
        result = self._scratch.run("grim", file)
        if result.returncode != 0:
            raise Failure("no screenshot could be taken", "see the message of grim", result.stdout)
        return Image.open(file).convert("RGB")


class KWinHands(DeviceHands):
    def __init__(self, scratch):
        super().__init__(scratch, KWinDevice)
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def screenshot(self):
        read, write = os.pipe()
        pixels = bytearray()

        def drain():
            with os.fdopen(read, "rb") as pipe:
                pixels.extend(pipe.read())

        reader = threading.Thread(target=drain)
        reader.start()
        descriptors = Gio.UnixFDList.new()
        descriptors.append(write)
        os.close(write)
        try:
            options = GLib.Variant("(a{sv}h)", ({"native-resolution": GLib.Variant("b", True)}, 0))
            reply, _ = self._bus.call_with_unix_fd_list_sync(
                "org.kde.KWin", "/org/kde/KWin/ScreenShot2", "org.kde.KWin.ScreenShot2", "CaptureWorkspace", options, None,
                Gio.DBusCallFlags.NONE, 20000, descriptors, None)
        finally:
            # Closes the last descriptor for writing on this side.
            del descriptors
            reader.join(20)
        found = reply.unpack()[0]
        image = Image.frombuffer("RGBA", (found["width"], found["height"]), bytes(pixels), "raw", "BGRA", found["stride"], 1)
        return image.convert("RGB")


class MutterHands(Hands):
    """Mutter's remote desktop, and the Shell's screenshots, which its unsafe mode opens to anyone."""

    SESSION = "org.gnome.Mutter.RemoteDesktop.Session"

    def __init__(self, scratch):
        self._scratch = scratch
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self._path = self._call("org.gnome.Mutter.RemoteDesktop", "/org/gnome/Mutter/RemoteDesktop",
                                "org.gnome.Mutter.RemoteDesktop", "CreateSession")[0]
        self._session("Start")
        time.sleep(5 * HELD)
        # The first key after the start is lost.
        self.key(ESCAPE)

    def _call(self, name, path, interface, method, arguments=None):
        return self._bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, 20000, None).unpack()

    def _session(self, method, arguments=None):
        return self._call("org.gnome.Mutter.RemoteDesktop", self._path, self.SESSION, method, arguments)

    def move(self, x, y):
        # There are only relative motions: first to the corner.
        self._session("NotifyPointerMotionRelative", GLib.Variant("(dd)", (9999.0, 9999.0)))
        time.sleep(HELD)
        self._session("NotifyPointerMotionRelative", GLib.Variant("(dd)", (x - WIDTH + 1.0, y - HEIGHT + 1.0)))
        time.sleep(HELD)

    def _button(self, button, is_pressed):
        self._session("NotifyPointerButton", GLib.Variant("(ib)", (button, is_pressed)))

    def _key(self, code, is_pressed):
        self._session("NotifyKeyboardKeycode", GLib.Variant("(ub)", (code, is_pressed)))

    def screenshot(self):
        file = self._scratch.folder / "screen.png"
        taken = self._call("org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot",
                           "Screenshot", GLib.Variant("(bbs)", (False, False, str(file))))
        if not taken[0]:
            raise Failure("no screenshot could be taken", "see what GNOME Shell printed")
        return Image.open(taken[1]).convert("RGB")

