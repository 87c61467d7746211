"""An installation as the desktop uses it: menu entry, bus, actions, tray, start at login.

PINDLE_PREFIX is where it is installed; PINDLE_CALENDAR is "server" where the events are expected in
the calendar server, else they are expected in the folder.
"""

import configparser
import os
import shlex
import shutil
import subprocess
import sys
import unittest

import desktop
import icalendar
from desktop import Editor, Pindle, Process
from gi.repository import Gio

PREFIX = os.environ["PINDLE_PREFIX"]
PROGRAM = os.path.realpath(os.path.join(PREFIX, "bin", "pindle"))
ID = "app.pindle.Pindle"
ENTRY = os.path.join(PREFIX, "share", "applications", f"{ID}.desktop")
os.environ["PATH"] = f"{PREFIX}/bin:{os.environ['PATH']}"  # as a session finds programs
SENTENCE = "Team lunch on Friday, March 12, 2027 from 12:30 to 13:30 at Café Luna"
START = 1804851000  # that day, 12:30 in Berlin, in seconds since 1970


def running():
    """Process identifiers of the installed program on this desktop."""
    mark = f"PINDLE_DESKTOP_ROOT={os.environ['PINDLE_DESKTOP_ROOT']}".encode()
    found = []
    for name in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{name}/environ", "rb") as environ:
                marked = mark in environ.read().split(b"\0")
            if marked and os.readlink(f"/proc/{name}/exe") == PROGRAM:
                found.append(int(name))
        except OSError:
            pass  # it ended, or is another user's
    return found


class Running(Pindle):
    """The program that something else on the desktop started."""

    def __init__(self):  # pylint: disable=super-init-not-called
        (self.pid,) = desktop.wait_for(running, "the installed program to run")
        desktop.wait_for(lambda: desktop.application(self.pid), "it to join the accessibility bus")
        desktop.time.sleep(0.4)  # as in Pindle


def server_events():
    script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "server_events.py")
    done = subprocess.run([sys.executable, script], stdout=subprocess.PIPE, text=True, timeout=30,
                          check=True)
    return done.stdout


class Installed(unittest.TestCase):
    def setUp(self):
        for folder in ("XDG_CONFIG_HOME", "XDG_DATA_HOME"):
            shutil.rmtree(os.path.join(os.environ[folder], "pindle"), ignore_errors=True)
        self.addCleanup(self.end_all)

    @staticmethod
    def end_all():
        for pid in running():
            os.kill(pid, 15)
        desktop.wait_for(lambda: not running(), "the program to end")

    @staticmethod
    def start_from_menu():
        """As a menu does, by the bus."""
        Gio.DesktopAppInfo.new_from_filename(ENTRY).launch([], None)
        return Running()

    @staticmethod
    def do(action):
        """As a menu does that offers an entry's actions."""
        Gio.DesktopAppInfo.new_from_filename(ENTRY).launch_action(action, None)

    def highlight(self):
        editor = Editor(f"{SENTENCE}\n")
        self.addCleanup(editor.process.end)
        editor.select_line()
        desktop.move_pointer(900, 100)

    def window_titled(self, pindle, title):
        def look():
            for window in desktop.windows_of(pindle.pid):
                if title in desktop.xdotool("getwindowname", window):
                    return window
            return None
        return desktop.wait_for(look, f"the window {title!r}")

    def test_the_menu_entry_starts_the_installed_program_once(self):
        first = self.start_from_menu()
        self.start_from_menu()
        self.assertEqual(running(), [first.pid])
        first.wait_for_panel()

    def test_the_shortcut_works_and_the_event_is_read_back_by_another_program(self):
        pindle = self.start_from_menu()
        self.highlight()
        desktop.press_shortcut()
        pindle.wait_until_filled()
        desktop.click(pindle.tile("Apple Calendar"))
        pindle.answer_question("Allow")
        pindle.wait_for_text("Event saved to Apple Calendar.")
        if os.environ.get("PINDLE_CALENDAR") == "server":
            self.assertEqual(pindle.calendar_files(), [])
            text = server_events()
        else:
            (path,) = pindle.calendar_files()
            with open(path, encoding="utf-8", newline="") as file:
                text = file.read()
        (event,) = icalendar.Calendar.from_ical(text).walk("VEVENT")
        self.assertEqual(event["SUMMARY"], "Team lunch")
        self.assertEqual(event["LOCATION"], "Café Luna")
        self.assertEqual(event["DTSTART"].dt.timestamp(), START)

    def test_the_capture_action_does_what_the_shortcut_does(self):
        pindle = self.start_from_menu()
        self.highlight()
        self.do("capture")
        pindle.wait_until_filled()
        self.assertEqual(pindle.field("Title"), "Team lunch")

    def test_the_windows_open_by_their_actions(self):
        pindle = self.start_from_menu()
        for action, title in (("settings", "Settings"), ("help", "Help")):
            self.do(action)
            self.window_titled(pindle, title)
        self.assertEqual(running(), [pindle.pid])

    def test_an_entrys_actions_work_without_the_bus_starting_them(self):
        entry = configparser.RawConfigParser(delimiters="=")
        entry.optionxform = str
        entry.read(ENTRY, encoding="utf-8")
        pindle = self.start_from_menu()

        def run(action):
            command = shlex.split(entry[f"Desktop Action {action}"]["Exec"])
            subprocess.run(command, timeout=desktop.DEADLINE, check=True, stdin=subprocess.DEVNULL)

        run("settings")
        self.window_titled(pindle, "Settings")
        run("quit")
        desktop.wait_for(lambda: not running(), "the program to end")

    def test_starting_at_login_starts_the_installed_program(self):
        pindle = self.start_from_menu()
        self.do("settings")
        self.window_titled(pindle, "Settings")
        desktop.click(desktop.wait_for(lambda: desktop.find(pindle.pid, "Launch at login"),
                                       "the switch"))
        autostart = os.path.join(os.environ["XDG_CONFIG_HOME"], "autostart", f"{ID}.desktop")
        desktop.wait_for(lambda: os.path.exists(autostart), "the autostart entry")
        self.do("quit")
        desktop.wait_for(lambda: not running(), "the program to end")
        entry = Gio.DesktopAppInfo.new_from_filename(autostart)
        self.assertEqual(shlex.split(entry.get_string("Exec")), [PROGRAM])
        entry.launch([], None)
        Running()

    def test_the_icon_appears_in_the_tray(self):
        tray = Process(["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request",
                        "--height", "28"])
        self.addCleanup(tray.end)
        desktop.wait_for(lambda: desktop.window_with_class("trayer"), "the tray")
        self.start_from_menu()

        def icon():
            left, top, width, height = desktop.geometry(desktop.window_with_class("trayer"))
            for window in desktop.xdotool("search", "--onlyvisible", "--classname",
                                          "^pindle$").split():
                x, y, across, down = desktop.geometry(window)
                if across <= 32 and down <= 32 and left <= x < left + width and \
                        top <= y < top + height:
                    return window
            return None

        desktop.wait_for(icon, "the icon in the tray")
        folder = os.environ.get("PINDLE_ARTEFACTS")
        if folder:
            os.makedirs(folder, exist_ok=True)
            desktop.screenshot(os.path.join(folder, "installed-tray.png"))


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
