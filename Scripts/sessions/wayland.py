"""A small Wayland client: virtual pointers and keyboards, in the wire protocol itself, since no package offers them to
scripts. The device must live as long as the session is used: clients miss one that exists only for a moment."""

import array
import os
import socket
import struct
import time

DISPLAY, REGISTRY = 1, 2
SYNC, GET_REGISTRY, BIND = 0, 1, 0
LEFT, RIGHT = 0x110, 0x111

# The compositor completes it from its own keyboard data.
KEYMAP = b"""xkb_keymap {
xkb_keycodes { include "evdev+aliases(qwerty)" };
xkb_types { include "complete" };
xkb_compat { include "complete" };
xkb_symbols { include "pc+us+inet(evdev)" };
};
\0"""


def fixed(number):
    """The protocol's 24.8 fixed-point numbers."""
    return int(number * 256)


def milliseconds():
    return int(time.monotonic() * 1000) & 0xFFFFFFFF


class Connection:
    def __init__(self, path):
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._socket.settimeout(10)
        self._socket.connect(path)
        self._last = REGISTRY
        self._input = b""
        self._globals = {}
        self.send(DISPLAY, GET_REGISTRY, REGISTRY)
        self.round_trip()

    def new(self):
        self._last += 1
        return self._last

    def send(self, target, request, *arguments, descriptor=None):
        body = b""
        for argument in arguments:
            if isinstance(argument, str):
                text = argument.encode() + b"\0"
                body += struct.pack("=I", len(text)) + text + b"\0" * (-len(text) % 4)
            else:
                body += struct.pack("=I", argument & 0xFFFFFFFF)
        message = struct.pack("=II", target, (len(body) + 8) << 16 | request) + body
        rights = []
        if descriptor is not None:
            rights = [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [descriptor]))]
        self._socket.sendmsg([message], rights)

    def bind(self, interface, version):
        """The object of a global interface; raises LookupError if the compositor does not offer it."""
        if interface not in self._globals:
            raise LookupError(f"the compositor does not offer {interface}")
        name, offered = self._globals[interface]
        bound = self.new()
        self.send(REGISTRY, BIND, name, interface, min(version, offered), bound)
        return bound

    def round_trip(self):
        """Returns once the compositor has processed all requests."""
        callback = self.new()
        self.send(DISPLAY, SYNC, callback)
        while self._next_event() != callback:
            pass

    def _next_event(self):
        header = self._read(8)
        target, size_and_event = struct.unpack("=II", header)
        body = self._read((size_and_event >> 16) - 8)
        event = size_and_event & 0xFFFF
        if target == DISPLAY and event == 0:
            raise ConnectionError(f"the compositor refused a request: {body[12:].decode(errors='replace')}")
        if target == REGISTRY and event == 0:
            name, length = struct.unpack("=II", body[:8])
            interface = body[8:8 + length - 1].decode()
            self._globals[interface] = name, struct.unpack("=I", body[-4:])[0]
        return target

    def _read(self, size):
        while len(self._input) < size:
            more = self._socket.recv(65536)
            if not more:
                raise ConnectionError("the compositor has closed the connection")
            self._input += more
        result, self._input = self._input[:size], self._input[size:]
        return result


class WlrootsDevice:
    """The pointer and the keyboard of compositors made with wlroots."""

    def __init__(self, path, width, height):
        self._wayland = wayland = Connection(path)
        self._size = width, height
        seat = wayland.bind("wl_seat", 1)
        pointers = wayland.bind("zwlr_virtual_pointer_manager_v1", 1)
        self._pointer = wayland.new()
        wayland.send(pointers, 0, seat, self._pointer)
        keyboards = wayland.bind("zwp_virtual_keyboard_manager_v1", 1)
        self._keyboard = wayland.new()
        wayland.send(keyboards, 0, seat, self._keyboard)
        keymap = os.memfd_create("keymap")
        os.write(keymap, KEYMAP)
        wayland.send(self._keyboard, 0, 1, len(KEYMAP), descriptor=keymap)
        os.close(keymap)
        wayland.round_trip()

    def move(self, x, y):
        self._wayland.send(self._pointer, 1, milliseconds(), x, y, *self._size)
        self._wayland.send(self._pointer, 4)
        self._wayland.round_trip()

    def button(self, code, is_pressed):
        self._wayland.send(self._pointer, 2, milliseconds(), code, int(is_pressed))
        self._wayland.send(self._pointer, 4)
        self._wayland.round_trip()

    def key(self, code, is_pressed):
        self._wayland.send(self._keyboard, 1, milliseconds(), code, int(is_pressed))
        self._wayland.round_trip()


class KWinDevice:
    """The pointer and the keyboard that KWin offers to tests."""

    def __init__(self, path, *_):
        self._wayland = Connection(path)
        self._input = self._wayland.bind("org_kde_kwin_fake_input", 4)
        self._wayland.send(self._input, 0, "tests", "input of a test")
        self._wayland.round_trip()

    def move(self, x, y):
        self._wayland.send(self._input, 9, fixed(x), fixed(y))
        self._wayland.round_trip()

    def button(self, code, is_pressed):
        self._wayland.send(self._input, 2, code, int(is_pressed))
        self._wayland.round_trip()

    def key(self, code, is_pressed):
        self._wayland.send(self._input, 10, code, int(is_pressed))
        self._wayland.round_trip()
