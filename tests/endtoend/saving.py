"""Saving: the question of access, the file, and what an independent reader makes of it."""

import datetime
import os
import shutil
import stat
import unittest
import zoneinfo

import desktop
import icalendar
from desktop import Editor, Pindle

PROGRAM = os.environ["PINDLE_PROGRAM"]
DENIED = "Calendar access is required to save events."
SENTENCE = ("Rooftop dinner 🍕 on Friday, March 12, 2027 from 19:30 to 22:00 New York time "
            "at Café Luna, 5th floor")


class Saving(unittest.TestCase):
    def setUp(self):
        for folder in ("XDG_CONFIG_HOME", "XDG_DATA_HOME"):
            shutil.rmtree(os.path.join(os.environ[folder], "pindle"), ignore_errors=True)
        self.pindle = Pindle(PROGRAM)
        self.addCleanup(self.pindle.process.end)

    def fill(self, sentence=SENTENCE):
        editor = Editor(f"{sentence}\n")
        self.addCleanup(editor.process.end)
        editor.select_line()
        desktop.move_pointer(900, 100)
        desktop.press_shortcut()
        self.pindle.wait_until_filled()

    def save(self):
        desktop.click(self.pindle.tile("Apple Calendar"))

    def test_the_saved_file_read_by_another_program_says_what_the_panel_said(self):
        self.fill()
        draft = self.pindle.draft()
        self.save()
        self.pindle.answer_question("Allow")
        self.pindle.wait_for_text("Event saved to Apple Calendar.")
        (path,) = self.pindle.calendar_files()
        with open(path, "rb") as file:
            calendar = icalendar.Calendar.from_ical(file.read())
        (event,) = calendar.walk("VEVENT")
        self.assertEqual(event["SUMMARY"], draft["Title"])
        self.assertEqual(event["LOCATION"], draft["Location"])
        self.assertEqual(event.get("DESCRIPTION", ""), draft["Description"])
        self.assertEqual(event["DTSTART"].params["TZID"], "America/New_York")
        zone = zoneinfo.ZoneInfo("America/New_York")
        self.assertEqual(event["DTSTART"].dt.timestamp(),
                         datetime.datetime(2027, 3, 12, 19, 30, tzinfo=zone).timestamp())
        self.assertEqual(event["DTEND"].dt.timestamp(),
                         datetime.datetime(2027, 3, 12, 22, 0, tzinfo=zone).timestamp())
        self.assertEqual([str(z["TZID"]) for z in calendar.walk("VTIMEZONE")],
                         ["America/New_York"])
        self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o600)

    def test_the_question_is_asked_once_and_the_same_draft_can_be_saved_again(self):
        self.fill()
        self.save()
        self.pindle.answer_question("Allow")
        desktop.wait_for(lambda: len(self.pindle.calendar_files()) == 1, "the first event")
        self.save()
        desktop.wait_for(lambda: len(self.pindle.calendar_files()) == 2, "the second event")
        self.assertIsNone(desktop.find(self.pindle.pid, "Allow"))

    def test_a_refusal_gives_its_message_and_writes_nothing_then_and_later(self):
        self.fill()
        self.save()
        self.pindle.answer_question("Don’t Allow")
        self.pindle.wait_for_text(DENIED)
        self.pindle.wait_for_text("Open Calendar Settings")
        self.assertEqual(self.pindle.calendar_files(), [])
        self.assertEqual(self.pindle.field("Start Date"), "2027-03-12")
        self.save()
        desktop.time.sleep(0.5)
        self.assertIsNone(desktop.find(self.pindle.pid, "Allow"))
        self.assertEqual(self.pindle.calendar_files(), [])

    def test_a_refusal_is_taken_back_through_the_calendar_settings(self):
        self.fill()
        self.save()
        self.pindle.answer_question("Don’t Allow")
        self.pindle.wait_for_text(DENIED)
        self.pindle.scroll_to_end()
        desktop.click(desktop.wait_for(
            lambda: desktop.find(self.pindle.pid, "Open Calendar Settings"), "the offer"))
        choice = desktop.wait_for(
            lambda: desktop.find(self.pindle.pid, "Allow Pindle to add events"), "the privacy window")
        self.pindle.wait_until_hidden()
        desktop.press_in(lambda: desktop.titled("Privacy"), "space")
        self.pindle.wait_for_text("Pindle may add events.")
        self.assertTrue(choice.get_state_set().contains(desktop.Atspi.StateType.CHECKED))
        desktop.press("Escape")
        desktop.wait_for(lambda: not desktop.is_showing(choice), "the privacy window to go")
        self.assertEqual(self.pindle.calendar_files(), [], "a permission saves nothing")
        self.fill()
        self.save()
        desktop.wait_for(self.pindle.calendar_files, "the event")

    def test_a_question_closed_without_an_answer_is_asked_again(self):
        self.fill()
        self.save()
        desktop.wait_for(lambda: desktop.find(self.pindle.pid, "Allow"), "the question")
        desktop.press_in(lambda: desktop.titled("Pindle"), "Escape")
        self.pindle.wait_for_text(DENIED)
        self.assertTrue(self.pindle.panel_window(), "the panel outlives the question")
        self.save()
        self.pindle.answer_question("Allow")
        desktop.wait_for(self.pindle.calendar_files, "the event")

    def test_a_draft_without_a_valid_date_saves_nothing_and_says_so(self):
        self.fill()
        desktop.click(desktop.find(self.pindle.pid, "Event Details"))
        field = next(a for a in desktop.walk(desktop.application(self.pindle.pid))
                     if a.get_name() == "Start Date" and a.get_editable_text_iface())
        desktop.click(field)
        desktop.press("ctrl+a")
        desktop.xdotool("type", "12.3.2027")
        self.pindle.wait_for_text("The converted event is missing a valid start date.")
        self.save()
        self.pindle.answer_question("Allow")
        desktop.time.sleep(0.5)
        self.assertEqual(self.pindle.calendar_files(), [])


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
