"""A screen of its own on which a program is shown, used with mouse and keys, and photographed.

Nothing is shared with the user's desktop: the X server, the window manager and the message bus are started here and ended
again, and the program finds an empty home folder. Controls are looked up through the accessibility interface, so the
scenes do not depend on where a control stands. Every look-up waits for what it looks for, up to PATIENCE seconds.

One Screen a process: the accessibility library keeps its first connection.
"""

import os
import re
import subprocess
import tempfile
import time
from pathlib import Path

PATIENCE = 15.0
BLINK = 0.6  # seconds; a text cursor comes or goes every half second
LOOKS = 8  # at an unchanged screen, however slow the machine is, before no cursor blinks there
WINDOWS = ("frame", "window", "dialog", "alert", "file chooser")


class NotShown(Exception):
    """What was looked for did not come up in time."""


def wait_for(condition, what):
    """The value of condition() as soon as it is a true one. A look-up that fails is one that came too early."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            value = condition()
        except Exception:  # the bus tells in many ways that a control has just gone
            value = None
        if value:
            return value
        time.sleep(0.03)
    raise NotShown(f"{what} did not come up within {PATIENCE:g} s")


class Screen:
    """The X server with its window manager and message bus; a context manager."""

    def __init__(self, width, height):
        self.width, self.height = width, height
        self.processes = []

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory(prefix="vantor-pictures-")
        try:
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
            try:
                process.wait(3)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        self.folder.cleanup()

    def _start(self):
        home = self.folder.name + "/operator"
        os.mkdir(home, 0o700)
        self.home = Path(home)
        own = {name: value for name, value in os.environ.items()
               if not name.startswith(("QT_", "XDG_", "DBUS_", "AT_SPI", "WAYLAND_", "LC_"))}
        self.environment = dict(own, HOME=home, XDG_RUNTIME_DIR=home, LANG="C.UTF-8", TZ="UTC",
                                DBUS_SESSION_BUS_ADDRESS=f"unix:path={home}/bus")
        read_end, write_end = os.pipe()
        self.spawn(["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{self.width}x{self.height}x24",
                    "-nolisten", "tcp", "-noreset", "-nocursor", "-fbdir", home], pass_fds=(write_end,))
        os.close(write_end)
        with os.fdopen(read_end) as number:  # written when the server is ready
            display = number.readline().strip()
        if not display:
            raise NotShown("The X server")
        self.memory = Path(home, "Xvfb_screen0")  # the pixels, as a file that ImageMagick reads
        self.environment["DISPLAY"] = ":" + display
        self.spawn(["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address=unix:path={home}/bus"])
        wait_for(lambda: os.path.exists(home + "/bus"), "The message bus")
        # Accessible are the programs to be photographed, not those that serve here.
        self.environment["NO_AT_BRIDGE"] = "1"
        self.spawn(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        self.spawn(["openbox", "--sm-disable"])
        wait_for(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "The window manager")
        self._connect()

    def _connect(self):
        os.environ.update(self.environment)
        from gi.repository import Gio, GLib
        bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
        answer = wait_for(lambda: bus.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None,
                                                GLib.VariantType("(s)"), Gio.DBusCallFlags.NONE, 2000, None),
                          "The accessibility bus")
        os.environ["AT_SPI_BUS_ADDRESS"] = answer.unpack()[0]  # not for the program: it would not register itself then
        import pyatspi
        from gi.repository import Atspi
        self.accessibility, self.cache = pyatspi, Atspi.Cache
        self.desktop = pyatspi.Registry.getDesktop(0)

    def spawn(self, arguments, **more):
        process = subprocess.Popen(arguments, env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **more)
        self.processes.append(process)
        return process

    def run(self, *arguments):
        """Runs a command on this screen and returns what it printed."""
        return subprocess.run(arguments, env=self.environment, check=True, timeout=30,
                              stdout=subprocess.PIPE, text=True).stdout

    def key(self, *keys):
        self.run("xdotool", "key", "--delay", "15", *keys)

    def type(self, text):
        """Types ASCII text into what has the focus."""
        self.run("xdotool", "type", "--delay", "10", "--", text)

    def click_at(self, x, y, button=1, count=1):
        self.run("xdotool", "mousemove", str(x), str(y),
                 "click", "--repeat", str(count), "--delay", "60", str(button))

    def mouse_to(self, x, y):
        """Comes to the place as a hand does, in more than one step: only then does a tip come up."""
        self.run("xdotool", "mousemove", str(x - 3), str(y), "mousemove", str(x), str(y))

    def mouse_away(self):
        """Moves the mouse where it lights nothing up."""
        self.run("xdotool", "mousemove", str(self.width - 1), str(self.height - 1))

    def photograph(self, file, box=None):
        """Writes what the screen shows once it has come to rest, or the box (x, y, width, height) of it, as a PNG file."""
        x, y, width, height = box or (0, 0, self.width, self.height)
        subprocess.run(["convert", "xwd:-", "-crop", f"{width}x{height}+{x}+{y}", "+repage", "-strip", f"PNG24:{file}"],
                       input=self.at_rest(), env=self.environment, check=True, timeout=60)

    def at_rest(self):
        """The pixels of the screen once nothing changes it any more but a text cursor, which is then there."""
        seen = []
        looks = 0  # at the latest of them
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            shown = self.memory.read_bytes()
            looks += 1
            if not seen or shown != seen[-1]:
                seen = [*seen, shown][-3:]
                changed = time.monotonic()
                looks = 1
            if len(seen) == 3 and seen[0] == seen[2]:
                return min(seen)  # the cursor is dark
            if time.monotonic() - changed > BLINK and looks > LOOKS:
                return shown
            time.sleep(0.05)
        raise NotShown(f"A screen at rest did not come up within {PATIENCE:g} s")


class Control:
    """One control of the program, as the accessibility interface tells of it."""

    def __init__(self, screen, accessible):
        self.screen, self.accessible = screen, accessible

    @property
    def role(self):
        return self.accessible.getRoleName()

    @property
    def name(self):
        return self.accessible.name or ""

    @property
    def showing(self):
        return self.accessible.getState().contains(self.screen.accessibility.STATE_SHOWING)

    @property
    def active(self):
        """Whether it is the window that gets the keys."""
        return self.accessible.getState().contains(self.screen.accessibility.STATE_ACTIVE)

    @property
    def box(self):
        """x, y, width and height on the screen."""
        extents = self.accessible.queryComponent().getExtents(self.screen.accessibility.DESKTOP_COORDS)
        return extents.x, extents.y, extents.width, extents.height

    @property
    def parent(self):
        return Control(self.screen, self.accessible.parent)

    @property
    def children(self):
        found = [self.accessible.getChildAtIndex(index) for index in range(self.accessible.childCount)]
        return [Control(self.screen, child) for child in found if child is not None]

    def all_below(self):
        for child in self.children:
            yield child
            if child.role not in ("table", "tree table"):  # their cells are asked for by row and column
                yield from child.all_below()

    def find_all(self, role, name=None):
        return [control for control in self.all_below()
                if control.role == role and control.showing and name in (None, control.name)]

    def find(self, role, name=None):
        return wait_for(lambda: self.find_all(role, name)[0], f"{role} {name or ''}")

    def cell(self, row, column):
        """The cell of a table, counted from 0, titles not counted."""
        return Control(self.screen, self.accessible.queryTable().getAccessibleAt(row, column))

    def click(self, button=1, count=1):
        x, y, width, height = wait_for(lambda: self.showing and self.box[2] > 0 and self.box, self.name)
        self.screen.click_at(x + width // 2, y + height // 2, button, count)

    def enter(self, text):
        """Puts a text into an edit field by keys."""
        self.click()
        self.screen.key("ctrl+a", "Delete")
        self.screen.type(text)
        wait_for(lambda: self.text == text, f"the text {text}")

    @property
    def text(self):
        field = self.accessible.queryText()
        return field.getText(0, field.characterCount)


class Program:
    """A program running on the screen; a context manager that ends it."""

    def __init__(self, screen, folder, *arguments):
        self.screen = screen
        environment = dict(screen.environment, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        del environment["NO_AT_BRIDGE"]
        self.process = subprocess.Popen(arguments, env=environment, cwd=folder, stdin=subprocess.DEVNULL)
        screen.processes.append(self.process)

    def __enter__(self):
        self.window(1)
        return self

    def __exit__(self, *_):
        self.process.kill()  # it could ask whether to save
        self.process.wait()

    def root(self):
        if self.process.poll() is not None:
            raise NotShown(f"the program ended with {self.process.returncode}; it")
        for index in range(self.screen.desktop.childCount):
            child = self.screen.desktop.getChildAtIndex(index)
            if child is not None and child.get_process_id() == self.process.pid:
                child.set_cache_mask(self.screen.cache.NONE)  # names and lists would stay as first read
                return Control(self.screen, child)
        return None

    def windows(self):
        return [window for window in self.root().children if window.role in WINDOWS and window.showing]

    def window(self, count):
        """The window opened last, as soon as there are that many and it gets the keys."""
        def last():
            windows = self.windows()
            return len(windows) == count and windows[-1].active and windows[-1]
        return wait_for(last, f"window {count}")

    def find(self, role, name=None):
        return wait_for(lambda: self.root().find_all(role, name)[0], f"{role} {name or ''}")

    def open_menu_of(self, control):
        """Opens the menu of a control by a right click. No tree of controls has it, only the X server."""
        def shown():
            return self.screen.run("xdotool", "search", "--onlyvisible", "--class", "vantor").split()
        before = len(shown())
        control.click(button=3)
        wait_for(lambda: len(shown()) > before, f"the menu of {control.name}")

    def frame_box(self):
        """The active window with the frame that the window manager gives it, as x, y, width and height. Asked of the X
        server: the program itself learns late that its window was placed."""
        window = self.screen.run("xdotool", "getactivewindow").strip()
        told = self.screen.run("xwininfo", "-id", window)
        x, y, width, height = (int(re.search(rf"{what}: +(-?\d+)", told)[1])
                               for what in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        frame = self.screen.run("xprop", "-id", window, "-notype", "_NET_FRAME_EXTENTS").split("=")[1]
        left, right, top, bottom = (int(number) for number in frame.split(","))
        return x - left, y - top, width + left + right, height + top + bottom
