"""The windows as assistive technologies see them: every control with its role, its name and what can
be done with it, in reading order, in every state the windows come to."""

import json
import os
import shutil
import subprocess
import threading
import unittest

import desktop
from desktop import Atspi, Editor, Pindle
from https_server import Server

PROGRAM = os.environ["PINDLE_PROGRAM"]
REDIRECTED = os.environ["PINDLE_REDIRECTED"]
SENTENCE = "Lunch with Ana on March 12, 2027 at 12:30"
MISSING = ("No selected text was captured. Highlight text in any app, then press the shortcut "
           "again.")
DENIED = ("Calendar access is required to save events. If macOS did not show a prompt, open "
          "Calendar permissions in System Settings and enable access for this app.")
INNER = {"scroll bar", "layered pane"}  # parts of the toolkit's that carry nothing by themselves
STATES = ((Atspi.StateType.EDITABLE, "editable"), (Atspi.StateType.CHECKED, "checked"),
          (Atspi.StateType.EXPANDABLE, "expandable"), (Atspi.StateType.EXPANDED, "expanded"))

HEADER = """
label: Pindle
label: Highlight text anywhere, press Command-Shift-E, then confirm the event.
push button: Close, focusable
"""
IDLE = """
label: Ready when you are
label: Use the global shortcut to capture your current selection and open a prefilled event here.
label: Command + Shift + E
"""
FORM = """
label: Event Details
label: Title
text: Title, focusable, editable
label: Start Date
text: Start Date, focusable, editable
label: Start Time
text: Start Time, focusable, editable
label: End Date
text: End Date, focusable, editable
label: End Time
text: End Time, focusable, editable
label: Time Zone
text: Time Zone, focusable, editable
label: Location
text: Location, focusable, editable
label: Description
text: Description, focusable, editable
label: Add To Calendar
push button: Apple Calendar (Save directly on this Mac), focusable
push button: Google Calendar (Open a prefilled browser draft), focusable
push button: Outlook (Open a prefilled browser draft), focusable
push button: Yahoo Calendar (Open a prefilled browser draft), focusable
"""
HELP = """
frame: Help
panel: Help, focusable
label: How to use Pindle
label: 1
label: Highlight any date or event text in any app on your Mac.
label: 2
label: Press your global shortcut to open the quick event panel.
label: 3
label: Review the prefilled event details and adjust them if needed.
label: 4
label: Save to Apple Calendar or open another calendar provider.
label: Permissions
panel: Accessibility
label: Accessibility
label: Enabled
label: Needed so the app can read highlighted text from the currently focused app.
push button: Prompt (Accessibility), focusable
push button: Open Settings (Accessibility), focusable
panel: Calendar
label: Calendar
label: Not requested
label: Needed only when you choose Apple Calendar, so the event can be created on this Mac.
push button: Verify / Request (Calendar), focusable
push button: Open Settings (Calendar), focusable
label: Tip: You can change the shortcut and launch-at-login behavior from Settings in the menu bar \
context menu.
"""


def message(text):
    return f"\nnotification: {text}\nlabel: {text}\n"


def lines(*parts):
    return [line for part in parts for line in part.split("\n") if line]


def described(accessible):
    text = f"{accessible.get_role_name()}: {accessible.get_name()}"
    if accessible.get_description():
        text += f" ({accessible.get_description()})"
    states = accessible.get_state_set()
    if states.contains(Atspi.StateType.FOCUSABLE):
        text += ", focusable"
    return text + "".join(f", {word}" for state, word in STATES if states.contains(state))


def outline(accessible):
    """A line for each thing that shows, in reading order."""
    accessible.clear_cache()
    if not desktop.is_showing(accessible):
        return []
    role = accessible.get_role_name()
    silent = role in INNER or (role == "filler" and not accessible.get_name())
    found = [] if silent else [described(accessible)]
    if role in ("combo box", "text"):
        return found  # its rows and its insides are another matter
    for index in range(accessible.get_child_count()):
        found += outline(accessible.get_child_at_index(index))
    return found


class Tree(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        for folder in ("XDG_CONFIG_HOME", "XDG_DATA_HOME"):
            shutil.rmtree(os.path.join(os.environ[folder], "pindle"), ignore_errors=True)

    def start(self, program=PROGRAM, **environment):
        self.pindle = Pindle(program, **environment)
        self.addCleanup(self.pindle.process.end)

    def window(self, name):
        """The outline of the window of this name; nothing while it does not show."""
        application = desktop.application(self.pindle.pid)
        for index in range(application.get_child_count()):
            window = application.get_child_at_index(index)
            window.clear_cache()
            if window.get_name() == name and desktop.is_showing(window):
                return outline(window)
        return []

    def expect(self, name, *parts):
        wanted = lines(*parts)
        try:
            desktop.wait_for(lambda: self.window(name) == wanted, f"the tree of {name!r}", 5)
        except desktop.DesktopError:
            self.assertEqual(self.window(name), wanted)

    def open(self, action):
        subprocess.run([PROGRAM, "--action", action], check=True, timeout=desktop.DEADLINE)

    def press_over(self, text):
        editor = Editor(f"{text}\n")
        self.addCleanup(editor.process.end)
        if text:
            editor.select_line()
        desktop.move_pointer(900, 100)
        desktop.press_shortcut()

    def do(self, name, description):
        """Does what a control does, through its action."""
        for accessible in desktop.walk(desktop.application(self.pindle.pid)):
            if accessible.get_name() == name and accessible.get_description() == description \
                    and accessible.get_action_iface():
                accessible.get_action_iface().do_action(0)
                return
        self.fail(f"there is no {name!r} about {description!r}")

    def test_the_idle_panel(self):
        self.start()
        subprocess.run([PROGRAM], check=True, timeout=desktop.DEADLINE)
        self.expect("Pindle", "dialog: Pindle", HEADER, IDLE)

    def test_the_panel_of_a_draft_and_of_a_saved_one(self):
        self.start()
        self.press_over(SENTENCE)
        self.expect("Pindle", "dialog: Pindle", HEADER, FORM)
        self.pindle.tile("Apple Calendar")
        self.do("Apple Calendar", "Save directly on this Mac")
        question = "“Pindle” would like to add events to your calendar."
        details = "It adds the events you choose to save. It does not read your calendar."
        # The question's window stands before its two texts and its two answers.
        self.expect(question, f"dialog: {question} ({details})",
                    f"label: {question}", f"label: {details}",
                    f"push button: Don’t Allow ({question}), focusable",
                    f"push button: Allow ({question}), focusable")
        self.do("Allow", question)
        self.expect("Pindle", "dialog: Pindle", HEADER, FORM,
                    message("Event saved to Apple Calendar."))

    def test_the_panel_of_a_refused_save(self):
        self.start()
        self.press_over(SENTENCE)
        self.pindle.tile("Apple Calendar")
        self.do("Apple Calendar", "Save directly on this Mac")
        self.pindle.answer_question("Don’t Allow")
        self.expect("Pindle", "dialog: Pindle", HEADER, FORM, message(DENIED),
                    "push button: Open Calendar Settings, focusable")

    def test_the_panel_of_a_failed_capture(self):
        self.start()
        self.press_over("")
        self.expect("Pindle", "dialog: Pindle", HEADER, IDLE, message(MISSING),
                    "push button: Prompt Accessibility, focusable",
                    "push button: Open Accessibility Settings, focusable")

    def test_the_panel_while_the_service_is_at_work_and_with_its_notice(self):
        server = Server(os.environ["PINDLE_DESKTOP_ROOT"])
        self.addCleanup(server.close)
        released = threading.Event()
        self.addCleanup(released.set)
        draft = {"title": "Lunch", "description": "", "location": "", "startDate": "2027-03-12",
                 "endDate": "", "startTime": "10:00", "endTime": "", "timeZone": "Europe/Berlin"}
        notice = "The year was assumed."
        body = json.dumps({"success": True, "details": draft, "user_message": notice}).encode()

        class Late(tuple):
            """A reply that is there once the test has looked at the waiting panel."""
            def __iter__(self):
                released.wait(desktop.DEADLINE)
                return super().__iter__()

        server.reply = Late((200, body))
        self.start(REDIRECTED, PINDLE_TEST_PORT=str(server.port), PINDLE_TEST_CA=server.authority)
        self.press_over(SENTENCE)
        self.expect("Pindle", "dialog: Pindle", HEADER, """
label: Turning text into an event
label: AI is parsing the text and filling the event details.
""")
        released.set()
        self.expect("Pindle", "dialog: Pindle", HEADER, FORM, message(notice))

    def test_the_settings(self):
        self.start()
        self.open("settings")
        wanted = """
frame: Settings
label: Settings
label: Choose how Pindle should behave in the background.
check box: Launch at login, focusable
label: Shortcut key
combo box: Command + Shift + E, focusable, expandable
label: Current shortcut: Command + Shift + E
"""
        self.expect("Settings", wanted)
        self.do("Launch at login", "")
        self.expect("Settings", wanted.replace("login, focusable", "login, focusable, checked"))
        picker = desktop.find(self.pindle.pid, "Command + Shift + E", "combo box")
        relations = {relation.get_relation_type(): relation.get_target(0).get_name()
                     for relation in picker.get_relation_set()}
        self.assertEqual(relations.get(Atspi.RelationType.LABELLED_BY), "Shortcut key")
        rows = [row.get_name() for row in desktop.walk(picker)
                if row.get_role_name() == "list item"]
        self.assertEqual(rows, [f"Command + Shift + {letter}"
                                for letter in "ABCDEFGHIJKLMNOPQRSTUVWXYZ"])

    def test_the_help_folded_and_unfolded(self):
        self.start()
        self.open("help")
        fold = "push button: Debug Status, focusable, expandable"
        self.expect("Help", HELP, fold)
        self.do("Debug Status", "")
        self.expect("Help", HELP, f"{fold}, expanded", """
label: Accessibility trusted
text: Accessibility trusted, focusable
label: Calendar status
text: Calendar status, focusable
label: Bundle ID
text: Bundle ID, focusable
label: Bundle path
text: Bundle path, focusable
""")
        values = [desktop.value(desktop.find(self.pindle.pid, name, "text"))
                  for name in ("Accessibility trusted", "Calendar status", "Bundle ID",
                               "Bundle path")]
        self.assertEqual(values, ["Yes", "Not requested", "app.pindle.Pindle",
                                  os.path.dirname(PROGRAM)])
        self.do("Debug Status", "")
        self.expect("Help", HELP, fold)

    def test_the_privacy_window(self):
        self.start()
        self.open("help")
        self.expect("Help", HELP, "push button: Debug Status, focusable, expandable")
        tabs = """
page tab list: {}, focusable
page tab: Calendars, focusable
page tab: Accessibility, focusable
"""
        self.do("Open Settings", "Calendar")
        self.expect("Privacy", """
dialog: Privacy
filler: Permissions, focusable
label: Pindle adds the events you choose to save to your calendar. It never reads it.
check box: Allow Pindle to add events (Pindle has not asked for it yet.), focusable
label: Pindle has not asked for it yet.
label: Events that are in the calendar already stay there.
""", tabs.format("Calendars"))
        self.do("Open Settings", "Accessibility")
        self.expect("Privacy", """
dialog: Privacy
filler: Permissions, focusable
label: Pindle reads the text you have highlighted through the desktop’s accessibility service.
check box: Switch on the accessibility service (The accessibility service is on.), focusable, \
checked
label: The accessibility service is on.
label: Programs that are running already may have to be restarted to take part. While the service \
is off, screen readers cannot work either.
""", tabs.format("Accessibility"))


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
