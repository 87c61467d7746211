"""Starts a desktop entry the way a session does: launch_entry.py FILE"""
import sys

from gi.repository import Gio

if not Gio.DesktopAppInfo.new_from_filename(sys.argv[1]).launch([], None):
    sys.exit(1)
