"""The settings, the help and the privacy window, with real keys and the real desktop behind them."""

import os
import shutil
import subprocess
import unittest

import desktop
from desktop import Atspi, Editor, Pindle, titled

PROGRAM = os.environ["PINDLE_PROGRAM"]
REFUSAL = "Launch at login could not be updated on this build."
COMPLETED = "Calendar permission check completed."
MAY_PROMPT = ("macOS may show the Accessibility prompt. If it does not, use Open Settings and "
              "verify the installed app entry.")
SENTENCE = "Lunch with Ana on March 12, 2027 at 12:30"


def has_state(accessible, state):
    accessible.clear_cache()
    return accessible.get_state_set().contains(state)


def bus(*arguments):
    done = subprocess.run(["busctl", "--user", *arguments], capture_output=True, text=True,
                          timeout=desktop.DEADLINE, check=True)
    return done.stdout


def accessibility_is_on():
    return "true" in bus("get-property", "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status",
                         "IsEnabled")


def set_accessibility(on):
    bus("set-property", "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status", "IsEnabled", "b",
        "true" if on else "false")


class Announcements:
    """The messages said to begin to show while this is entered."""

    def __enter__(self):
        self.heard = []
        self.listener = Atspi.EventListener.new(self.note)
        self.listener.register("object:state-changed:showing")
        return self

    def note(self, event):
        if event.detail1 == 1 and event.source.get_role() == Atspi.Role.NOTIFICATION:
            self.heard.append(event.source.get_name())

    def wait_for(self, text):
        def look():
            context = desktop.GLib.MainContext.default()
            while context.pending():
                context.iteration(False)
            return text in self.heard

        desktop.wait_for(look, f"the announcement {text!r}, having heard {self.heard}")

    def __exit__(self, *_):
        self.listener.deregister("object:state-changed:showing")


class Windows(unittest.TestCase):
    def setUp(self):
        for folder in ("XDG_CONFIG_HOME", "XDG_DATA_HOME"):
            shutil.rmtree(os.path.join(os.environ[folder], "pindle"), ignore_errors=True)
        self.autostart = os.path.join(os.environ["XDG_CONFIG_HOME"], "autostart")
        if os.path.isfile(self.autostart):
            os.remove(self.autostart)
        shutil.rmtree(self.autostart, ignore_errors=True)
        set_accessibility(True)
        self.pindle = Pindle(PROGRAM)
        self.addCleanup(self.pindle.process.end)
        self.addCleanup(set_accessibility, True)

    def open(self, action, title):
        subprocess.run([PROGRAM, "--action", action], check=True, timeout=desktop.DEADLINE)
        window = desktop.wait_for(lambda: titled(title), f"the window {title!r}")
        desktop.wait_for(lambda: desktop.active_window() == window,
                         f"the window {title!r} to have the keyboard")
        return window

    def find(self, name, role=None):
        return desktop.wait_for(lambda: desktop.find(self.pindle.pid, name, role), f"{name!r}")

    def button(self, name, subject):
        """The button of this name that is about this subject."""
        def look():
            for accessible in desktop.walk(desktop.application(self.pindle.pid)):
                if accessible.get_name() == name and accessible.get_description() == subject:
                    return accessible
            return None

        return desktop.wait_for(look, f"the button {name!r} about {subject!r}")

    def push(self, name, subject):
        """Presses a button with the keyboard."""
        self.button(name, subject).get_component_iface().grab_focus()
        desktop.wait_for(lambda: has_state(self.button(name, subject), Atspi.StateType.FOCUSED),
                         f"the keyboard on {name!r}")
        desktop.press("Return")

    def login_items(self):
        return os.listdir(self.autostart) if os.path.isdir(self.autostart) else []

    def test_a_window_opens_over_the_program_in_use_and_is_the_same_each_time(self):
        for action, title, size in (("settings", "Settings", (420, 280)),
                                    ("help", "Help", (440, 320))):
            with self.subTest(window=title), Editor("Some text\n") as editor:
                editor.select_line()
                first = self.open(action, title)
                self.assertEqual(desktop.geometry(first)[2:], size)
                desktop.activate(editor.window)
                desktop.press("End")
                self.assertEqual(self.open(action, title), first)
                desktop.xdotool("windowmove", first, 100, 120)
                place = desktop.wait_for(
                    lambda: (lambda place: place if place[0] < 150 else None)(
                        desktop.geometry(first)), "the window to be moved")
                for _ in range(2):
                    desktop.press("Escape")
                    desktop.wait_for(lambda: not titled(title), "the window to close")
                    desktop.activate(editor.window)
                    self.assertEqual(desktop.geometry(self.open(action, title)), place)
                self.assertEqual(len(desktop.windows_of(self.pindle.pid)), 1)
                desktop.press("Escape")
                desktop.wait_for(lambda: not titled(title), "the window to close")
                self.assertTrue(self.pindle.process.is_running())

    def test_a_minimized_window_and_one_of_another_workspace_come_to_this_one(self):
        window = self.open("settings", "Settings")
        desktop.xdotool("windowminimize", window)
        desktop.wait_for(lambda: desktop.active_window() != window, "the window to be minimized")
        self.assertEqual(self.open("settings", "Settings"), window)
        desktop.xdotool("set_desktop", 1)
        self.addCleanup(desktop.xdotool, "set_desktop", 0)
        desktop.wait_for(lambda: desktop.xdotool("get_desktop") == "1", "the other workspace")
        self.assertEqual(self.open("settings", "Settings"), window)
        self.assertEqual(desktop.xdotool("get_desktop"), "1")
        self.assertEqual(desktop.xdotool("get_desktop_for_window", window), "1")

    def test_the_window_manager_lets_nobody_resize_them(self):
        for action, title in (("settings", "Settings"), ("help", "Help")):
            window = self.open(action, title)
            size = desktop.geometry(window)[2:]
            hints = subprocess.run(["xprop", "-id", window, "WM_NORMAL_HINTS"], check=True,
                                   capture_output=True, text=True,
                                   timeout=desktop.DEADLINE).stdout
            for bound in ("minimum", "maximum"):
                self.assertIn(f"program specified {bound} size: {size[0]} by {size[1]}", hints)

    def test_the_switch_makes_and_removes_the_login_item(self):
        self.open("settings", "Settings")
        desktop.press("Tab", "space")
        desktop.wait_for(lambda: len(self.login_items()) == 1, "the login item")
        switch = self.find("Launch at login", "check box")
        desktop.wait_for(lambda: has_state(switch, Atspi.StateType.CHECKED), "the switch to be on")
        desktop.press("Return")
        desktop.wait_for(lambda: not self.login_items(), "the login item to go")

    def test_a_refused_switch_goes_back_and_is_announced(self):
        with open(self.autostart, "w", encoding="ascii"):
            pass  # a file where the folder belongs
        self.open("settings", "Settings")
        with Announcements() as announcements:
            desktop.press("Tab", "space")
            announcements.wait_for(REFUSAL)
        self.pindle.wait_for_text(REFUSAL)
        self.assertFalse(has_state(self.find("Launch at login", "check box"),
                                   Atspi.StateType.CHECKED))

    def test_a_letter_chosen_with_the_keyboard_is_the_shortcut_at_once(self):
        self.open("settings", "Settings")
        desktop.press("Tab", "Tab", "space")
        desktop.time.sleep(0.3)  # the menu takes the keyboard when it is on the screen
        desktop.press("k", "Return")
        self.pindle.wait_for_text("Current shortcut: Command + Shift + K")
        self.assertTrue(titled("Settings"), "the window stays open")
        desktop.press("Escape")
        desktop.press_shortcut("e")
        self.assertTrue(desktop.stays(lambda: not self.pindle.panel_window(), 0.7))
        desktop.press_shortcut("k")
        self.pindle.wait_for_panel()

    def test_a_denial_is_taken_back_in_the_privacy_window(self):
        self.open("help", "Help")
        self.push("Verify / Request", "Calendar")
        self.pindle.answer_question("Don’t Allow")
        self.pindle.wait_for_text(COMPLETED)
        self.pindle.wait_for_text("Denied")
        self.push("Open Settings", "Calendar")
        self.pindle.wait_for_text("Pindle may not add events.")
        desktop.press_in(lambda: titled("Privacy"), "space")
        self.pindle.wait_for_text("Pindle may add events.")
        desktop.press("Escape")
        desktop.wait_for(lambda: not titled("Privacy"), "the privacy window to close")
        self.pindle.wait_for_text("Write only")
        self.assertIn(COMPLETED, desktop.texts(self.pindle.pid))

    def test_the_accessibility_service_is_switched_off_and_on_in_the_privacy_window(self):
        self.open("help", "Help")
        self.pindle.wait_for_text("Enabled")
        self.push("Open Settings", "Accessibility")
        desktop.press_in(lambda: titled("Privacy"), "space")
        desktop.wait_for(lambda: not accessibility_is_on(), "the service to be off")
        desktop.press("space")
        desktop.wait_for(accessibility_is_on, "the service to be on")

    def test_the_prompt_is_answered_with_the_keyboard_and_closing_it_changes_nothing(self):
        self.open("help", "Help")
        # The keyboard is on the card's first button before the service, and the test's eyes, go.
        self.button("Prompt", "Accessibility").get_component_iface().grab_focus()
        set_accessibility(False)
        question = "Pindle"
        desktop.time.sleep(0.3)
        for keys, on in (("Escape", False), ("Return", False), ("Tab Return", True)):
            desktop.press("Return")
            desktop.wait_for(lambda: desktop.active_window() == titled(question), "the question")
            desktop.time.sleep(0.2)
            desktop.press(*keys.split())
            desktop.wait_for(lambda: not titled(question), "the question to close")
            desktop.time.sleep(0.6)
            self.assertEqual(accessibility_is_on(), on, keys)
            desktop.wait_for(lambda: desktop.active_window() == titled("Help"), "the help again")
        self.pindle.wait_for_text(MAY_PROMPT)
        self.pindle.wait_for_text("Enabled")

    def test_messages_are_announced(self):
        self.open("help", "Help")
        with Announcements() as announcements:
            self.push("Prompt", "Accessibility")
            announcements.wait_for(MAY_PROMPT)
        desktop.press("Escape")
        desktop.wait_for(lambda: not titled("Help"), "the help to close")
        with Editor(f"{SENTENCE}\n") as editor:
            editor.select_line()
            desktop.move_pointer(900, 100)
            desktop.press_shortcut()
            self.pindle.wait_until_filled()
            with Announcements() as announcements:
                desktop.click(self.pindle.tile("Apple Calendar"))
                self.pindle.answer_question("Allow")
                announcements.wait_for("Event saved to Apple Calendar.")

    def test_the_fold_and_the_message_outlive_a_closed_window(self):
        self.open("help", "Help")
        self.push("Prompt", "Accessibility")
        self.pindle.wait_for_text(MAY_PROMPT)
        fold = self.find("Debug Status", "push button")
        self.assertTrue(has_state(fold, Atspi.StateType.EXPANDABLE))
        self.assertFalse(has_state(fold, Atspi.StateType.EXPANDED))
        fold.get_component_iface().grab_focus()
        desktop.press("Right")
        desktop.wait_for(lambda: has_state(fold, Atspi.StateType.EXPANDED), "the rows")
        self.pindle.wait_for_text("Bundle path")
        path = self.find("Bundle path", "text")
        self.assertEqual(desktop.value(path), os.path.dirname(PROGRAM))
        desktop.press("Escape")
        desktop.wait_for(lambda: not titled("Help"), "the help to close")
        self.open("help", "Help")
        self.assertTrue(has_state(fold, Atspi.StateType.EXPANDED))
        self.assertIn(MAY_PROMPT, desktop.texts(self.pindle.pid))

    def test_pictures_of_the_windows_are_kept(self):
        folder = os.environ["PINDLE_ARTEFACTS"]
        os.makedirs(folder, exist_ok=True)
        for action, title in (("settings", "Settings"), ("help", "Help")):
            self.open(action, title)
            desktop.press("Tab", "Tab")
            desktop.time.sleep(0.3)
            path = desktop.screenshot(os.path.join(folder, f"{action}.png"))
            self.assertGreater(os.path.getsize(path), 5_000)


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
