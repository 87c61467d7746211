"""The shortcut pressed by hand on a hardware keyboard, where keys stay down for a while. Keys sent to
the outer display are the hardware of the desktop under test."""

import os
import unittest

import desktop
from desktop import Pindle, Process

PROGRAM = os.environ["PINDLE_PROGRAM"]
OUTER = os.environ.get("PINDLE_OUTER_DISPLAY")
HERE = os.path.dirname(os.path.abspath(__file__))
SENTENCE = "Lunch with Ana on March 12, 2027 at 12:30"


def hardware(*arguments):
    desktop.xdotool(*arguments, display=OUTER)


class HeldKeys(unittest.TestCase):
    def setUp(self):
        self.assertTrue(OUTER, "this needs a nested desktop")
        self.pindle = Pindle(PROGRAM)
        self.addCleanup(self.pindle.process.end)
        self.addCleanup(hardware, "keyup", "e", "keyup", "shift", "keyup", "super")
        desktop.set_clipboard("old note")

    def plain_app(self):
        report = os.path.join(os.environ["PINDLE_DESKTOP_ROOT"], "content")
        app = Process(["/usr/bin/python3", os.path.join(HERE, "reporting_app.py"), SENTENCE, report])
        self.addCleanup(app.end)
        window = desktop.wait_for(lambda: desktop.window_with_class("reportingapp"), "the app")
        desktop.activate(window)
        # The inner pointer follows the outer one.
        hardware("mousemove", 800, 150)
        desktop.time.sleep(0.3)
        return report

    @staticmethod
    def content(report):
        with open(report, encoding="utf-8") as file:
            return file.read()

    def test_keys_still_held_neither_reach_the_application_nor_get_lost(self):
        report = self.plain_app()
        hardware("keydown", "super", "keydown", "shift", "keydown", "e")
        self.pindle.wait_until_filled()
        self.assertEqual(self.pindle.field("Start Time"), "12:30")
        self.assertEqual(self.content(report), SENTENCE, "the application's text was changed")
        self.assertEqual(desktop.clipboard(), "old note")
        # The user presses E again without having let go of Super and Shift.
        hardware("keyup", "e")
        desktop.click(desktop.find(self.pindle.pid, "Close"))
        self.pindle.wait_until_hidden()
        hardware("keydown", "e", "keyup", "e")
        self.pindle.wait_for_panel()
        desktop.time.sleep(0.8)
        self.assertEqual(self.content(report), SENTENCE, "the second press typed into the text")
        hardware("keyup", "shift", "keyup", "super")

    def test_no_modifier_stays_down_after_the_user_let_go(self):
        report = self.plain_app()
        hardware("keydown", "super", "keydown", "shift", "keydown", "e", "keyup", "e",
                 "keyup", "shift", "keyup", "super")
        self.pindle.wait_until_filled()
        desktop.time.sleep(0.5)
        hardware("key", "End")
        hardware("type", "x")
        desktop.wait_for(lambda: self.content(report) == f"{SENTENCE}x", "a plain x in the text")


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
