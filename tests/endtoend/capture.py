"""Reading highlighted text out of real applications, on every way there is."""

import os
import subprocess
import unittest

import desktop
from desktop import Editor, Pindle, Process

PROGRAM = os.environ["PINDLE_PROGRAM"]
HERE = os.path.dirname(os.path.abspath(__file__))
SENTENCE = "Lunch with Ana on March 12, 2027 at 12:30"
NOTHING = "No selected text was captured."


class Capture(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.pindle = Pindle(PROGRAM)
        cls.addClassCleanup(cls.pindle.process.end)

    def setUp(self):
        desktop.move_pointer(800, 150)
        desktop.set_clipboard("old note")

    def run_app(self, command, window_class, **environment):
        process = Process(command, **environment)
        self.addCleanup(process.end)
        window = desktop.wait_for(lambda: desktop.window_with_class(window_class), window_class)
        desktop.activate(window)
        desktop.time.sleep(0.3)
        return process, window

    def press_and_expect_lunch(self):
        desktop.press_shortcut()
        self.pindle.wait_until_filled()
        draft = self.pindle.draft()
        self.assertEqual(draft["Start Date"], "2027-03-12")
        self.assertEqual(draft["Start Time"], "12:30")
        self.assertIn("Lunch", draft["Title"])

    def close_panel(self):
        desktop.click(desktop.find(self.pindle.pid, "Close"))
        self.pindle.wait_until_hidden()

    def test_text_of_a_gtk_editor_comes_without_touching_the_clipboard(self):
        with Editor(f"😀😀 before\n{SENTENCE} 🍕\nafter\n") as editor:
            editor.select_line(2)
            self.press_and_expect_lunch()
            self.close_panel()
        self.assertEqual(desktop.clipboard(), "old note")

    def test_text_of_a_qt_editor_comes_without_touching_the_clipboard(self):
        with Editor(f"😀😀 before\n{SENTENCE} 🍕\nafter\n", command=("featherpad", "--standalone"),
                    window_class="featherpad") as editor:
            editor.select_line(2)
            self.press_and_expect_lunch()
            self.close_panel()
        self.assertEqual(desktop.clipboard(), "old note")

    def test_text_highlighted_in_a_terminal_comes_from_the_primary_selection(self):
        received = os.path.join(os.environ["PINDLE_DESKTOP_ROOT"], "received")
        process, window = self.run_app(
            ["xterm", "-geometry", "80x10+20+20", "-e", "sh", "-c",
             f"printf '%s\\n' '{SENTENCE}'; stty raw -echo; exec cat >{received}"], "xterm")
        # A triple click highlights the line.
        desktop.xdotool("mousemove", "--window", window, 60, 8)
        desktop.xdotool("click", "--repeat", 3, "--delay", 40, 1)
        desktop.time.sleep(0.2)
        self.press_and_expect_lunch()
        self.assertTrue(process.is_running())
        self.assertEqual(os.path.getsize(received), 0, "the terminal got keys")
        self.close_panel()
        self.assertEqual(desktop.clipboard(), "old note")

    def test_a_terminal_with_nothing_highlighted_gets_no_keys_at_all(self):
        received = os.path.join(os.environ["PINDLE_DESKTOP_ROOT"], "received-none")
        process, _ = self.run_app(
            ["xterm", "-e", "sh", "-c", f"stty raw -echo; exec cat >{received}"], "xterm")
        desktop.press_shortcut()
        self.pindle.wait_for_text(NOTHING)
        self.assertTrue(process.is_running())
        self.assertEqual(os.path.getsize(received), 0)
        self.assertEqual(desktop.clipboard(), "old note")

    def test_a_program_in_a_vte_terminal_is_never_interrupted(self):
        mark = os.path.join(os.environ["PINDLE_DESKTOP_ROOT"], "interrupted")
        self.run_app(["xfce4-terminal", "--disable-server", "-x", "sh", "-c",
                      f"trap 'touch {mark}' INT; cat >{mark}.keys"], "xfce4-terminal")
        desktop.press_shortcut()
        self.pindle.wait_for_text(NOTHING)
        self.assertFalse(os.path.exists(mark))
        self.assertEqual(os.path.getsize(f"{mark}.keys"), 0)

    def test_an_application_that_offers_nothing_is_copied_from_and_the_clipboard_restored(self):
        self.run_app(["/usr/bin/python3", os.path.join(HERE, "plain_app.py"), SENTENCE], "plainapp")
        self.press_and_expect_lunch()
        self.assertEqual(desktop.clipboard(), "old note")

    def test_an_empty_clipboard_is_empty_again_after_a_copy(self):
        subprocess.run(["xsel", "--clipboard", "--clear"], check=True, timeout=5)
        self.run_app(["/usr/bin/python3", os.path.join(HERE, "plain_app.py"), SENTENCE], "plainapp")
        self.press_and_expect_lunch()
        self.assertFalse(desktop.clipboard())

    def test_nothing_highlighted_is_said_and_the_clipboard_left_alone(self):
        self.run_app(["/usr/bin/python3", os.path.join(HERE, "plain_app.py"), ""], "plainapp")
        desktop.press_shortcut()
        self.pindle.wait_for_text(NOTHING)
        self.pindle.wait_for_text("Open Accessibility Settings")
        self.assertEqual(desktop.clipboard(), "old note")

    def test_a_text_without_an_event_is_refused_in_plain_words(self):
        with Editor("The quick brown fox jumps over the lazy dog.\n") as editor:
            editor.select_line()
            desktop.press_shortcut()
            desktop.wait_for(lambda: desktop.find(self.pindle.pid, "Ready when you are"),
                             "the idle card")
            self.assertIsNone(desktop.find(self.pindle.pid, "Event Details"))
            shown = " ".join(desktop.texts(self.pindle.pid))
            self.assertNotIn(NOTHING, shown)
            self.assertRegex(shown, r"(?i)no (date|event)|does not|could not")


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
