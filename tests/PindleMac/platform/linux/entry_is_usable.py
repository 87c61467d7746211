"""Prints whether a session would start a desktop entry's program: entry_is_usable.py FILE"""
import sys

from gi.repository import Gio

try:
    Gio.DesktopAppInfo.new_from_filename(sys.argv[1])
    print("yes")
except TypeError:  # the constructor gave nothing, which the binding refuses
    print("no")
