"""The icon in the desktop's own places for icons: a system tray (trayer) and a panel that takes
status notifier items (xfce4-panel); each there from the start, restarted, and late."""

import os
import re
import subprocess
import time
import unittest

import desktop
from desktop import Pindle, Process

PROGRAM = os.environ["PINDLE_PROGRAM"]
SETTINGS, QUIT = 4, 5  # the items' numbers, separators left out
XFCE_PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="30"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
"""


class Trayer:
    """A system tray at the bottom right."""

    def __init__(self, *options):
        self.process = Process(["trayer", "--edge", "bottom", "--align", "right", "--widthtype",
                                "pixel", "--width", "200", "--height", "28", "--SetDockType",
                                "true", "--SetPartialStrut", "true", *options])
        desktop.wait_for(lambda: desktop.window_with_class("trayer"), "trayer")

    def end(self):
        self.process.end()


class XfcePanel:
    """A panel at the top that shows status notifier items."""

    def __init__(self):
        folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "xfce4", "xfconf",
                              "xfce-perchannel-xml")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "xfce4-panel.xml"), "w", encoding="ascii") as file:
            file.write(XFCE_PANEL)
        self.process = Process(["xfce4-panel", "--disable-wm-check", "--sm-client-disable"])
        desktop.wait_for(self.is_host, "the panel to take items", 20)
        time.sleep(0.5)

    @staticmethod
    def is_host():
        return "b true" in watcher("IsStatusNotifierHostRegistered")

    def end(self):
        self.process.end()
        desktop.wait_for(lambda: not self.is_host(), "the panel to be gone")


def watcher(name):
    """A property of the status notifier watcher, as busctl prints it."""
    return subprocess.run(["busctl", "--user", "get-property", "org.kde.StatusNotifierWatcher",
                           "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher", name],
                          capture_output=True, text=True, timeout=desktop.DEADLINE,
                          check=False).stdout


def picture():
    path = os.path.join(os.environ["PINDLE_DESKTOP_ROOT"], f"screen-{time.monotonic_ns()}.png")
    return desktop.screenshot(path)


def difference(one, other):
    """Where two pictures differ: x, y, width, height of the smallest rectangle; None for nowhere."""
    done = subprocess.run(["convert", one, other, "-compose", "difference", "-composite",
                           "-threshold", "8%", "-format", "%@", "info:"], capture_output=True,
                          text=True, timeout=desktop.DEADLINE, check=False)
    found = re.fullmatch(r"(\d+)x(\d+)\+(\d+)\+(\d+)", done.stdout.strip())
    if not found:
        return None
    width, height, x, y = map(int, found.groups())
    # Two pictures that are alike give the whole picture, or a single pixel of it.
    return (x, y, width, height) if 2 < width < 400 else None


def keep(name):
    folder = os.environ["PINDLE_ARTEFACTS"]
    os.makedirs(folder, exist_ok=True)
    return desktop.screenshot(os.path.join(folder, name))


class Icon:
    """What any host's icon has to do; each class below is one host."""

    host = None  # makes the host
    name = ""

    def setUp(self):
        desktop.move_pointer(640, 400)

    def begin(self, late=False):
        """The bare host's picture, then the program; or first the program."""
        if late:
            bare = self.host()
            self.bare = picture()
            bare.end()
            self.start_pindle()
            self.at = self.host()
        else:
            self.at = self.host()
            self.bare = picture()
            self.start_pindle()
        self.addCleanup(lambda: self.at.end())

    def start_pindle(self):
        self.pindle = Pindle(PROGRAM)
        self.addCleanup(self.pindle.process.end)

    def icon(self):
        """The icon's rectangle on the screen, once it has come to rest there."""
        desktop.move_pointer(640, 600)  # where it brings no tool tip

        def look():
            first = difference(self.bare, picture())
            time.sleep(0.1)
            return first if first and first == difference(self.bare, picture()) else None
        return desktop.wait_for(look, f"the icon in {self.name}")

    def click(self, icon, button=1):
        x, y, width, height = icon
        desktop.xdotool("mousemove", x + width // 2, y + height // 2, "click", button)

    def toggle_twice(self, icon):
        for _ in range(2):
            self.click(icon)
            self.pindle.wait_for_panel()
            self.click(icon)
            self.pindle.wait_until_hidden()

    def test_left_clicks_show_and_hide_the_panel_under_the_icon(self):
        self.begin()
        icon = self.icon()
        self.click(icon)
        x, y, width, height = desktop.geometry(self.pindle.wait_for_panel())
        middle = icon[0] + icon[2] / 2
        self.assertLessEqual(abs(min(max(middle - 210, 18), 1280 - 420 - 18) - x), 6)
        near_top = icon[1] < 400
        gap = y - (icon[1] + icon[3]) if near_top else icon[1] - (y + height)
        self.assertLess(gap, 40)
        self.assertGreaterEqual(gap, 0)
        self.click(icon)
        self.pindle.wait_until_hidden()
        self.toggle_twice(icon)
        self.assertEqual(self.pindle.calendar_files(), [])

    def test_a_left_click_hides_a_panel_that_has_the_keyboard(self):
        self.begin()
        icon = self.icon()
        self.click(icon)
        window = self.pindle.wait_for_panel()
        desktop.click(desktop.wait_for(lambda: desktop.find(self.pindle.pid, "Ready when you are"),
                                       "the panel's text"))
        desktop.wait_for(lambda: desktop.active_window() == window, "the panel to be active")
        self.click(icon)
        self.pindle.wait_until_hidden()
        self.assertTrue(desktop.stays(lambda: not self.pindle.panel_window(), 0.5))

    def test_a_right_click_hides_the_panel_and_shows_the_menu(self):
        self.begin()
        icon = self.icon()
        self.click(icon)
        self.pindle.wait_for_panel()
        self.click(icon, 3)
        self.pindle.wait_until_hidden()
        self.wait_for_menu()
        time.sleep(0.2)
        keep(f"menu-{self.name}.png")
        desktop.press("Escape")
        self.wait_until_menu_closed()
        self.assertIsNone(self.pindle.panel_window())
        self.toggle_twice(icon)

    def test_the_menu_opens_the_settings_and_quits(self):
        self.begin()
        icon = self.icon()
        self.choose(icon, SETTINGS)
        window = desktop.wait_for(self.settings, "the settings")
        desktop.wait_for(lambda: desktop.active_window() == window, "them to come to the front")
        desktop.press("alt+F4")
        desktop.wait_for(lambda: not self.settings(), "the settings to be closed")
        self.choose(icon, QUIT)
        self.assertEqual(self.pindle.process.process.wait(desktop.DEADLINE), 0)
        desktop.wait_for(lambda: not difference(self.bare, picture()), "the icon to be gone")

    def test_a_host_that_is_restarted_has_the_icon_again(self):
        self.begin()
        self.icon()
        for _ in range(2):
            self.at.end()
            time.sleep(0.3)
            self.at = self.host()
            self.toggle_twice(self.icon())

    def test_a_host_that_starts_later_gets_the_icon(self):
        self.begin(late=True)
        icon = self.icon()
        self.toggle_twice(icon)
        self.click(icon, 3)
        self.wait_for_menu()
        desktop.press("Escape")
        self.wait_until_menu_closed()

    @staticmethod
    def settings():
        return desktop.xdotool("search", "--onlyvisible", "--name", "^Settings$")

    # The menu, wherever it is drawn

    def menu_shown(self):
        raise NotImplementedError

    def wait_for_menu(self):
        desktop.wait_for(self.menu_shown, "the menu")

    def wait_until_menu_closed(self):
        desktop.wait_for(lambda: not self.menu_shown(), "the menu to close")

    def choose(self, icon, number):
        """Chooses an item by keys; separators do not count."""
        self.click(icon, 3)
        self.wait_for_menu()
        time.sleep(0.2)
        desktop.press(*["Down"] * number, "Return")


class InTrayer(Icon, unittest.TestCase):
    host = Trayer
    name = "trayer"

    def menu_shown(self):
        sizes = [desktop.geometry(w)[2:] for w in desktop.windows_of(self.pindle.pid)]
        return any(width < 300 and height < 300 for width, height in sizes)

    def test_key_equivalents_work_while_the_menu_is_open(self):
        self.begin()
        self.click(self.icon(), 3)
        self.wait_for_menu()
        desktop.press("ctrl+comma")
        desktop.wait_for(self.settings, "the settings")
        self.wait_until_menu_closed()
        desktop.press("ctrl+q")
        self.assertTrue(desktop.stays(self.pindle.process.is_running, 0.5), "the menu is closed")
        self.click(self.icon_rect(), 3)
        self.wait_for_menu()
        desktop.press("ctrl+q")
        self.assertEqual(self.pindle.process.process.wait(desktop.DEADLINE), 0)

    def icon_rect(self):
        window = desktop.xdotool("search", "--onlyvisible", "--classname", "^pindle$").split()
        small = [g for g in map(desktop.geometry, window) if g[2] < 64]
        return small[0]

    def test_the_icon_stands_out_on_dark_and_on_light(self):
        for tint, background in (("0x000000", 0), ("0xffffff", 255)):
            with self.subTest(background=background):
                self.at = Trayer("--transparent", "true", "--alpha", "0", "--tint", tint)
                self.bare = picture()
                pindle = Pindle(PROGRAM)
                x, y, width, height = self.icon()
                shown = subprocess.run(
                    ["convert", picture(), "-crop", f"{width}x{height}+{x}+{y}", "-colorspace",
                     "gray", "-format", "%[fx:255*minima] %[fx:255*maxima]", "info:"],
                    capture_output=True, text=True, timeout=desktop.DEADLINE, check=True).stdout
                darkest, lightest = map(float, shown.split())
                keep(f"tray-{background}.png")
                pindle.process.end()
                self.at.end()
                self.assertGreater(lightest - darkest, 120)


class InXfcePanel(Icon, unittest.TestCase):
    host = XfcePanel
    name = "xfce4-panel"

    def menu_shown(self):
        # The panel's own menus are no part of the accessibility tree.
        shown = difference(self.bare, picture())
        return shown is not None and shown[2] > 100 and shown[3] > 100

    def test_the_icon_is_told_over_the_bus_and_is_no_window(self):
        self.begin()
        self.icon()
        self.assertIn("/StatusNotifierItem", watcher("RegisteredStatusNotifierItems"))
        small = [w for w in desktop.windows_of(self.pindle.pid) if desktop.geometry(w)[2] < 64]
        self.assertEqual(small, [])
        named = desktop.xdotool("search", "--onlyvisible", "--classname", "^pindle$").split()
        self.assertEqual([w for w in named if desktop.geometry(w)[2] < 64], [])


class BetweenHosts(unittest.TestCase):
    """A desktop where one kind of place takes the other's turn."""

    def test_the_icon_moves_to_whatever_host_there_is(self):
        pindle = Pindle(PROGRAM)
        self.addCleanup(pindle.process.end)

        def embedded():
            windows = desktop.xdotool("search", "--onlyvisible", "--classname", "^pindle$").split()
            return [w for w in windows if desktop.geometry(w)[2] < 64]
        tray = Trayer()
        self.addCleanup(tray.end)
        desktop.wait_for(embedded, "the icon in the tray")
        # The panel takes the tray's selection, too, and the tray does not come back to life.
        panel = XfcePanel()
        self.addCleanup(panel.process.end)
        desktop.wait_for(lambda: not embedded(), "the icon to leave the tray for the panel")
        self.assertIn("/StatusNotifierItem", watcher("RegisteredStatusNotifierItems"))
        panel.end()
        tray.end()
        late = Trayer()
        self.addCleanup(late.end)
        desktop.wait_for(embedded, "the icon back in a tray")


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
