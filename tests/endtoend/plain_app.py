"""An application that offers its highlighted text to nobody: not on the accessibility bus, and no
PRIMARY selection. Only a copy through the clipboard gets it out.

usage: plain_app.py TEXT     an empty TEXT highlights nothing
"""

import sys
import tkinter

window = tkinter.Tk(className="plainapp")
window.geometry("420x120+40+40")
area = tkinter.Text(window, exportselection=False)
area.insert("1.0", sys.argv[1])
area.pack()
if sys.argv[1]:
    area.tag_add("sel", "1.0", "end-1c")
area.focus_force()
window.mainloop()
