"""Reads iCalendar files with a library other than the one that wrote them.

read_events.py FILE...   prints one JSON array with what each file holds
"""
import json
import sys
from datetime import timezone

from icalendar import Calendar


def instant(value):
    return int(value.dt.astimezone(timezone.utc).timestamp())


def read(path):
    with open(path, "rb") as file:
        data = file.read()
    calendar = Calendar.from_ical(data)
    events = calendar.walk("VEVENT")
    assert len(events) == 1, f"{len(events)} events"
    event = events[0]
    start, end = event["DTSTART"], event["DTEND"]
    return {
        "uid": str(event["UID"]),
        "title": str(event["SUMMARY"]),
        "location": str(event["LOCATION"]),
        "notes": str(event["DESCRIPTION"]),
        "start": instant(start),
        "end": instant(end),
        "startZone": start.params.get("TZID", ""),
        "endZone": end.params.get("TZID", ""),
        "wall": start.dt.strftime("%Y-%m-%dT%H:%M:%S"),
        "keys": sorted(event.keys()),
        "zones": [str(z["TZID"]) for z in calendar.walk("VTIMEZONE")],
        "version": str(calendar["VERSION"]),
        "prodid": str(calendar["PRODID"]),
        "stamped": event["DTSTAMP"].dt.tzinfo is not None,
        "longestLine": max(len(line) for line in data.split(b"\r\n")),
        "crlfOnly": data.replace(b"\r\n", b"").find(b"\n") < 0,
    }


json.dump([read(path) for path in sys.argv[1:]], sys.stdout)
