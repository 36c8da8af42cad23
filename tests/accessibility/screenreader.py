# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader gets from LUMA: the accessibility bus, on a virtual display with a window manager."""

import os
import subprocess
import sys
import threading
import time
import traceback
import warnings

# Of names that Debian's bindings still need.
warnings.simplefilter("ignore", DeprecationWarning)
PATIENCE = 90  # seconds for a wait; one that succeeds takes no longer
END = 780  # seconds for a whole case, less than ctest's limit
EVENTS = [
    "object:state-changed:focused",
    "object:state-changed:checked",
    "object:property-change:accessible-name",
    "window:activate",
]


class NotChecked(Exception):
    """The machine lacks something, and this is what."""


def missing():
    try:
        import gi

        gi.require_version("Atspi", "2.0")
    except (ImportError, ValueError):
        raise NotChecked("python3-pyatspi is not installed") from None
    for tool in ["Xvfb", "openbox", "xdotool", "xprop", "gdbus"]:
        if not any(os.access(os.path.join(folder, tool), os.X_OK) for folder in os.get_exec_path()):
            raise NotChecked(f"{tool} is not installed")


class ScreenReader:
    """Starts LUMA by the words of `program` and hears its events. Every wait ends, and so does the whole case."""

    def __init__(self, program):
        missing()
        from gi.repository import Atspi, GLib

        self.atspi = Atspi
        self.main = GLib.MainContext.default()
        self.gone = (GLib.Error, AttributeError)  # what was asked is no longer there, or has no parent
        self.program = program
        self.children = []
        self.hears = None
        self.events = []  # (type, accessible, its name then, detail)
        watchdog = threading.Timer(END, self.give_up)
        watchdog.daemon = True
        watchdog.start()
        try:
            self.start_display()
            self.join_bus()
        except BaseException:
            self.end_children()
            raise

    def join_bus(self):
        # Its first use starts the bus, which may be missing or refused.
        try:
            bus = subprocess.run(
                ["gdbus", "call", "--session", "--timeout", "60", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus", "--method", "org.a11y.Bus.GetAddress"],
                capture_output=True, text=True, timeout=PATIENCE, check=False,
            )  # fmt: skip
        except (OSError, subprocess.TimeoutExpired) as error:
            raise NotChecked(f"no accessibility bus: {error}") from None
        if bus.returncode or self.atspi.init() > 1:
            raise NotChecked(f"no accessibility bus: {bus.stderr.strip()}")
        self.atspi.set_timeout(PATIENCE * 1000, PATIENCE * 1000)
        self.listener = self.atspi.EventListener.new(self.hear)
        for event in EVENTS:
            self.listener.register(event)

    def start_display(self):
        reading, writing = os.pipe()
        self.children.append(
            subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1200x24", "-nolisten", "tcp"], pass_fds=[writing], stderr=subprocess.DEVNULL)
        )
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise NotChecked("Xvfb gives no display")
        os.environ["DISPLAY"] = ":" + number
        self.children.append(subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL))
        self.wait("the window manager", lambda: "window id" in subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], capture_output=True, text=True, check=False).stdout)

    def give_up(self):
        print(f"not finished after {END} seconds", flush=True)
        self.end_children()
        os._exit(1)

    def end_children(self):
        for child in reversed(self.children):
            child.kill()

    def start(self, *arguments):
        """Starts LUMA, or hands the arguments to the LUMA that runs."""
        environment = {**os.environ, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "QT_QPA_PLATFORM": "xcb", "QT_QUICK_BACKEND": "software"}
        self.children.append(subprocess.Popen([*self.program, *arguments], env=environment))

    def hear(self, event):
        source = event.source
        try:
            self.events.append((event.type, source, source.get_name(), event.detail1))
            if self.hears:
                self.hears(*self.events[-1])
        except Exception:  # noqa: BLE001: gone meanwhile
            pass

    def waits(self, seconds, condition):
        """What `condition` gives, as soon as that is true; nothing if it isn't in time."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            while self.main.iteration(False):
                pass
            try:
                found = condition()
            except self.gone:
                found = None
            if found:
                return found
            time.sleep(0.02)
        return None

    def wait(self, what, condition):
        found = self.waits(PATIENCE, condition)
        if not found:
            raise AssertionError(f"waited in vain for {what}")
        return found

    def application(self):
        desktop = self.atspi.get_desktop(0)
        for each in children(desktop):
            if each.get_name() == "luma":
                # Names change; what was read once doesn't count.
                each.set_cache_mask(self.atspi.Cache.NONE)
                return each
        return None

    def windows(self):
        application = self.application()
        return [each for each in children(application) if has(each, "showing")] if application else []

    def new_window(self, known):
        """The active window, once it is none of those in `known`."""
        return self.wait("a new window", lambda: next((each for each in self.windows() if each not in known and has(each, "active")), None))

    def focused(self, start=0):
        """What has got the focus since that event."""
        return [source for kind, source, _, on in self.events[start:] if kind.startswith("object:state-changed:focused") and on == 1]

    def focus(self):
        return next(reversed(self.focused()), None)

    def press(self, key):
        subprocess.run(["xdotool", "key", "--clearmodifiers", key], check=True, timeout=PATIENCE)

    def type(self, text):
        subprocess.run(["xdotool", "type", "--clearmodifiers", text], check=True, timeout=PATIENCE)

    def press_until(self, key, what, condition, interval=5):
        """Again and again: a busy window may lose a key."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            self.press(key)
            if self.waits(interval, condition):
                return
        raise AssertionError(f"waited in vain for {what}")

    def close(self, window):
        self.press_until("ctrl+w", "a window to close", lambda: window not in self.windows())

    def choose(self, window, menu, entry):
        """Chooses an entry of a menu of the menu bar, once it is enabled."""

        def find():
            for each in descendants(window):
                if each.get_role_name() == "menu item" and plain(each.get_name()) == menu:
                    for item in descendants(each):
                        if plain(item.get_name()) == entry and has(item, "enabled"):
                            return item
            return None

        self.wait(f"{menu} > {entry} to be enabled", find).get_action_iface().do_action(0)


def children(accessible):
    found = [accessible.get_child_at_index(i) for i in range(accessible.get_child_count())]
    return [each for each in found if each]


def descendants(accessible):
    for each in children(accessible):
        yield each
        # Another program's tree: the page itself.
        if not each.get_role_name().startswith("document"):
            yield from descendants(each)


def states(accessible):
    return {state.value_nick for state in accessible.get_state_set().get_states()}


def has(accessible, state):
    return state in states(accessible)


def plain(name):
    return name.replace("&", "").rstrip(".…")


def run(program, case):
    """Ends the process: with 0 if the case found no fault or can't be checked here."""
    reader = None
    status = 1
    try:
        reader = ScreenReader(program)
        faults = list(case(reader))
        print("\n".join(faults))
        status = 1 if faults else 0
    except NotChecked as error:
        print(f"not checked: {error}")
        status = 0
    except AssertionError as error:
        print(error)
    except Exception:  # noqa: BLE001: the exit below would hide it
        traceback.print_exc(file=sys.stdout)
    finally:
        if reader:
            reader.end_children()
        sys.stdout.flush()
        os._exit(status)
