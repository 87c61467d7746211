"""Pictures of the program for its description: screenshot.py PROGRAM FOLDER"""

import os
import subprocess
import sys
import time

import desktop
from desktop import Editor, Pindle

LETTER = """Hi Ada,

it was good to see you again on Tuesday. Shall we go on where we
stopped?

Team lunch on Friday, March 12, 2027 from 12:30 to 13:30 at Café Luna

They have a table for six by the window. Tell me if that suits you,
and bring the drawings.

See you there,
Grace
"""
NAME = "Letter.txt"
LINE = 6  # the one to highlight
BACKGROUND = "#5b7a99"
PANEL_AT = (960, 60)  # where the pointer is, in pixels of the screen
EDITOR = (60, 90, 620, 540)  # x, y, width and height of its window


def place(window, x, y, width, height):
    desktop.xdotool("windowsize", window, width, height)
    desktop.xdotool("windowmove", window, x, y)
    time.sleep(0.5)  # the window manager and the editor follow


def picture(program, folder):
    subprocess.run(["xsetroot", "-solid", BACKGROUND], timeout=desktop.DEADLINE, check=True)
    with Pindle(program) as pindle, \
            Editor(LETTER, ("featherpad", "--standalone"), "featherpad", NAME) as editor:
        place(editor.window, *EDITOR)
        desktop.xdotool("set_window", "--name", NAME, editor.window)
        editor.select_line(LINE)
        desktop.move_pointer(*PANEL_AT)
        desktop.press_shortcut()
        pindle.wait_until_filled()
        time.sleep(0.5)  # the last frame of the panel
        print(desktop.screenshot(os.path.join(folder, "panel.png")))


if __name__ == "__main__":
    desktop.require_private_desktop()
    picture(*sys.argv[1:3])
