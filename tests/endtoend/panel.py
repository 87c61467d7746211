"""The panel among other windows: where it opens, and who has the keyboard."""

import os
import unittest

import desktop
from desktop import Editor, Pindle

PROGRAM = os.environ["PINDLE_PROGRAM"]
SENTENCE = "Lunch with Ana on March 12, 2027 at 12:30"
WIDTH, HEIGHT, MARGIN, GAP = 420, 560, 18, 20
SCREEN = (1280, 800)


def expected_corner(x, y):
    """Where the panel's top-left corner belongs for a pointer, in pixels with y downwards."""
    left = min(max(x - WIDTH // 2, MARGIN), SCREEN[0] - WIDTH - MARGIN)
    top = y + GAP
    if top + HEIGHT > SCREEN[1] - MARGIN:
        top = max(y - GAP - HEIGHT, MARGIN)
    return left, min(max(top, MARGIN), SCREEN[1] - HEIGHT - MARGIN)


class Panel(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.pindle = Pindle(PROGRAM)
        cls.addClassCleanup(cls.pindle.process.end)
        cls.editor = Editor(f"{SENTENCE}\n")
        cls.addClassCleanup(cls.editor.process.end)

    def setUp(self):
        desktop.activate(self.editor.window)
        self.editor.select_line()

    def open_panel(self, x=640, y=120):
        desktop.move_pointer(x, y)
        desktop.press_shortcut()
        window = self.pindle.wait_for_panel()
        self.pindle.wait_until_filled()
        return window

    def test_the_panel_keeps_its_margins_near_every_edge(self):
        for point in ((640, 100), (3, 400), (1277, 400), (640, 2), (640, 797), (2, 2), (1278, 798)):
            with self.subTest(pointer=point):
                window = self.open_panel(*point)
                self.assertEqual(desktop.geometry(window)[:2], expected_corner(*point))

    def test_the_keyboard_stays_with_the_application_until_the_panel_is_clicked(self):
        window = self.open_panel()
        desktop.time.sleep(0.3)
        self.assertEqual(desktop.active_window(), self.editor.window)
        desktop.press("End")
        desktop.xdotool("type", "!")
        line = next(a for a in desktop.walk(desktop.application(self.editor.pid))
                    if a.get_role_name() == "text")
        desktop.wait_for(lambda: desktop.value(line).startswith(f"{SENTENCE}!"),
                         "the key to reach the editor")
        self.assertTrue(self.pindle.panel_window(), "typing elsewhere leaves the panel up")
        self.assertEqual(self.pindle.field("Title").count("!"), 0)
        desktop.press("BackSpace")
        desktop.click(desktop.find(self.pindle.pid, "Event Details"))
        desktop.wait_for(lambda: desktop.active_window() == window, "the panel to take the keyboard")

    def test_a_panel_that_loses_the_keyboard_hides(self):
        window = self.open_panel()
        desktop.click(desktop.find(self.pindle.pid, "Event Details"))
        desktop.wait_for(lambda: desktop.active_window() == window, "the panel to take the keyboard")
        desktop.activate(self.editor.window)
        self.pindle.wait_until_hidden()

    def test_escape_hides_the_panel_once_it_has_the_keyboard(self):
        self.open_panel()
        desktop.click(desktop.find(self.pindle.pid, "Event Details"))
        self.pindle.hide_with_escape()

    def test_a_field_is_edited_and_return_in_it_changes_nothing_else(self):
        self.open_panel()
        field = next(a for a in desktop.walk(desktop.application(self.pindle.pid))
                     if a.get_name() == "Title" and a.get_editable_text_iface())
        desktop.click(field)
        desktop.time.sleep(0.2)
        desktop.press("ctrl+a")
        desktop.xdotool("type", "Late lunch")
        desktop.press("Return")
        desktop.wait_for(lambda: self.pindle.field("Title") == "Late lunch", "the edited title")
        self.assertTrue(self.pindle.panel_window())
        self.assertEqual(self.pindle.calendar_files(), [])
        self.assertIsNone(desktop.find(self.pindle.pid, "Allow"))

    def test_the_whole_form_is_reached_with_the_tab_key(self):
        window = self.open_panel()
        desktop.click(desktop.find(self.pindle.pid, "Event Details"))
        desktop.wait_for(lambda: desktop.active_window() == window, "the panel to take the keyboard")
        wanted = {*Pindle.FIELDS, "Apple Calendar", "Google Calendar", "Outlook", "Yahoo Calendar",
                  "Close"}
        reached = set()
        for _ in range(2 * len(wanted)):
            desktop.press("Tab")
            desktop.time.sleep(0.05)
            reached |= {a.get_name() for a in desktop.walk(desktop.application(self.pindle.pid))
                        if a.get_state_set().contains(desktop.Atspi.StateType.FOCUSED)}
            if wanted <= reached:
                break
        self.assertEqual(wanted - reached, set())

    def test_a_picture_of_the_filled_panel_is_kept(self):
        self.open_panel()
        desktop.time.sleep(0.3)
        folder = os.environ["PINDLE_ARTEFACTS"]
        os.makedirs(folder, exist_ok=True)
        path = desktop.screenshot(os.path.join(folder, "panel.png"))
        self.assertGreater(os.path.getsize(path), 10_000)


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
