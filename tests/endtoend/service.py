"""A hosted conversion service that works, fails in every way, and works again."""

import json
import os
import unittest

import desktop
from desktop import Editor, Pindle
from https_server import Server

PROGRAM = os.environ["PINDLE_REDIRECTED"]
DRAFT = {"title": "Board meeting", "description": "", "location": "", "startDate": "2027-03-12",
         "endDate": "", "startTime": "10:00", "endTime": "", "timeZone": "Europe/Berlin"}
GOOD = (200, json.dumps({"success": True, "details": DRAFT}).encode())
SENTENCE = "Board meeting, 12 March 2027 at 10"


class Service(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server(os.environ["PINDLE_DESKTOP_ROOT"])
        cls.addClassCleanup(cls.server.close)
        cls.pindle = Pindle(PROGRAM, PINDLE_TEST_PORT=str(cls.server.port),
                            PINDLE_TEST_CA=cls.server.authority)
        cls.addClassCleanup(cls.pindle.process.end)
        cls.editor = Editor(f"{SENTENCE}\n")
        cls.addClassCleanup(cls.editor.process.end)

    def press(self):
        desktop.activate(self.editor.window)
        self.editor.select_line()
        desktop.move_pointer(900, 120)
        desktop.press_shortcut()

    def expect_message_then_recovery(self, reply, message):
        self.server.reply = reply
        self.press()
        self.pindle.wait_for_text(message)
        self.assertTrue(desktop.find(self.pindle.pid, "Ready when you are"))
        self.assertIsNone(desktop.find(self.pindle.pid, "Open Accessibility Settings"))
        self.server.reply = GOOD
        self.press()
        self.pindle.wait_until_filled()
        self.assertEqual(self.pindle.field("Title"), "Board meeting")
        self.assertFalse(any(message in text for text in desktop.texts(self.pindle.pid)))

    def test_the_request_says_what_it_must_and_nothing_more(self):
        self.server.reply = GOOD
        self.press()
        self.pindle.wait_until_filled()
        path, headers, body = self.server.conversions()[-1]
        self.assertEqual(path, "/functions/v1/text-conversion")
        self.assertEqual(headers["Content-Type"], "application/json")
        self.assertFalse({"Authorization", "Cookie", "Referer", "apikey"} & set(headers))
        request = json.loads(body)
        self.assertEqual(set(request), {"text", "referenceDate", "referenceTimezone",
                                        "anonymized_key"})
        self.assertEqual(request["text"], SENTENCE)
        self.assertEqual(request["referenceTimezone"], "Europe/Berlin")
        self.assertEqual(request["anonymized_key"], "test-key")

    def test_status_500_shows_the_service_s_own_words(self):
        self.expect_message_then_recovery((500, b" The converter is <b>down</b>. \n"),
                                          "The converter is <b>down</b>.")

    def test_status_503_without_a_body_shows_the_status(self):
        self.expect_message_then_recovery((503, b""), "Server request failed with status 503.")

    def test_garbage_is_called_unreadable(self):
        self.expect_message_then_recovery((200, b"\x00\xff garbage"), "could not be read")

    def test_a_refusal_shows_its_reason(self):
        self.expect_message_then_recovery((200, b'{"success":false,"error":"No date in it."}'),
                                          "No date in it.")

    def test_silence_beyond_the_time_out_is_given_up(self):
        self.expect_message_then_recovery("silence", "timed out")

    def test_a_closed_connection_is_reported(self):
        self.expect_message_then_recovery("hang up", "connection")


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
