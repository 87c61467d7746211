"""Drives a private desktop the way a person does: starts programs, presses keys, clicks, looks.

Everything waits for what it needs, with a deadline, and says what it waited for when that passes.
"""

import os
import shutil
import signal
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402


DEADLINE = 10.0  # seconds anything on the desktop may take
POLL = 0.02  # seconds between two looks


class DesktopError(Exception):
    """Something did not happen on the desktop in time."""


def require_private_desktop():
    if os.environ.get("PINDLE_PRIVATE_DESKTOP") != "1":
        raise SystemExit("This drives a desktop made for it only: run it through scripts/private-desktop.")


def wait_for(look, what, seconds=DEADLINE):
    """The first true value of look(), else a DesktopError naming `what`."""
    end = time.monotonic() + seconds
    while True:
        try:
            found = look()
        except GLib.Error:
            found = None  # the accessible went away between two calls
        if found:
            return found
        if time.monotonic() > end:
            keep_picture()
            raise DesktopError(f"waited {seconds:g} s for {what}")
        time.sleep(POLL)


def keep_picture():
    """What the screen showed when something failed, among the test's artefacts."""
    folder = os.environ.get("PINDLE_ARTEFACTS")
    if folder:
        os.makedirs(folder, exist_ok=True)
        screenshot(os.path.join(folder, f"failed-{os.path.basename(sys.argv[0])}.png"))


def stays(look, seconds):
    """Whether look() is true now and for as long as this."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not look():
            return False
        time.sleep(POLL)
    return True


class Process:
    """A program on the desktop; its output goes to the desktop's log folder."""

    def __init__(self, command, **environment):
        name = os.path.basename(command[0])
        root = os.environ["PINDLE_DESKTOP_ROOT"]
        self.log_path = os.path.join(root, "log", f"{name}.{time.monotonic_ns()}.log")
        with open(self.log_path, "wb") as log:
            self.process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                env={**os.environ, **environment})

    @property
    def pid(self):
        return self.process.pid

    def is_running(self):
        return self.process.poll() is None

    def log(self):
        with open(self.log_path, "rb") as log:
            return log.read().decode(errors="replace")

    def end(self):
        if self.is_running():
            self.process.send_signal(signal.SIGCONT)
            self.process.terminate()
            try:
                self.process.wait(3)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait(3)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()


def xdotool(*arguments, display=None):
    """Runs xdotool and returns what it printed; failure gives an empty text."""
    environment = dict(os.environ)
    if display:
        environment["DISPLAY"] = display
    done = subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True,
                          timeout=DEADLINE, env=environment, check=False)
    return done.stdout.strip() if done.returncode == 0 else ""


def press(*keys, display=None):
    """Presses key combinations one after another, as XTest events of the given display."""
    xdotool("key", "--clearmodifiers", *keys, display=display)


def press_shortcut(letter="e"):
    press(f"super+shift+{letter}")


def windows_of(pid):
    """Identifiers of the windows a process shows, as xdotool prints them."""
    return xdotool("search", "--onlyvisible", "--pid", pid).split()


def active_window():
    return xdotool("getactivewindow")


def window_with_class(name):
    found = xdotool("search", "--onlyvisible", "--class", name).split()
    return found[-1] if found else None


def activate(window):
    xdotool("windowactivate", window)
    wait_for(lambda: active_window() == window, "the window to become the active one")


def titled(title):
    """The window with this title while it is shown, else None."""
    found = xdotool("search", "--onlyvisible", "--name", f"^{title}$").split()
    return found[-1] if found else None


def press_in(find_window, *keys):
    """Presses keys once the window has the keyboard, which it gets some time after it is shown."""
    wait_for(lambda: (lambda window: window and active_window() == window)(find_window()),
             "the window to have the keyboard")
    press(*keys)


def geometry(window):
    """x, y, width and height of a window, in pixels of the screen."""
    lines = xdotool("getwindowgeometry", "--shell", window).splitlines()
    values = dict(line.split("=", 1) for line in lines)
    return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))


def move_pointer(x, y):
    xdotool("mousemove", x, y)


def click_at(x, y):
    xdotool("mousemove", int(x), int(y), "click", 1)


def screenshot(path):
    subprocess.run(["import", "-window", "root", path], check=True, timeout=DEADLINE)
    return path


# The accessibility tree, as a screen reader sees it.


def application(pid):
    """The accessible of a process, or None."""
    desktop = Atspi.get_desktop(0)
    desktop.clear_cache()
    for index in range(desktop.get_child_count()):
        child = desktop.get_child_at_index(index)
        if child and child.get_process_id() == pid:
            return child
    return None


def walk(accessible):
    """The accessible and all below it, top to bottom."""
    if accessible is None:
        return
    accessible.clear_cache()
    yield accessible
    for index in range(accessible.get_child_count()):
        yield from walk(accessible.get_child_at_index(index))


def is_showing(accessible):
    states = accessible.get_state_set()
    return states.contains(Atspi.StateType.SHOWING) and states.contains(Atspi.StateType.VISIBLE)


def is_enabled(accessible):
    return accessible.get_state_set().contains(Atspi.StateType.ENABLED)


def find(pid, name=None, role=None):
    """The first control of a process that shows, with this name and role, or None."""
    for accessible in walk(application(pid)):
        if name is not None and accessible.get_name() != name:
            continue
        if role is not None and accessible.get_role_name() != role:
            continue
        if is_showing(accessible):
            return accessible
    return None


def texts(pid):
    """Names of everything a process shows."""
    return [accessible.get_name() for accessible in walk(application(pid))
            if is_showing(accessible) and accessible.get_name()]


def value(accessible):
    text = accessible.get_text_iface()
    return Atspi.Text.get_text(text, 0, -1) if text else None


def center(accessible):
    extents = accessible.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
    return extents.x + extents.width / 2, extents.y + extents.height / 2


def click(accessible):
    click_at(*center(accessible))


def clipboard():
    """The clipboard's text, or None; asked of its owner as any program would."""
    done = subprocess.run(["xclip", "-selection", "clipboard", "-o"], capture_output=True,
                          timeout=DEADLINE, check=False)
    return done.stdout.decode() if done.returncode == 0 else None


def set_clipboard(text):
    # xclip stays behind to serve the text and would keep our pipes open.
    subprocess.run(["xclip", "-selection", "clipboard"], input=text.encode(), timeout=DEADLINE,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
    # It also takes the clipboard some time after the command ended.
    wait_for(lambda: clipboard() == text, "the clipboard to have the text")


class Pindle:
    """The program under test on this desktop, and its panel."""

    FIELDS = ("Title", "Start Date", "Start Time", "End Date", "End Time", "Time Zone", "Location",
              "Description")

    def __init__(self, program, **environment):
        self.process = Process([program], **environment)
        self.pid = self.process.pid
        wait_for(lambda: application(self.pid), "Pindle to join the accessibility bus")
        # Start-up is done, and with it the grab, when the first press has been made ready.
        time.sleep(0.4)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.end()

    def panel_window(self):
        """The panel's window while it is shown, else None."""
        for window in windows_of(self.pid):
            if geometry(window)[2:] == (420, 560):
                return window
        return None

    def wait_for_panel(self):
        return wait_for(self.panel_window, "the panel to be shown")

    def wait_until_hidden(self):
        try:
            wait_for(lambda: not self.panel_window(), "it")
        except DesktopError:
            raise DesktopError(f"waited for the panel to be hidden; the active window is "
                               f"{xdotool('getactivewindow', 'getwindowname')!r}, Pindle's windows "
                               f"show {texts(self.pid)}") from None

    def hide_with_escape(self):
        press_in(self.panel_window, "Escape")
        self.wait_until_hidden()

    def wait_until_filled(self):
        """Waits for the event form of a ready draft."""
        return wait_for(lambda: find(self.pid, "Event Details"), "the filled panel")

    def wait_for_text(self, text):
        try:
            return wait_for(lambda: any(text in shown for shown in texts(self.pid)), "it")
        except DesktopError:
            raise DesktopError(f"waited for the text {text!r}; Pindle's windows show "
                               f"{texts(self.pid)}") from None

    def field(self, name):
        """The text of one field of the form."""
        for accessible in walk(application(self.pid)):
            if accessible.get_name() == name and accessible.get_text_iface() and \
                    accessible.get_state_set().contains(Atspi.StateType.EDITABLE):
                return value(accessible)
        raise DesktopError(f"the panel has no field named {name}")

    def draft(self):
        return {name: self.field(name) for name in self.FIELDS}

    def scroll_to_end(self):
        x, y, width, height = geometry(self.wait_for_panel())
        move_pointer(x + width // 2, y + height // 2)
        for _ in range(12):
            xdotool("click", 5)

    def tile(self, name):
        """A tile, once it can be clicked where it is."""
        self.scroll_to_end()
        return wait_for(lambda: (lambda t: t if t and is_enabled(t) else None)(find(self.pid, name)),
                        f"the tile {name!r} to be enabled")

    def answer_question(self, button):
        """Clicks a button of a question on the screen."""
        click(wait_for(lambda: find(self.pid, button), f"the question with {button!r}"))

    @staticmethod
    def calendar_files():
        folder = os.path.join(os.environ["XDG_DATA_HOME"], "pindle", "calendar")
        if not os.path.isdir(folder):
            return []
        return sorted(os.path.join(folder, name) for name in os.listdir(folder)
                      if name.endswith(".ics"))


class Editor:
    """A text editor with a text in it."""

    def __init__(self, text, command=("mousepad", "--disable-server"), window_class="mousepad",
                 name=None):
        root = os.environ["PINDLE_DESKTOP_ROOT"]
        self.path = os.path.join(root, name or f"note-{time.monotonic_ns()}.txt")
        with open(self.path, "w", encoding="utf-8") as file:
            file.write(text)
        self.process = Process([*command, self.path])
        self.pid = self.process.pid
        self.window = wait_for(lambda: window_with_class(window_class), f"{command[0]} to open")
        activate(self.window)
        wait_for(lambda: application(self.pid), f"{command[0]} to join the accessibility bus")
        time.sleep(0.3)  # the editor takes the file in after its window is up

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.end()

    def select_line(self, number=1):
        """Highlights a line by keys, without its line break."""
        press("ctrl+Home", *["Down"] * (number - 1), "Home", "shift+End")
        time.sleep(0.1)


def keep(path, folder):
    os.makedirs(folder, exist_ok=True)
    return shutil.copy(path, folder)
