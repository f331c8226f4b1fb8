"""A fake of a desktop's settings portal, with the colour scheme only.

    portal.py     says "ready"; each line on standard input, "dark" or "light", becomes the colour scheme
"""

import sys

from gi.repository import Gio, GLib

PORTAL = "org.freedesktop.portal.Desktop"
PATH = "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.portal.Settings"
KEY = ("org.freedesktop.appearance", "color-scheme")
SCHEMES = {"dark": 1, "light": 2}
INTERFACE = f"""<node><interface name="{SETTINGS}">
<method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/>
  <arg type="v" direction="out"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""

scheme = "light"


def value():
    return GLib.Variant("u", SCHEMES[scheme])


def answer(_connection, _sender, _path, _interface, _method, parameters, invocation):
    if parameters.unpack() == KEY:
        # The result of this method is wrapped twice.
        invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", value()),)))
    else:
        invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")


def take_line(channel, _condition, connection):
    global scheme
    line = channel.readline()
    if not line:
        loop.quit()
        return False
    scheme = line.strip()
    connection.emit_signal(None, PATH, SETTINGS, "SettingChanged", GLib.Variant("(ssv)", (*KEY, value())))
    return True


def serve(connection, _name):
    interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    connection.register_object(PATH, interface, answer, None, None)
    GLib.io_add_watch(sys.stdin, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, take_line, connection)


loop = GLib.MainLoop()
Gio.bus_own_name(Gio.BusType.SESSION, PORTAL, Gio.BusNameOwnerFlags.NONE, serve,
                 lambda *_: print("ready", flush=True), lambda *_: loop.quit())
loop.run()
