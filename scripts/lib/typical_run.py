"""One whole run on a private desktop, from highlighted text to a saved event."""

import os
import sys
import time

import desktop
from desktop import DesktopError, Editor, Pindle

SENTENCE = "Team lunch on Friday, March 12, 2027 from 12:30 to 13:30 at Café Luna"
EXPECTED = ("SUMMARY:Team lunch", "DTSTART;TZID={zone}:20270312T123000",
            "DTEND;TZID={zone}:20270312T133000", "LOCATION:Café Luna")


def say(text):
    print(f"run: {text}", flush=True)


def press_and_fill(pindle):
    desktop.move_pointer(700, 140)
    desktop.press_shortcut()
    pindle.wait_for_panel()
    say("Super+Shift+E pressed; the panel is up")
    pindle.wait_until_filled()
    for name, text in pindle.draft().items():
        say(f"  {name}: {text}")


def save(pindle):
    desktop.click(pindle.tile("Apple Calendar"))
    say("clicked the system calendar's tile")
    pindle.answer_question("Allow")
    say("allowed the access to the calendar")
    desktop.wait_for(pindle.calendar_files, "the saved event")
    pindle.wait_for_text("Event saved to Apple Calendar.")
    (path,) = pindle.calendar_files()
    return path


def check(content):
    zone = os.environ["TZ"]
    for line in EXPECTED:
        if line.format(zone=zone) not in content:
            raise DesktopError(f"the saved event lacks the line {line.format(zone=zone)!r}")


def run(program, folder):
    os.makedirs(folder, exist_ok=True)
    with Pindle(program) as pindle, Editor(f"Hello,\n{SENTENCE}\nSee you there!\n") as editor:
        editor.select_line(2)
        say(f"highlighted in a text editor: {SENTENCE}")
        press_and_fill(pindle)
        time.sleep(0.3)  # the last frame of the panel
        filled = desktop.screenshot(os.path.join(folder, "panel.png"))
        path = save(pindle)
        time.sleep(0.3)
        saved = desktop.screenshot(os.path.join(folder, "saved.png"))
        with open(path, encoding="utf-8", newline="") as file:
            content = file.read().replace("\r\n", "\n")
        say(f"saved event: {path}")
        print(content, flush=True)
        check(content)
        say(f"kept as: {desktop.keep(path, folder)}")
        say(f"screenshot of the filled panel: {filled}")
        say(f"screenshot after saving: {saved}")


if __name__ == "__main__":
    desktop.require_private_desktop()
    try:
        run(*sys.argv[1:3])
    except DesktopError as error:
        desktop.screenshot(os.path.join(sys.argv[2], "failed.png"))
        sys.exit(f"run: {error}")
