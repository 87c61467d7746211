"""Saving where the desktop has a calendar store: what other programs then find there, and what the
user is told while the store fails."""

import datetime
import os
import shutil
import signal
import unittest
import zoneinfo

import calendar_service as service
import desktop
import icalendar
from desktop import Editor, Pindle

PROGRAM = os.environ["PINDLE_PROGRAM"]
SAVED = "Event saved to Apple Calendar."
UNCONFIRMED = "has not confirmed the event yet."
SENTENCES = (
    "Rooftop dinner on Friday, March 12, 2027 from 19:30 to 22:00 New York time at Café Luna",
    "Harbour walk on Friday, July 16, 2027 from 9:00 to 10:30 Tokyo time at Pier 4",
    "Team lunch on Wednesday, May 19, 2027 from 12:30 to 13:30 at Room 7",
)


def maps(pid):
    with open(f"/proc/{pid}/maps", encoding="utf-8") as file:
        return file.read()


def expected(draft):
    """The instants a draft of the panel means."""
    zone = zoneinfo.ZoneInfo(draft["Time Zone"])

    def instant(date, time):
        return int(datetime.datetime.fromisoformat(f"{date} {time}").replace(tzinfo=zone).timestamp())

    return (instant(draft["Start Date"], draft["Start Time"]),
            instant(draft["End Date"] or draft["Start Date"], draft["End Time"]))


class DesktopCalendar(unittest.TestCase):
    def setUp(self):
        for folder in ("XDG_CONFIG_HOME", "XDG_DATA_HOME"):
            shutil.rmtree(os.path.join(os.environ[folder], "pindle"), ignore_errors=True)

    def start(self):
        self.pindle = Pindle(PROGRAM)
        self.addCleanup(self.pindle.process.end)

    def fill(self, sentence):
        editor = Editor(f"{sentence}\n")
        self.addCleanup(editor.process.end)
        editor.select_line()
        desktop.move_pointer(900, 100)
        desktop.press_shortcut()
        self.pindle.wait_until_filled()
        draft = self.pindle.draft()
        self.assertIn(draft["Title"], sentence)
        return draft

    def save(self, question=False):
        desktop.click(self.pindle.tile("Apple Calendar"))
        if question:
            self.pindle.answer_question("Allow")

    def save_surely(self, question=False):
        """Saves, and again where the store took longer than the panel waits, as the panel advises."""
        for _ in range(5):
            self.save(question)
            question = False
            desktop.wait_for(lambda: any(SAVED in text or UNCONFIRMED in text
                                         for text in desktop.texts(self.pindle.pid)), "an answer")
            if SAVED in desktop.texts(self.pindle.pid):
                return
            desktop.time.sleep(1)
        self.fail("the store did not confirm the event in five tries")

    def titled(self, title, uid="system-calendar"):
        return [event for event in service.events(uid) if event["title"] == title]

    def assert_saved_once(self, draft, uid="system-calendar"):
        (event,) = self.titled(draft["Title"], uid)
        self.assertEqual((event["start"], event["end"]), expected(draft))
        self.assertEqual(event["zone"], draft["Time Zone"])
        self.assertEqual(event["location"], draft["Location"])
        self.assertEqual(self.pindle.calendar_files(), [], "the folder is not the calendar here")

    def choose_calendar(self, uid):
        service.choose_calendar(uid)
        self.addCleanup(service.choose_calendar, None)

    def test_other_programs_find_the_events_at_the_panels_instants(self):
        self.start()
        drafts = []
        for sentence in SENTENCES:
            drafts.append(self.fill(sentence))
            if len(drafts) == 1:
                self.assertNotIn("libecal", maps(self.pindle.pid), "nothing was saved yet")
                self.assertNotIn("libpindle-evolution", maps(self.pindle.pid))
            self.save_surely(question=len(drafts) == 1)
            self.pindle.hide_with_escape()
        self.assertIn("libecal", maps(self.pindle.pid))
        self.assertEqual(len({draft["Time Zone"] for draft in drafts}), 3)
        for draft in drafts:
            self.assert_saved_once(draft)
        # A reader of the calendar's file, which knows nothing of the service.
        path = os.path.join(os.environ["XDG_DATA_HOME"], "evolution/calendar/system/calendar.ics")
        with open(path, "rb") as file:
            found = {str(event["SUMMARY"]): event
                     for event in icalendar.Calendar.from_ical(file.read()).walk("VEVENT")}
        for draft in drafts:
            event = found[draft["Title"]]
            self.assertEqual((event["DTSTART"].dt.timestamp(), event["DTEND"].dt.timestamp()),
                             expected(draft))

    def test_a_stopped_service_is_told_and_what_was_told_stays_true(self):
        self.start()
        draft = self.fill("Stopped watch on Thursday, June 3, 2027 from 8:00 to 9:00 at Dock 9")
        self.save_surely(question=True)
        self.assert_saved_once(draft)
        self.pindle.hide_with_escape()

        draft = self.fill("Second watch on Friday, June 4, 2027 from 8:00 to 9:00 at Dock 9")
        self.assertTrue(service.send(service.FACTORY, signal.SIGSTOP))
        self.addCleanup(service.send, service.FACTORY, signal.SIGCONT)
        self.save()
        self.pindle.wait_for_text("The calendar service does not answer. The event was not saved.")
        self.assertNotIn(SAVED, desktop.texts(self.pindle.pid))
        service.send(service.FACTORY, signal.SIGCONT)
        self.assertTrue(desktop.stays(lambda: not self.titled(draft["Title"]), 1.0))
        self.assertEqual(self.pindle.calendar_files(), [])
        self.save_surely()
        self.assert_saved_once(draft)

    def test_a_service_that_was_killed_is_started_again(self):
        self.start()
        draft = self.fill("Phoenix rehearsal on Monday, June 7, 2027 from 18:00 to 20:00 at Hall 2")
        self.save_surely(question=True)
        service.kill(service.FACTORY)
        service.kill(service.REGISTRY)
        self.save()
        desktop.wait_for(lambda: len(self.titled(draft["Title"])) == 2, "the second event")
        self.assertEqual(self.pindle.calendar_files(), [])

    def test_a_read_only_calendar_is_told_and_nothing_is_saved_anywhere(self):
        self.choose_calendar("birthdays")  # the store fills it from the address books
        self.start()
        draft = self.fill("Locked door on Tuesday, June 8, 2027 from 18:00 to 20:00 at Hall 3")
        self.save(question=True)
        self.pindle.wait_for_text("Permission denied")
        self.assertNotIn(SAVED, desktop.texts(self.pindle.pid))
        self.assertEqual(self.titled(draft["Title"], "birthdays"), [])
        self.assertEqual(self.titled(draft["Title"]), [])
        self.assertEqual(self.pindle.calendar_files(), [])

    def test_an_event_of_an_online_account_arrives_on_its_server(self):
        server = service.CalDavServer()
        self.addCleanup(server.end)
        service.add_calendar("online", service.caldav_calendar("Online", server.port))
        self.addCleanup(service.remove_calendar, "online")
        self.choose_calendar("online")
        self.start()
        draft = self.fill("Cloud brunch on Sunday, March 14, 2027 from 11:00 to 12:30 New York time "
                          "at Café Luna")
        self.save_surely(question=True)
        desktop.wait_for(server.files, "the event on the server")
        (text,) = server.files()
        calendar = icalendar.Calendar.from_ical(text)
        (event,) = calendar.walk("VEVENT")
        self.assertEqual(event["SUMMARY"], draft["Title"])
        self.assertEqual((event["DTSTART"].dt.timestamp(), event["DTEND"].dt.timestamp()),
                         expected(draft))
        self.assertEqual(event["DTSTART"].params["TZID"], "America/New_York")
        self.assertEqual([str(zone["TZID"]) for zone in calendar.walk("VTIMEZONE")],
                         ["America/New_York"])
        self.assert_saved_once(draft, "online")
        self.pindle.hide_with_escape()

        # With the server down the store keeps the event for later, or says why it does not.
        server.end()
        draft = self.fill("Rainy brunch on Sunday, March 21, 2027 from 11:00 to 12:30 at Café Luna")
        self.save()
        desktop.wait_for(lambda: find_loading_over(self.pindle), "an answer")
        kept = len(self.titled(draft["Title"], "online"))
        told_saved = SAVED in desktop.texts(self.pindle.pid)
        self.assertEqual(kept, 1 if told_saved else 0)
        self.assertEqual(self.pindle.calendar_files(), [])
        server.start()
        self.save_surely()
        desktop.wait_for(lambda: any("Rainy brunch" in text for text in server.files()),
                         "the event on the server that came back")


def find_loading_over(pindle):
    tile = desktop.find(pindle.pid, "Apple Calendar")
    return tile and desktop.is_enabled(tile)


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
