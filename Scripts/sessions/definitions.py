"""The sessions: what each needs, how it starts and ends, its terminal, and how a user makes it dark.

`packages` are Debian's names. `bar` is the edge at which the icon is expected, and the height of that strip in pixels.
`None` for an edge means that the desktop shows no icons."""

import os
import re
import shutil

from room import HEIGHT, WIDTH, detached, see

COMMON = ("dbus-daemon", "dbus-bin", "python3-dbusmock", "python3-pil", "tesseract-ocr", "tesseract-ocr-eng", "xvfb", "libglib2.0-bin",
          "fonts-dejavu-core", "libgl1-mesa-dri", "at-spi2-core", "xterm")
PORTAL = ("xdg-desktop-portal", "xdg-desktop-portal-gtk")


class Session:
    title = ""
    packages = ()
    environment = {}
    bar = ("top", 32)
    is_wayland = False
    # Why it does not start what is in the autostart folder; None if it does.
    no_autostart = None
    # Why its bar has no entries for windows; None if it has.
    no_entries = None
    # Why a native terminal cannot be raised there; None if it can.
    no_jump = None
    # Whether its bar passes only double clicks on to the application; single ones open the menu.
    opens_by_double_click = False

    def __init__(self, room):
        self.room = room
        self.scratch = room.scratch

    def prepare(self):
        """Writes the files that a session needs before it starts. Called once."""

    def start(self):
        """Starts it; returns the process whose end is the end of the session."""
        raise NotImplementedError

    def is_ready(self):
        """Whether its bar is on the screen."""
        raise NotImplementedError

    def hands(self):
        import hands
        return hands.X11Hands(self.scratch)

    def terminal(self, title, folder, command):
        """Opens a window of its terminal."""
        raise NotImplementedError

    def set_dark(self, is_dark):
        """Does what its own settings do. Returns why it cannot be done, if so."""
        raise NotImplementedError

    def end(self):
        """Asks it to end."""
        raise NotImplementedError

    def run(self, *command):
        return self.scratch.run(*command)

    def shows(self, window_class):
        return bool(self.run("xdotool", "search", "--onlyvisible", "--class", window_class).stdout.strip())

    def set_gnome_dark(self, is_dark, schema="org.gnome.desktop.interface"):
        self.run("gsettings", "set", schema, "color-scheme", "prefer-dark" if is_dark else "default")


class X11Session(Session):
    display = None

    def start(self):
        # A display ends with its session, as with a login manager.
        self.display = self.room.start_display(WIDTH, HEIGHT)
        self.room.start_session_bus()
        self.room.publish_environment()
        return self.scratch.start("session", self.command)


class Xfce(X11Session):
    title = "XFCE 4.18, X11"
    packages = ("xfce4-session", "xfce4-panel", "xfwm4", "xfce4-settings", "xfdesktop4", "xfce4-terminal", "thunar",
                "adwaita-icon-theme", "gnome-themes-extra")
    environment = {"XDG_CURRENT_DESKTOP": "XFCE", "XDG_SESSION_TYPE": "x11", "XFCE_PANEL_MIGRATE_DEFAULT": "1",
                   "XDG_MENU_PREFIX": "xfce-"}
    command = ("xfce4-session",)

    def is_ready(self):
        return self.shows("^xfce4-panel$") and self.shows("^xfdesktop$")

    def terminal(self, title, folder, command):
        detached(["xfce4-terminal", "--disable-server", "-T", title, "--working-directory", folder, "-x", *command])

    def set_dark(self, is_dark):
        self.run("xfconf-query", "-c", "xsettings", "-p", "/Net/ThemeName", "-n", "-t", "string", "-s",
                 "Adwaita-dark" if is_dark else "Adwaita")

    def end(self):
        detached(["xfce4-session-logout", "--logout", "--fast"])


SWAY = """output HEADLESS-1 resolution {width}x{height}
output * bg #4A6A8A solid_color
xwayland force
default_border normal
focus_follows_mouse no
exec dbus-update-activation-environment --all
exec env >{runtime}/session-environment
bar {{
    swaybar_command waybar
}}
"""


class Sway(Session):
    title = "sway 1.7 + waybar, Wayland"
    packages = ("sway", "swaybg", "waybar", "foot", "grim", "xwayland", "gsettings-desktop-schemas", *PORTAL)
    environment = {"XDG_CURRENT_DESKTOP": "sway", "XDG_SESSION_TYPE": "wayland", "WLR_BACKENDS": "headless",
                   "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"}
    is_wayland = True
    no_entries = "sway's bar has none"
    no_autostart = "sway starts only what its configuration names"

    def prepare(self):
        self.room.write(".config/sway/config", SWAY.format(width=WIDTH, height=HEIGHT, runtime=self.scratch.runtime))

    def start(self):
        self.room.start_session_bus()
        file = self.scratch.runtime / "session-environment"
        file.unlink(missing_ok=True)
        process = self.scratch.start("session", ["sway"])
        see(lambda: file.exists() and "SWAYSOCK=" in file.read_text(), 60, "sway did not start", self.scratch.printed("session"))
        for line in file.read_text().splitlines():
            name, _, value = line.partition("=")
            if name in ("SWAYSOCK", "WAYLAND_DISPLAY", "DISPLAY"):
                os.environ[name] = value
        return process

    def is_ready(self):
        told = self.run("swaymsg", "-t", "get_workspaces", "-r").stdout
        return bool(self.room.processes("waybar")) and re.search(r'"rect":\s*\{\s*"x":\s*0,\s*"y":\s*[1-9]', told) is not None

    def hands(self):
        import hands
        return hands.SwayHands(self.scratch)

    def terminal(self, title, folder, command):
        detached(["foot", "-T", title, "-D", folder, *command])

    def set_dark(self, is_dark):
        # sway itself has no such setting; this is what its users set, and what the portal reports.
        self.set_gnome_dark(is_dark)

    def end(self):
        self.run("swaymsg", "exit")


class Lxqt(X11Session):
    title = "LXQt 1.2, X11"
    packages = ("lxqt-session", "lxqt-panel", "openbox", "pcmanfm-qt", "qterminal", "lxqt-qtplugin", "lxqt-themes",
                "lxqt-branding-debian", "lxqt-notificationd", "adwaita-icon-theme", "papirus-icon-theme", "libqt5svg5")
    environment = {"XDG_CURRENT_DESKTOP": "LXQt", "XDG_SESSION_TYPE": "x11", "XDG_MENU_PREFIX": "lxqt-",
                   "QT_QPA_PLATFORMTHEME": "lxqt", "XDG_CONFIG_DIRS": "/etc:/etc/xdg:/usr/share"}
    command = ("lxqt-session",)
    bar = ("bottom", 40)

    def prepare(self):
        self.room.write(".config/lxqt/session.conf", "[General]\nwindow_manager=openbox\n")

    def is_ready(self):
        return self.shows("^lxqt-panel$")

    def terminal(self, title, folder, command):
        detached(["qterminal", "-w", folder, "-e", " ".join(str(word) for word in command)])

    def set_dark(self, is_dark):
        # LXQt keeps the window colours in its own configuration, which its Qt plugin watches.
        file = self.scratch.home / ".config/lxqt/lxqt.conf"
        colors = "#2b2b2b #f0f0f0" if is_dark else "#efefef #000000"
        window, text = colors.split()
        lines = [line for line in (file.read_text() if file.exists() else "").splitlines()]
        head = [line for line in lines if not line.startswith(("window_color", "window_text_color", "base_color", "text_color"))]
        if "[Palette]" in head:
            head.remove("[Palette]")
        file.write_text("\n".join([*head, "[Palette]", f"window_color={window}", f"window_text_color={text}",
                                   f"base_color={window}", f"text_color={text}", ""]))

    def end(self):
        # What lxqt-leave calls once its question is answered.
        detached(["gdbus", "call", "--session", "--dest", "org.lxqt.session", "--object-path", "/LXQtSession", "--method",
                  "org.lxqt.session.logout"])


class Mate(X11Session):
    title = "MATE 1.26, X11"
    packages = ("mate-session-manager", "mate-panel", "mate-indicator-applet", "marco", "mate-settings-daemon", "mate-terminal", "caja",
                "mate-desktop", "mate-themes", "gnome-themes-extra", "mate-icon-theme")
    environment = {"XDG_CURRENT_DESKTOP": "MATE", "XDG_SESSION_TYPE": "x11", "XDG_MENU_PREFIX": "mate-"}
    command = ("mate-session",)

    def is_ready(self):
        return self.shows("^mate-panel$")

    def terminal(self, title, folder, command):
        detached(["mate-terminal", "--disable-factory", "-t", title, "--working-directory", folder, "-x", *command])

    def set_dark(self, is_dark):
        self.run("gsettings", "set", "org.mate.interface", "gtk-theme", "Adwaita-dark" if is_dark else "Menta")

    def end(self):
        detached(["mate-session-save", "--force-logout"])


class Kde(Session):
    packages = ("plasma-workspace", "plasma-desktop", "breeze", "konsole", "kactivitymanagerd", "xdg-desktop-portal-kde",
                "kde-cli-tools", "breeze-icon-theme", "qml-module-org-kde-kirigami2", "fonts-noto-core")
    bar = ("bottom", 48)

    def prepare(self):
        self.room.write(".config/startkderc", "[General]\nsystemdBoot=false\n")
        self.room.write(".config/ksplashrc", "[KSplash]\nEngine=none\nTheme=None\n")
        self.room.write(".config/kwalletrc", "[Wallet]\nEnabled=false\n")
        self.room.write(".config/kscreenlockerrc", "[Daemon]\nAutolock=false\n")

    def terminal(self, title, folder, command):
        detached(["konsole", "--separate", "--workdir", folder, "-p", f"tabtitle={title}", "-e", *command])

    def set_dark(self, is_dark):
        self.run("plasma-apply-colorscheme", "BreezeDark" if is_dark else "BreezeLight")

    def end(self):
        detached(["gdbus", "call", "--session", "--dest", "org.kde.ksmserver", "--object-path", "/KSMServer", "--method",
                  "org.kde.KSMServerInterface.logout", "0", "0", "0"])

    def is_ready(self):
        return self.room.owns("--session", "org.kde.plasmashell") and self.room.owns("--session",
                                                                                    "org.kde.StatusNotifierWatcher")


class KdeX11(Kde, X11Session):
    title = "KDE Plasma 5.27, X11"
    packages = (*Kde.packages, "kwin-x11")
    environment = {"XDG_CURRENT_DESKTOP": "KDE", "XDG_SESSION_TYPE": "x11", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}
    command = ("startplasma-x11",)
    start = X11Session.start


KWIN = """#!/bin/sh
# A copy of the program, since files with capabilities cannot be run everywhere.
exec {program} --virtual --width {width} --height {height} --no-lockscreen "$@"
"""


class KdeWayland(Kde):
    title = "KDE Plasma 5.27, Wayland"
    packages = (*Kde.packages, "kwin-wayland", "plasma-workspace-wayland", "xwayland")
    environment = {"XDG_CURRENT_DESKTOP": "KDE", "XDG_SESSION_TYPE": "wayland", "KDE_FULL_SESSION": "true",
                   "KDE_SESSION_VERSION": "5", "KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1",
                   "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1"}
    is_wayland = True

    def prepare(self):
        super().prepare()
        # KWin's platform plugin works only in a program of this name.
        copy = self.scratch.home / ".local/lib/kwin_wayland"
        copy.parent.mkdir()
        shutil.copyfile("/usr/bin/kwin_wayland", copy)
        copy.chmod(0o755)
        start = self.room.write(".local/bin/kwin_wayland", KWIN.format(program=copy, width=WIDTH, height=HEIGHT))
        start.chmod(0o755)

    def start(self):
        self.room.start_session_bus()
        process = self.scratch.start("session", ["startplasma-wayland"])

        def take_environment():
            for name in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY"):
                value = self.room.environment_of("plasmashell", name) or self.room.environment_of("ksmserver", name)
                if value:
                    os.environ[name] = value
            return "DISPLAY" in os.environ and "WAYLAND_DISPLAY" in os.environ

        see(take_environment, 90, "Plasma did not start", self.scratch.printed("session"))
        return process

    def hands(self):
        import hands
        return hands.KWinHands(self.scratch)


class Gnome(Session):
    packages = ("gnome-shell", "gnome-settings-daemon", "gnome-terminal", "pipewire", "wireplumber", "adwaita-icon-theme",
                "fonts-cantarell", "xdg-desktop-portal", "xdg-desktop-portal-gnome", "gsettings-desktop-schemas", "xwayland")
    environment = {"XDG_CURRENT_DESKTOP": "GNOME", "XDG_SESSION_TYPE": "wayland", "GNOME_SHELL_SESSION_MODE": "user",
                   "MUTTER_DEBUG_DUMMY_MODE_SPECS": f"{WIDTH}x{HEIGHT}"}
    no_autostart = "GNOME's session manager needs the user's systemd, which a scratch session has not"
    extensions = "[]"
    no_entries = "GNOME's bar has none"
    opens_by_double_click = True
    shell = ("gnome-shell", "--headless", "--wayland", "--unsafe-mode", "--virtual-monitor", f"{WIDTH}x{HEIGHT}",
             "--wayland-display", "gnome-0")

    def prepare(self):
        # Set through the session bus's dconf, before the Shell reads them.
        self._settings = (("org.gnome.shell", "enabled-extensions", self.extensions),
                          ("org.gnome.shell", "welcome-dialog-last-shown-version", "99"),
                          ("org.gnome.desktop.interface", "enable-hot-corners", "false"),
                          ("org.gnome.desktop.screensaver", "lock-enabled", "false"),
                          ("org.gnome.desktop.session", "idle-delay", "0"))

    def start_shell(self):
        for setting in self._settings:
            self.run("gsettings", "set", *setting)
        process = self.scratch.start("session", self.shell)
        see(lambda: self.evaluate("Main.overview.hide(); true"), 90, "GNOME Shell did not start", self.scratch.printed("session"))
        self.scratch.start("settings", ["/usr/libexec/gsd-xsettings"])
        return process

    def evaluate(self, code):
        """Whether GNOME Shell could run a line of JavaScript."""
        return "(true" in self.run("gdbus", "call", "--session", "--dest", "org.gnome.Shell", "--object-path", "/org/gnome/Shell",
                                   "--method", "org.gnome.Shell.Eval", code).stdout

    def is_ready(self):
        return self.evaluate("if (Main.layoutManager._startingUp) throw new Error(); Main.overview.hide(); "
                             "if (Main.overview.visible) throw new Error(); true")

    def terminal(self, title, folder, command):
        detached(["gnome-terminal", "--title", title, "--working-directory", folder, "--", *command])

    def set_dark(self, is_dark):
        self.set_gnome_dark(is_dark)

    def end(self):
        self.run("gdbus", "call", "--session", "--dest", "org.gnome.Shell", "--object-path", "/org/gnome/Shell", "--method",
                 "org.gnome.Shell.Eval", "global.context.terminate()")


class GnomeX11(Gnome):
    title = "GNOME 43 with the AppIndicator extension, X11"
    packages = (*Gnome.packages, "gnome-shell-extension-appindicator")
    environment = {**Gnome.environment, "XDG_SESSION_TYPE": "x11"}
    extensions = "['ubuntu-appindicators@ubuntu.com']"
    shell = ("gnome-shell", "--x11", "--unsafe-mode")
    display = None

    def start(self):
        self.display = self.room.start_display(WIDTH, HEIGHT)
        self.room.start_session_bus()
        self.room.publish_environment()
        return self.start_shell()


class GnomeWayland(Gnome):
    title = "GNOME 43 with the AppIndicator extension, Wayland"
    packages = (*Gnome.packages, "gnome-shell-extension-appindicator")
    extensions = "['ubuntu-appindicators@ubuntu.com']"
    is_wayland = True
    no_jump = "GNOME lets no program raise another one's native window"

    def start(self):
        self.room.start_session_bus()
        self.room.publish_environment()
        self.scratch.start("pipewire", ["pipewire"])
        self.scratch.start("wireplumber", ["wireplumber"])
        process = self.start_shell()
        os.environ["WAYLAND_DISPLAY"] = "gnome-0"

        def take_environment():
            for number in self.room.processes("Xwayland"):
                with open(f"/proc/{number}/cmdline", encoding="utf-8") as file:
                    words = file.read().split("\0")
                os.environ["DISPLAY"] = next(word for word in words if word.startswith(":"))
                os.environ["XAUTHORITY"] = words[words.index("-auth") + 1]
                return True
            # It starts with the first X client; the sockets are there before.
            files = sorted(self.scratch.runtime.glob(".mutter-Xwaylandauth.*"))
            if files:
                os.environ["XAUTHORITY"] = str(files[0])
                os.environ["DISPLAY"] = ":0"
                return self.run("xprop", "-root", "_NET_SUPPORTED").returncode == 0
            return False

        see(take_environment, 60, "Xwayland did not start", self.scratch.printed("session"))
        self.room.publish_environment()
        return process

    def hands(self):
        import hands
        return hands.MutterHands(self.scratch)


class GnomeBare(GnomeWayland):
    title = "GNOME 43 as Debian ships it (no icons), Wayland"
    packages = Gnome.packages
    extensions = "[]"
    bar = (None, 0)


class Cinnamon(X11Session):
    title = "Cinnamon 5.6, X11"
    packages = ("cinnamon", "cinnamon-session", "gnome-terminal", "gnome-themes-extra", "nemo", "cinnamon-settings-daemon", "xapp-sn-watcher")
    environment = {"XDG_CURRENT_DESKTOP": "X-Cinnamon", "XDG_SESSION_TYPE": "x11"}
    command = ("cinnamon-session",)
    bar = ("bottom", 44)

    def is_ready(self):
        return self.room.owns("--session", "org.Cinnamon") and self.room.owns("--session", "org.kde.StatusNotifierWatcher")

    def terminal(self, title, folder, command):
        detached(["gnome-terminal", "--title", title, "--working-directory", folder, "--", *command])

    def set_dark(self, is_dark):
        theme = "Adwaita-dark" if is_dark else "Adwaita"
        self.run("gsettings", "set", "org.cinnamon.desktop.interface", "gtk-theme", theme)

    def end(self):
        detached(["cinnamon-session-quit", "--logout", "--force", "--no-prompt"])


SESSIONS = {"xfce": Xfce, "sway": Sway, "lxqt": Lxqt, "mate": Mate, "kde-x11": KdeX11, "kde-wayland": KdeWayland,
            "gnome-x11": GnomeX11, "gnome-wayland": GnomeWayland, "cinnamon": Cinnamon, "gnome-bare": GnomeBare}
