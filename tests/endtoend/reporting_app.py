"""Like plain_app.py, and writes its whole text to a file at every change.

usage: reporting_app.py TEXT FILE
"""

import os
import sys
import tkinter

window = tkinter.Tk(className="reportingapp")
window.geometry("420x120+40+40")
area = tkinter.Text(window, exportselection=False)
area.insert("1.0", sys.argv[1])
area.pack()
area.tag_add("sel", "1.0", "end-1c")
area.focus_force()


def report(*_):
    with open(f"{sys.argv[2]}.new", "w", encoding="utf-8") as file:
        file.write(area.get("1.0", "end-1c"))
    os.replace(f"{sys.argv[2]}.new", sys.argv[2])
    window.after(20, report)


report()
window.mainloop()
